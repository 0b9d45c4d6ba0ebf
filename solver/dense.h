// SPDX-License-Identifier: BSD-3-Clause
// The module's routines with scalars by value, as C++ code likes to write them. All numerical work of this
// program goes through them.
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

// Products and solves with one column, the common case of a solution, go to the routines for vectors.
// C := beta*C + alpha*op(A)*B, A of m rows and n columns
inline void multiplyColumns(char trans, int m, int n, int columns, double alpha, const double* a, int lda,
                            const double* b, int ldb, double beta, double* c, int ldc)
{
    const int one = 1;
    if (columns == 1)
        blac_dgemv_(&trans, &m, &n, &alpha, a, &lda, b, &one, &beta, c, &one);
    else
        gemm(trans, 'N', trans == 'N' ? m : n, columns, trans == 'N' ? n : m, alpha, a, lda, b, ldb, beta, c,
             ldc);
}

// B := op(T)^-1 * B, T triangular of order n
inline void solveColumns(char uplo, char trans, char diag, int n, int columns, const double* t, int ldt,
                         double* b, int ldb)
{
    const int one = 1;
    if (columns == 1)
        blac_dtrsv_(&uplo, &trans, &diag, &n, t, &ldt, b, &one);
    else
        trsm('L', uplo, trans, diag, n, columns, t, ldt, b, ldb);
}

} // namespace dense
