// SPDX-License-Identifier: BSD-3-Clause
// A = L·D·Lᵀ of a front in packed block columns, and with M = L·D the inverse N = M⁻¹: the off-diagonal
// blocks are left as -N, so that A⁻¹ = Nᵀ·D·N is applied with products only. Diagonal blocks are those of
// blac_selim_small_.
//
// Every triangular product has the scalar 1. N is built a block row at a time: with acc(i,s) = Σ
// M(i,k)·N(k,s) over s <= k < i collected in place of block (i,s), the recursion N(i,s) = -M(i,i)⁻¹·acc(i,s)
// leaves -N(i,s) there.
#include "TOVBlaModule.h"

#include "facade_calls.h"
#include "panels.h"

namespace {

/// A front in block columns: block column q holds the rows from its own diagonal block down, contiguously.
struct PackedFront
{
    double* a;
    int64_t n, nb;

    int rows(int q) const { return static_cast<int>(n - q * nb); } // also the leading dimension
    double* block(int i, int q) const
    {
        return a + q * nb * n - nb * nb * (int64_t{q} * (q - 1) / 2) + (i - q) * nb;
    }
};

/// work := (L·diag(s))⁻¹ or, without s, L⁻¹, lower triangle only; L is read off the multipliers above the
/// diagonal.
void invert(int n, const double* block, int64_t lda, const double* s, double* work, int64_t ldw)
{
    for (int64_t j = 0; j < n; ++j) {
        double* const x = work + j * ldw;
        x[j] = 1.0;
        for (int64_t i = j + 1; i < n; ++i) {
            double sum = block[j + i * lda];
            for (int64_t k = j + 1; k < i; ++k)
                sum += block[k + i * lda] * x[k];
            x[i] = -sum;
        }
    }
    if (s)
        for (int64_t j = 0; j < n; ++j)
            for (int64_t i = j; i < n; ++i)
                work[i + j * ldw] = s[i] * work[i + j * ldw];
}

void put_diagonal(int n, double* block, int64_t lda, const double* values)
{
    for (int64_t i = 0; i < n; ++i)
        block[i * (lda + 1)] = values[i];
}

} // namespace

BLA_EXPORT void blaC_selimC(int n, int nb, double tol, double* a)
{
    const double one = 1.0, minus_one = -1.0;
    const Panels panels(n, nb);
    const int p = panels.full, r = panels.last;
    if (p < 1) {
        if (r < 1)
            return; // without an address formed from what may be none
        double* const d = a + int64_t{n} * n;
        blac_selim_small_(&r, a, &n, d, d + n, &tol);
        return;
    }

    const PackedFront front{a, n, nb};
    double* d = front.block(p, p) + int64_t{r} * r;
    double* dinv = d + n;
    double* const work = dinv + n;
    for (int q = 0; q < p; ++q, d += nb, dinv += nb) {
        const int ld = front.rows(q), below = ld - nb;
        double* const diagonal = front.block(q, q);
        double* const rest = diagonal + nb;
        blac_selim_small_(&nb, diagonal, &ld, d, dinv, &tol);

        invert(nb, diagonal, ld, nullptr, work, nb);
        facade_dtrmm("R", "L", "T", "U", &below, &nb, &one, work, &nb, rest, &ld, 1, 1, 1, 1); // rest := L·D

        put_diagonal(nb, diagonal, ld, dinv); // where the scaled products read it
        for (int t = q + 1; t <= p; ++t) {
            const int rows = front.rows(t), width = t < p ? nb : r;
            const double* const x = front.block(t, q);
            blac_dgemm_scaled_("N", "T", &rows, &width, &nb, &minus_one, x, &ld, x, &ld, &one,
                               front.block(t, t), &rows, diagonal, &ld);
        }
        put_diagonal(nb, diagonal, ld, d);

        invert(nb, diagonal, ld, dinv, work, nb);
        for (int s = 0; s < q; ++s) {
            const int lds = front.rows(s);
            double* const row = front.block(q, s);
            facade_dtrmm("L", "L", "N", "N", &nb, &nb, &one, work, &nb, row, &lds, 1, 1, 1, 1); // row := -N
            facade_dgemm("N", "N", &below, &nb, &nb, &minus_one, rest, &ld, row, &lds, &one, row + nb, &lds,
                         1, 1);
        }
        facade_dtrmm("R", "L", "N", "N", &below, &nb, &one, work, &nb, rest, &ld, 1, 1, 1,
                     1); // opens acc of this column
    }

    double* const last = front.block(p, p);
    blac_selim_small_(&r, last, &r, d, dinv, &tol);
    invert(r, last, r, dinv, work, nb);
    for (int s = 0; s < p; ++s) {
        const int lds = front.rows(s);
        facade_dtrmm("L", "L", "N", "N", &r, &nb, &one, work, &nb, front.block(p, s), &lds, 1, 1, 1, 1);
    }
}

BLA_PLAIN_NAME(blaC_selimC, "_Z11blaC_selimCiidPd", void, (int, int, double, double*))
