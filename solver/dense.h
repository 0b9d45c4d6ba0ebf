// SPDX-License-Identifier: BSD-3-Clause
// The module's routines with scalars by value, as C++ code likes to write them. The numerical work of the
// solver goes through them, but for narrow triangles (triangles.h) and few right-hand sides (columns.h).
#pragma once

#include <TOVBlaModule.h>

#include <cstdint>

namespace dense {

// C := beta*C + alpha*op(A)*op(B), C of m rows and n columns
inline void gemm(char transA, char transB, int m, int n, int k, double alpha, const double* a, int lda,
                 const double* b, int ldb, double beta, double* c, int ldc)
{
    blac_dgemm_(&transA, &transB, &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
}

// B := op(T)^-1 * B (side L) or B * op(T)^-1 (side R), B of m rows and n columns
inline void trsm(char side, char uplo, char trans, char diag, int m, int n, const double* t, int ldt,
                 double* b, int ldb)
{
    const double one = 1.0;
    blac_dtrsm_(&side, &uplo, &trans, &diag, &m, &n, &one, t, &ldt, b, &ldb);
}

// C := beta*C - A*diag(d)*B^T, C of m rows and n columns
inline void subtractScaledProduct(int m, int n, int k, const double* a, int lda, const double* b, int ldb,
                                  double beta, double* c, int ldc, const double* d)
{
    const char no = 'N', yes = 'T';
    const double minus = -1.0;
    blac_dgemm_scaled2_(&no, &yes, &m, &n, &k, &minus, a, &lda, b, &ldb, &beta, c, &ldc, d);
}

// A := diag(d)*A, A of m rows and n columns
inline void scaleRows(int m, int n, double* a, int lda, const double* d)
{
    blac_scale2_(&m, &n, a, &lda, d);
}

// A := A + B, both of m rows and n columns
inline void addRectangle(int m, int n, double* a, int lda, const double* b, int ldb)
{
    blac_addrectblock_(&m, &n, a, &lda, b, &ldb);
}

// lower triangle of A := A + B, both of order n
inline void addTriangle(int n, double* a, int lda, const double* b, int ldb)
{
    blac_addtriblock_(&n, a, &lda, b, &ldb);
}

// T := T^-1, T triangular of order n
inline void invert(char uplo, char diag, int n, double* t, int ldt)
{
    int info;
    blac_dtrtri_(&uplo, &diag, &n, t, &ldt, &info);
}

// B := T*B (side L) or B*T (side R), T triangular, B of m rows and n columns
inline void trmm(char side, char uplo, char diag, int m, int n, const double* t, int ldt, double* b, int ldb)
{
    const char trans = 'N';
    const double one = 1.0;
    blac_dtrmm_(&side, &uplo, &trans, &diag, &m, &n, &one, t, &ldt, b, &ldb);
}

// Rows of right-hand sides, `count` numbers each, one after the other: B is count x n. A single one goes to
// the routines for vectors.
// B := B * op(T)^-1, T triangular of order n
inline void solveRows(char uplo, char trans, char diag, int count, int n, const double* t, int ldt, double* b)
{
    const int one = 1;
    const char other = trans == 'N' ? 'T' : 'N';
    if (count == 1)
        blac_dtrsv_(&uplo, &other, &diag, &n, t, &ldt, b, &one);
    else
        trsm('R', uplo, trans, diag, count, n, t, ldt, b, count);
}

// C := beta*C + alpha*B*op(A), C of n columns, B of k
inline void multiplyRows(char trans, int count, int n, int k, double alpha, const double* b, const double* a,
                         int lda, double beta, double* c)
{
    const int one = 1, rows = trans == 'N' ? k : n, columns = trans == 'N' ? n : k;
    const char other = trans == 'N' ? 'T' : 'N';
    if (count == 1)
        blac_dgemv_(&other, &rows, &columns, &alpha, a, &lda, b, &one, &beta, c, &one);
    else
        gemm('N', trans, count, n, k, alpha, b, count, a, lda, beta, c, count);
}

} // namespace dense
