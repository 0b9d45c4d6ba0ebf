// SPDX-License-Identifier: BSD-3-Clause
// The plain loops that every kernel is held against: one operation a line, scalars by value, compiled without
// vectorisation and without contraction. Nothing here is shared with the library.
#pragma once

#include <cstdint>

namespace reference {

using std::int64_t;

// Arrays may start at any address.
typedef double number __attribute__((aligned(1)));

// scaling.cpp
void scale(int m, int n, const number* d, const number* a, int lda, number* b, int ldb);
void scale2(int m, int n, number* a, int lda, const number* d);
void scale2t(int m, int n, number* a, int lda, const number* d);
void scale_low(int n, number* a, int lda, const number* d);
void scale_low2(int n, number* a, int lda);

// sparse.cpp
typedef int integer __attribute__((aligned(1)));
void sparse_umv(const number* a, const number* x, const integer* ia, const integer* ja, number* y, int m,
                int n, int nrhs);
void sparse_umtv(const number* a, const number* x, const integer* ia, const integer* ja, number* y, int m,
                 int n, int nrhs);
void sparse_sparse_umtv(const number* a, const number* x, const integer* ia, const integer* ja, number* y,
                        int nl, int n, int nrhs, const integer* list);

// cholesky.cpp, on the library's drotg_, ddot_ and dnrm2_
int cholupd(char job, int n, int nlead, int ncol, number* l, int ldl, number* x, double tol);
void dchud(number* l, int ldl, int p, const number* x, number* c, number* s);
int dchdd(number* l, int ldl, int p, const number* x, number* c, number* s);

// products.cpp: they end in the library's dgemm_, like the kernels
void dgemm_scaled(char transa, char transb, int m, int n, int k, double alpha, const number* a, int lda,
                  const number* b, int ldb, double beta, number* c, int ldc, const number* d, int ldd);
void dsyrk_scaled(int nb, int n, int k, double alpha, const number* a, int lda, const number* b, int ldb,
                  double beta, number* c, int ldc, const number* d, int ldd);

// elimination.cpp
void selim_small(int n, number* a, int lda, number* d, number* dinv, double tol);
void selim_small_reg(int n, number* a, int lda, number* d, number* dinv, const number* tol, const int* negpiv,
                     const number* reg, number* dcorr);
void uelim_small(int n, number* a, int lda, number* d, number* dinv, double tol);
void uelim_small_reg(int n, number* a, int lda, number* d, number* dinv, const number* tol, const int* negpiv,
                     const number* reg, number* dcorr);

// vectors.cpp
void vdasn(int64_t n, number* x, const number* a);
void vdscale(int64_t n, number* x, double a);
void vdcopyi(int n, const number* x, int incx, number* y, int incy);
void vdnegcopyi(int n, const number* x, int incx, number* y, int incy);
void vdaddi(int n, const number* x, int incx, const number* y, int incy, number* z, int incz);
void vdnegaddi(int n, const number* x, int incx, const number* y, int incy, number* z, int incz);
void vzconj(int n, const number* x, number* y);

// assembly.cpp
void addrectblock(int m, int n, number* a, int lda, const number* b, int ldb);
void addrectblockt(int m, int n, number* a, int lda, const number* b, int ldb);
void addtriblock(int n, number* a, int lda, const number* b, int ldb);

// copies.cpp
void copydiag(int n, const number* a, int lda, number* d, number* dinv);
void datcpy(int m, int n, const number* a, int lda, number* b, int ldb);
void dlacpysc(int m, int n, const number* a, int lda, const number* s, number* b, int ldb);
void copyrect(int m, int n, number* b, int ldb, const number* a, int lda);
void dset(int n, const number* a, number* x, int incx);
void zerotri(int n, int k0, int m, number* a, int lda);
void reflect(char uplo, int n, number* a, int lda);

} // namespace reference
