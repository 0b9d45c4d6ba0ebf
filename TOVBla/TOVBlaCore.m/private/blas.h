// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

#include <cstddef>

// The routines of the BLAS/LAPACK library that the kernels call directly. Option characters are passed with
// hidden lengths of 1 after the ordinary arguments. Arrays are declared as real, which only says that nothing
// is promised about their alignment.
extern "C" {
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const real* a, const int* lda, const real* b, const int* ldb,
            const double* beta, real* c, const int* ldc, std::size_t, std::size_t);
void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const real* a, const int* lda, real* b, const int* ldb,
            std::size_t, std::size_t, std::size_t, std::size_t);
double ddot_(const int* n, const real* x, const int* incx, const real* y, const int* incy);
double dnrm2_(const int* n, const real* x, const int* incx);
void drotg_(real* a, real* b, real* c, real* s);
int lsame_(const char* ca, const char* cb, std::size_t, std::size_t);
}
