// SPDX-License-Identifier: BSD-3-Clause
// The kernels' entry points over the plain loops of tests/reference. Linked with these in place of the
// library, the digest gives what every line of expected.txt should be: in each rounding mode, denormals or
// no.
#include "TOVBlaModule.h"

#include "reference.h"

#include <limits>

using std::int64_t;

static const double* parts(const blac_complex* x)
{
    return reinterpret_cast<const double*>(x);
}

extern "C" {

int lsame_(const char* a, const char* b, std::size_t, std::size_t);

// Vectors.
void tovbla_vdasn_(const int* n, double* x, const double* a)
{
    reference::vdasn(*n, x, a);
}
void tovbla_bvdasn_(const int64_t* n, double* x, const double* a)
{
    reference::vdasn(*n, x, a);
}
void tovbla_vdscale_(const int* n, double* x, const double* a)
{
    reference::vdscale(*n, x, *a);
}
void tovbla_bvdscale_(const int64_t* n, double* x, const double* a)
{
    reference::vdscale(*n, x, *a);
}
void tovbla_vdcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    reference::vdcopyi(*n, x, *incx, y, *incy);
}
void tovbla_vdnegcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    reference::vdnegcopyi(*n, x, *incx, y, *incy);
}
void tovbla_vdaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                    double* z, const int* incz)
{
    reference::vdaddi(*n, x, *incx, y, *incy, z, *incz);
}
void tovbla_vdnegaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                       double* z, const int* incz)
{
    reference::vdnegaddi(*n, x, *incx, y, *incy, z, *incz);
}
void tovbla_vzconj_(const int* n, const blac_complex* x, blac_complex* y)
{
    reference::vzconj(*n, parts(x), reinterpret_cast<double*>(y));
}

// Blocks.
void blac_addrectblock_(const int* m, const int* n, double* a, const int* lda, const double* b,
                        const int* ldb)
{
    reference::addrectblock(*m, *n, a, *lda, b, *ldb);
}
void blac_addrectblockt_(const int* m, const int* n, double* a, const int* lda, const double* b,
                         const int* ldb)
{
    reference::addrectblockt(*m, *n, a, *lda, b, *ldb);
}
void blac_addtriblock_(const int* n, double* a, const int* lda, const double* b, const int* ldb)
{
    reference::addtriblock(*n, a, *lda, b, *ldb);
}
void blac_copydiag_(const int* n, const double* a, const int* lda, double* d, double* dinv)
{
    reference::copydiag(*n, a, *lda, d, dinv);
}
void blac_datcpy_(const int* m, const int* n, const double* a, const int* lda, double* b, const int* ldb)
{
    reference::datcpy(*m, *n, a, *lda, b, *ldb);
}
void blac_dlacpysc_(const int* m, const int* n, const double* a, const int* lda, const double* s, double* b,
                    const int* ldb)
{
    reference::dlacpysc(*m, *n, a, *lda, s, b, *ldb);
}
void blac_dset_(const int* n, const double* a, double* x, const int* incx)
{
    reference::dset(*n, a, x, *incx);
}
void blac_zerotri_(const int* n, double* a, const int* lda)
{
    reference::zerotri(*n, 0, *n, a, *lda);
}
void blac_reflect_(const char* uplo, const int* n, double* a, const int* lda)
{
    reference::reflect(*uplo, *n, a, *lda);
}

// Scaling.
void blac_scale_(const int* m, const int* n, const double* d, const double* a, const int* lda, double* b,
                 const int* ldb)
{
    reference::scale(*m, *n, d, a, *lda, b, *ldb);
}
void blac_scale2_(const int* m, const int* n, double* a, const int* lda, const double* d)
{
    reference::scale2(*m, *n, a, *lda, d);
}
void blac_scale2t_(const int* m, const int* n, double* a, const int* lda, const double* d)
{
    reference::scale2t(*m, *n, a, *lda, d);
}
void blac_scale_low_(const int* n, double* a, const int* lda, const double* d)
{
    reference::scale_low(*n, a, *lda, d);
}
void blac_scale_low2_(const int* n, double* a, const int* lda)
{
    reference::scale_low2(*n, a, *lda);
}

// Eliminations.
void blac_selim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol)
{
    reference::selim_small(*n, a, *lda, d, dinv, *tol);
}
void blac_selim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                           const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    reference::selim_small_reg(*n, a, *lda, d, dinv, tol, negpiv, reg, dcorr);
}
void blac_uelim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol)
{
    reference::uelim_small(*n, a, *lda, d, dinv, *tol);
}
void blac_uelim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                           const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    reference::uelim_small_reg(*n, a, *lda, d, dinv, tol, negpiv, reg, dcorr);
}

// Cholesky factors.
void blac_cholupd_(const char* job, const int* n, const int* nlead, const int* ncol, double* l,
                   const int* ldl, double* x, const double* tol, int* info)
{
    *info = reference::cholupd(*job, *n, *nlead, *ncol, l, *ldl, x, *tol);
}
void blac_dchud_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s)
{
    reference::dchud(l, *ldl, *p, x, c, s);
}
void blac_dchdd_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s, int* info)
{
    *info = reference::dchdd(l, *ldl, *p, x, c, s);
}

// Sparse products.
void blac_sparse_umv_(const double* a, const double* x, const int* ia, const int* ja, double* y, const int* m,
                      const int* n, const int* nrhs)
{
    reference::sparse_umv(a, x, ia, ja, y, *m, *n, *nrhs);
}
void blac_sparse_umtv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                       const int* m, const int* n, const int* nrhs)
{
    reference::sparse_umtv(a, x, ia, ja, y, *m, *n, *nrhs);
}
void blac_sparse_sparse_umtv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                              const int* nl, const int* n, const int* nrhs, const int* list)
{
    reference::sparse_sparse_umtv(a, x, ia, ja, y, *nl, *n, *nrhs, list);
}

double blac_hdmcon_(const int* i)
{
    using limits = std::numeric_limits<double>;
    const std::uint64_t nan = 0x7FFFFFFFFFFFFFFF;
    const double table[] = {__builtin_bit_cast(double, nan),
                            0x1p1022,
                            limits::max(),
                            limits::min(),
                            limits::epsilon(),
                            0x1.0000000000001p-53,
                            2.0,
                            53.0,
                            709.0,
                            -708.0,
                            2147483647.0,
                            3.14159265358979324,
                            2.71828182845904524,
                            0.57721566490153286,
                            0.0174532925199432958,
                            57.2957795130823209};
    return table[*i >= 1 && *i <= 16 ? *i - 1 : 0];
}
}

void blaC_copyrect_intr(int m, int n, double* b, int ldb, const double* a, int lda)
{
    reference::copyrect(m, n, b, ldb, a, lda);
}

void blaC_zerotriC(int n, int k0, int m, double* a, int lda)
{
    reference::zerotri(n, k0, m, a, lda);
}
