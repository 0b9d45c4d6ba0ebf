// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

namespace {

// The operands of a product with a diagonal in the middle, stored as the options say.
struct Product
{
    char transa, transb;
    int m, n, k, lda, ldb, ldc;
    double alpha, beta, *a, *b, *c;

    explicit Product(digest::Case& c_)
        : transa(c_.odds(2) ? 'N' : 'T'), transb(c_.odds(2) ? 'n' : 't'), m(c_.count(9)), n(c_.size()),
          k(c_.odds(16) ? 100 : c_.count(20)), lda(c_.leading(transa == 'N' ? m : k)),
          ldb(c_.leading(transb == 'n' ? k : n)), ldc(c_.leading(m)), alpha(c_.number()), beta(c_.number()),
          a(transa == 'N' ? c_.matrix(m, k, lda) : c_.matrix(k, m, lda)),
          b(transb == 'n' ? c_.matrix(k, n, ldb) : c_.matrix(n, k, ldb)), c(c_.matrix(m, n, ldc))
    {
    }
};

} // namespace

DIGEST(blac_dgemm_scaled_, Computed)
{
    const Product p(c);
    const int ldd = c.count(12);
    double* const d = c.matrix(1, p.k, ldd + 1);
    blac_dgemm_scaled_(&p.transa, &p.transb, &p.m, &p.n, &p.k, &p.alpha, p.a, &p.lda, p.b, &p.ldb, &p.beta,
                       p.c, &p.ldc, d, &ldd);
}

DIGEST(blac_dgemm_scaled2_, Computed)
{
    const Product p(c);
    blac_dgemm_scaled2_(&p.transa, &p.transb, &p.m, &p.n, &p.k, &p.alpha, p.a, &p.lda, p.b, &p.ldb, &p.beta,
                        p.c, &p.ldc, c.vector(p.k));
}

DIGEST(blac_dsyrk_scaled_, Computed)
{
    const int n = c.size(), k = c.count(9), nb = 1 + c.below(12);
    const int lda = c.leading(n), ldb = c.leading(n), ldc = c.leading(n);
    const double alpha = c.number(), beta = c.number();
    const double *const a = c.matrix(n, k, lda), *const b = c.matrix(n, k, ldb);
    double* const result = c.matrix(n, n, ldc);
    blac_dsyrk_scaled_(&nb, &n, &k, &alpha, a, &lda, b, &ldb, &beta, result, &ldc, c.vector(k));
}

DIGEST(blac_dsyrk_scaled2_, Computed)
{
    const int n = c.size(), k = c.count(9), nb = 1 + c.below(12), lda = c.leading(n), ldc = c.leading(n),
              ldd = c.leading(k);
    const double alpha = c.number(), beta = c.number();
    const double* const a = c.matrix(n, k, lda);
    double* const result = c.matrix(n, n, ldc);
    blac_dsyrk_scaled2_(&nb, &n, &k, &alpha, a, &lda, &beta, result, &ldc, c.matrix(1, k, ldd + 1), &ldd);
}
