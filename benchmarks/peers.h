// SPDX-License-Identifier: BSD-3-Clause
// What the kernels are measured against.
#pragma once

#include <cstddef>

// The BLAS/LAPACK library beneath, called directly.
extern "C" {
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info, std::size_t);
void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* pivots, int* info);
void dsytrf_(const char* uplo, const int* n, double* a, const int* lda, int* pivots, double* work,
             const int* lwork, int* info, std::size_t);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc, std::size_t, std::size_t);
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* beta, double* c, const int* ldc, std::size_t,
            std::size_t);
void dscal_(const int* n, const double* alpha, double* x, const int* incx);
void daxpy_(const int* n, const double* alpha, const double* x, const int* incx, double* y, const int* incy);
// Two rank-one updates of a Cholesky factor R, upper triangular, by qrupdate.
void dch1up_(const int* n, double* r, const int* ldr, double* u, double* w);
void dch1dn_(const int* n, double* r, const int* ldr, double* u, double* w, int* info);
}

namespace bench {

// Eigen, in a source of its own.
void eigen_llt(int n, double* a, int lda);
void eigen_lu(int n, double* a, int lda);
void eigen_rank_update(int n, double* l, int ldl, const double* x);
void eigen_transpose(int m, int n, const double* a, int lda, double* b, int ldb);
void eigen_add_transposed(int m, int n, double* a, int lda, const double* b, int ldb);

} // namespace bench
