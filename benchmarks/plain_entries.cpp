// SPDX-License-Identifier: BSD-3-Clause
#include "plain_entries.h"

#include "reference.h"

extern "C" int lsame_(const char* a, const char* b, std::size_t, std::size_t);

void plain_scale_(const int* m, const int* n, const double* d, const double* a, const int* lda, double* b,
                  const int* ldb)
{
    reference::scale(*m, *n, d, a, *lda, b, *ldb);
}

void plain_scale2_(const int* m, const int* n, double* a, const int* lda, const double* d)
{
    reference::scale2(*m, *n, a, *lda, d);
}

void plain_scale2t_(const int* m, const int* n, double* a, const int* lda, const double* d)
{
    reference::scale2t(*m, *n, a, *lda, d);
}

void plain_scale_low_(const int* n, double* a, const int* lda, const double* d)
{
    reference::scale_low(*n, a, *lda, d);
}

void plain_scale_low2_(const int* n, double* a, const int* lda)
{
    reference::scale_low2(*n, a, *lda);
}

void plain_addrectblock_(const int* m, const int* n, double* a, const int* lda, const double* b,
                         const int* ldb)
{
    reference::addrectblock(*m, *n, a, *lda, b, *ldb);
}

void plain_addrectblockt_(const int* m, const int* n, double* a, const int* lda, const double* b,
                          const int* ldb)
{
    reference::addrectblockt(*m, *n, a, *lda, b, *ldb);
}

void plain_addtriblock_(const int* n, double* a, const int* lda, const double* b, const int* ldb)
{
    reference::addtriblock(*n, a, *lda, b, *ldb);
}

void plain_datcpy_(const int* m, const int* n, const double* a, const int* lda, double* b, const int* ldb)
{
    reference::datcpy(*m, *n, a, *lda, b, *ldb);
}

void plain_dlacpysc_(const int* m, const int* n, const double* a, const int* lda, const double* s, double* b,
                     const int* ldb)
{
    reference::dlacpysc(*m, *n, a, *lda, s, b, *ldb);
}

void plain_copyrect_(int m, int n, double* b, int ldb, const double* a, int lda)
{
    reference::copyrect(m, n, b, ldb, a, lda);
}

void plain_zerotri_(const int* n, double* a, const int* lda)
{
    reference::zerotri(*n, 0, *n, a, *lda);
}

void plain_copydiag_(const int* n, const double* a, const int* lda, double* d, double* dinv)
{
    reference::copydiag(*n, a, *lda, d, dinv);
}

void plain_reflect_(const char* uplo, const int* n, double* a, const int* lda)
{
    const bool lower = lsame_(uplo, "L", 1, 1), upper = lsame_(uplo, "U", 1, 1);
    if (lower || upper)
        reference::reflect(lower ? 'L' : 'U', *n, a, *lda);
}

void plain_cholupd_(const char* job, const int* n, const int* nlead, const int* ncol, double* l,
                    const int* ldl, double* x, const double* tol, int* info)
{
    *info = 0;
    const bool add = lsame_(job, "P", 1, 1);
    if (add || lsame_(job, "N", 1, 1))
        *info = reference::cholupd(add ? 'P' : 'N', *n, *nlead, *ncol, l, *ldl, x, *tol);
}

void plain_dchud_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s)
{
    reference::dchud(l, *ldl, *p, x, c, s);
}

void plain_dchdd_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s, int* info)
{
    *info = reference::dchdd(l, *ldl, *p, x, c, s);
}

void plain_selim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol)
{
    reference::selim_small(*n, a, *lda, d, dinv, *tol);
}

void plain_uelim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol)
{
    reference::uelim_small(*n, a, *lda, d, dinv, *tol);
}

void plain_selim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                            const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    reference::selim_small_reg(*n, a, *lda, d, dinv, tol, negpiv, reg, dcorr);
}

void plain_uelim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                            const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    reference::uelim_small_reg(*n, a, *lda, d, dinv, tol, negpiv, reg, dcorr);
}

void plain_selim_(const int* n, const int*, const double* tol, double* a, const int* lda, double* d,
                  double* dinv)
{
    reference::selim_small(*n, a, *lda, d, dinv, *tol);
}

void plain_uelim_(const int* n, const int*, const double* tol, double* a, const int* lda, double* d,
                  double* dinv)
{
    reference::uelim_small(*n, a, *lda, d, dinv, *tol);
}

void plain_sparse_umv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                       const int* m, const int* n, const int* nrhs)
{
    reference::sparse_umv(a, x, ia, ja, y, *m, *n, *nrhs);
}

void plain_sparse_umtv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                        const int* m, const int* n, const int* nrhs)
{
    reference::sparse_umtv(a, x, ia, ja, y, *m, *n, *nrhs);
}

void plain_dset_(const int* n, const double* a, double* x, const int* incx)
{
    reference::dset(*n, a, x, *incx);
}

void plain_vdasn_(const int* n, double* x, const double* a)
{
    reference::vdasn(*n, x, a);
}

void plain_vdscale_(const int* n, double* x, const double* a)
{
    reference::vdscale(*n, x, *a);
}

void plain_vdcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    reference::vdcopyi(*n, x, *incx, y, *incy);
}

void plain_vdnegcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    reference::vdnegcopyi(*n, x, *incx, y, *incy);
}

void plain_vdaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                   double* z, const int* incz)
{
    reference::vdaddi(*n, x, *incx, y, *incy, z, *incz);
}

void plain_vdnegaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                      double* z, const int* incz)
{
    reference::vdnegaddi(*n, x, *incx, y, *incy, z, *incz);
}

void plain_vzconj_(const int* n, const blac_complex* x, blac_complex* y)
{
    reference::vzconj(*n, reinterpret_cast<const double*>(x), reinterpret_cast<double*>(y));
}
