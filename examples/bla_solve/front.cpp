// SPDX-License-Identifier: BSD-3-Clause
#include "front.h"

#include "dense.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

// The panel width of an elimination of p pivots, of which up to `unblocked` go without panels.
int panelWidth(const PivotRule& rule, int pivots, int unblocked)
{
    if (rule.nb > 0)
        return rule.nb;
    return pivots <= unblocked ? pivots : pivots <= 1400 ? 32 : pivots <= 3000 ? 48 : 96;
}

// The column width of the update of `rest` rows by p pivots: products of at most about 10^6 multiplications
// take a faster path of OpenBLAS; where that is out of reach, wide blocks are better.
int updateWidth(int rest, int pivots)
{
    return static_cast<std::int64_t>(rest) * pivots <= 40000 ? 32 : rest < 1400 ? 96 : 128;
}

// Panels are solved with the inverses of small triangles: such products are about twice as fast as OpenBLAS's
// triangular solves with narrow right-hand sides.
constexpr int solveBlock = 32;

// B := B * U^-1, U upper triangular of order n <= solveBlock with unit diagonal, B of m rows
void solveByUpperUnit(int m, int n, const double* u, int ldu, double* b, int ldb)
{
    double inverse[solveBlock * solveBlock];
    for (int j = 0; j < n; ++j)
        std::copy_n(u + static_cast<std::int64_t>(ldu) * j, j, inverse + n * j);
    dense::invert('U', 'U', n, inverse, n);
    dense::trmm('R', 'U', 'U', m, n, inverse, n, b, ldb);
}

// B := L^-1 * B, L lower triangular of order m <= solveBlock, B of n columns
void solveByLower(int m, int n, const double* l, int ldl, double* b, int ldb)
{
    double inverse[solveBlock * solveBlock];
    for (int j = 0; j < m; ++j)
        std::copy_n(l + j + static_cast<std::int64_t>(ldl) * j, m - j, inverse + j + m * j);
    dense::invert('L', 'N', m, inverse, m);
    dense::trmm('L', 'L', 'N', m, n, inverse, m, b, ldb);
}

// The regularised eliminations take tolerance (relative to the shift) and shift pivot by pivot.
struct PerPivot
{
    PerPivot(const PivotRule& rule, int pivots)
        : tolerance(pivots, rule.tolerance / rule.shift), shift(pivots, rule.shift)
    {
    }
    std::vector<double> tolerance, shift;
};

} // namespace

void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur,
                        const Pivots& out)
{
    const int order = pivots + rest;
    const int nb = panelWidth(rule, pivots, 128);
    if (rule.shift > 0.0) {
        const PerPivot per(rule, pivots);
        blac_selim_reg_(&pivots, &nb, panel, &order, out.d, out.dinv, per.tolerance.data(), out.negative,
                        per.shift.data(), out.correction);
    } else {
        blac_selim_(&pivots, &nb, &rule.tolerance, panel, &order, out.d, out.dinv);
    }
    if (rest == 0)
        return;

    // L21*D := F21 * L11^-T, block by block: each diagonal panel of F11 holds its L^T above the diagonal.
    for (int start = 0; start < pivots; start += nb)
        for (int j = start; j < std::min(start + nb, pivots); j += solveBlock) {
            const int width = std::min({solveBlock, start + nb - j, pivots - j});
            const int later = pivots - j - width;
            const double* diagonal = panel + j + static_cast<std::int64_t>(order) * j;
            double* rows = panel + pivots + static_cast<std::int64_t>(order) * j;
            solveByUpperUnit(rest, width, diagonal, order, rows, order);
            if (later > 0)
                dense::subtractScaledProduct(rest, later, width, rows, order, diagonal + width, order,
                                             rows + static_cast<std::int64_t>(order) * width, order,
                                             out.dinv + j);
        }
    dense::negativeScaledSquare(updateWidth(rest, pivots), rest, pivots, panel + pivots, order, schur, rest,
                                out.dinv);
}

void eliminateUnsymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* right,
                          double* schur, const Pivots& out)
{
    const int order = pivots + rest;
    const int nb = panelWidth(rule, pivots, 256);
    if (rule.shift > 0.0) {
        const PerPivot per(rule, pivots);
        blac_uelim_reg_(&pivots, &nb, panel, &order, out.d, out.dinv, per.tolerance.data(), out.negative,
                        per.shift.data(), out.correction);
    } else {
        blac_uelim_(&pivots, &nb, &rule.tolerance, panel, &order, out.d, out.dinv);
    }
    if (rest == 0)
        return;
    const auto at = [&](int i, int j) { return panel + i + static_cast<std::int64_t>(order) * j; };
    for (int j = 0; j < pivots; j += solveBlock) {
        const int width = std::min(solveBlock, pivots - j);
        const int next = j + width, later = pivots - next;
        // L21*D := F21 * U11^-1
        solveByUpperUnit(rest, width, at(j, j), order, at(pivots, j), order);
        if (later > 0)
            dense::gemm('N', 'N', rest, later, width, -1.0, at(pivots, j), order, at(j, next), order, 1.0,
                        at(pivots, next), order);
        // U12 := (L11*D)^-1 * F12
        solveByLower(width, rest, at(j, j), order, right + j, pivots);
        if (later > 0)
            dense::gemm('N', 'N', later, rest, width, -1.0, at(next, j), order, right + j, pivots, 1.0,
                        right + next, pivots);
    }
    dense::gemm('N', 'N', rest, rest, pivots, -1.0, at(pivots, 0), order, right, pivots, 0.0, schur, rest);
}
