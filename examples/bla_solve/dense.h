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

// C := C - A*diag(d)*B^T, C of m rows and n columns
inline void subtractScaledProduct(int m, int n, int k, const double* a, int lda, const double* b, int ldb,
                                  double* c, int ldc, const double* d)
{
    const char no = 'N', yes = 'T';
    const double minus = -1.0, one = 1.0;
    blac_dgemm_scaled2_(&no, &yes, &m, &n, &k, &minus, a, &lda, b, &ldb, &one, c, &ldc, d);
}

// lower triangle of C := C - A*diag(d)*A^T, C of order n, in column blocks of width nb
inline void subtractScaledSquare(int nb, int n, int k, const double* a, int lda, double* c, int ldc,
                                 const double* d)
{
    const double minus = -1.0, one = 1.0;
    blac_dsyrk_scaled_(&nb, &n, &k, &minus, a, &lda, a, &lda, &one, c, &ldc, d);
}

// A := diag(d)*A, A of m rows and n columns
inline void scaleRows(int m, int n, double* a, int lda, const double* d)
{
    blac_scale2_(&m, &n, a, &lda, d);
}

} // namespace dense
