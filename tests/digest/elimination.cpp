// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

namespace {

// A front and all that goes with its elimination.
struct Front
{
    int n, nb, lda;
    double tol, *a, *d, *dinv;

    explicit Front(digest::Case& c)
        : n(c.size()), nb(1 + c.below(17)), lda(c.leading(n)), tol(c.odds(4) ? 0.0 : 1e-3),
          a(c.front(n, lda)), d(c.room(n)), dinv(c.room(n))
    {
    }
};

// Of a regularised elimination; a tenth or so of the pivots counts as small.
struct Regularised : Front
{
    double *tolerance, *reg, *dcorr;
    int* negpiv;

    explicit Regularised(digest::Case& c)
        : Front(c), tolerance(c.vector(n)), reg(c.vector(n)), dcorr(c.room(n))
    {
        std::vector<int> flags;
        for (int i = 0; i < n; ++i)
            flags.push_back(c.below(3));
        negpiv = c.integers(flags);
    }
};

} // namespace

DIGEST(blac_selim_small_, Computed)
{
    const Front f(c);
    blac_selim_small_(&f.n, f.a, &f.lda, f.d, f.dinv, &f.tol);
}

DIGEST(blac_selim_small_reg_, Computed)
{
    const Regularised f(c);
    blac_selim_small_reg_(&f.n, f.a, &f.lda, f.d, f.dinv, f.tolerance, f.negpiv, f.reg, f.dcorr);
}

DIGEST(blac_selim_, Computed)
{
    const Front f(c);
    if (f.n > 0) // an empty front stands for one of order nb
        blac_selim_(&f.n, &f.nb, &f.tol, f.a, &f.lda, f.d, f.dinv);
}

DIGEST(blac_selim_reg_, Computed)
{
    const Regularised f(c);
    if (f.n > 0)
        blac_selim_reg_(&f.n, &f.nb, f.a, &f.lda, f.d, f.dinv, f.tolerance, f.negpiv, f.reg, f.dcorr);
}

DIGEST(blac_uelim_small_, Computed)
{
    const Front f(c);
    blac_uelim_small_(&f.n, f.a, &f.lda, f.d, f.dinv, &f.tol);
}

DIGEST(blac_uelim_small_reg_, Computed)
{
    const Regularised f(c);
    blac_uelim_small_reg_(&f.n, f.a, &f.lda, f.d, f.dinv, f.tolerance, f.negpiv, f.reg, f.dcorr);
}

DIGEST(blac_uelim_, Computed)
{
    const Front f(c);
    if (f.n > 0)
        blac_uelim_(&f.n, &f.nb, &f.tol, f.a, &f.lda, f.d, f.dinv);
}

DIGEST(blac_uelim_reg_, Computed)
{
    const Regularised f(c);
    if (f.n > 0)
        blac_uelim_reg_(&f.n, &f.nb, f.a, &f.lda, f.d, f.dinv, f.tolerance, f.negpiv, f.reg, f.dcorr);
}

DIGEST(blaC_selimC, Computed)
{
    // In packed storage: block columns of width nb from their diagonal blocks down, results, work area.
    const int n = 1 + c.size(), nb = 1 + c.below(17), panels = (n - 1) / nb;
    double* const a = c.ordinary(n * n + 2 * n + nb * nb);
    for (int q = 0, column = 0; q <= panels; column += (n - q * nb) * nb, ++q)
        for (int i = 0; i < nb && q * nb + i < n; ++i)
            c.set(a, column + i * (n - q * nb + 1), c.odds(9) ? 1e-4 : 32 * c.number());
    blaC_selimC(n, nb, 1e-3, a);
}
