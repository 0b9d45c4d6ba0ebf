// SPDX-License-Identifier: BSD-3-Clause
#include "front.h"

#include "dense.h"
#include "triangles.h"

#include <algorithm>
#include <cstdint>

namespace {

// The panel width of an elimination of p pivots, of which up to `unblocked` go without panels.
int panelWidth(const PivotRule& rule, int pivots, int unblocked)
{
    if (rule.nb > 0)
        return rule.nb;
    return pivots <= unblocked ? pivots : pivots <= 1400 ? 32 : pivots <= 3000 ? 48 : 96;
}

// Calls product(j, width, l, depth) for every piece of a product of m rows, n columns and inner dimension k:
// columns j ... j + width - 1, inner indices l ... l + depth - 1, l ascending for each j. Up to 10^6
// multiplications OpenBLAS takes a path without packing that is faster by up to a half. Where pieces of that
// size would be too thin, wide ones are better.
template <class Product>
void inPieces(int m, int n, int k, Product product)
{
    constexpr int fast = 1000000, narrow = 24, least = 32;
    const bool small = m <= fast / (narrow * least);
    const int width = small ? narrow : 128;
    const int depth = small ? std::min(fast / (narrow * std::max(m, 1)) / 8 * 8, 96) : std::max(k, 1);
    for (int j = 0; j < n; j += width)
        for (int l = 0; l < k; l += depth)
            product(j, std::min(width, n - j), l, std::min(depth, k - l));
}

// Panels are solved with small triangles; the lower ones are inverted before: with many columns that is about
// twice as fast as OpenBLAS's triangular solves.
constexpr int solveBlock = narrowTriangle;
constexpr bool worthInverting(int triangle, int others)
{
    return others >= 3 * triangle;
}

// B := L^-1 * B, L lower triangular of order m <= solveBlock, B of n columns
void solveByLower(int m, int n, const double* l, int ldl, double* b, int ldb)
{
    if (!worthInverting(m, n)) {
        dense::trsm('L', 'L', 'N', 'N', m, n, l, ldl, b, ldb);
        return;
    }
    double inverse[solveBlock * solveBlock];
    for (int j = 0; j < m; ++j)
        std::copy_n(l + j + static_cast<std::int64_t>(ldl) * j, m - j, inverse + j + m * j);
    dense::invert('L', 'N', m, inverse, m);
    dense::trmm('L', 'L', 'N', m, n, inverse, m, b, ldb);
}

} // namespace

void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur,
                        const Pivots& out)
{
    const int order = pivots + rest;
    const int nb = panelWidth(rule, pivots, 128);
    if (rule.shift > 0.0) {
        blac_selim_reg_(&pivots, &nb, panel, &order, out.d, out.dinv, out.tolerance, out.negative, out.shift,
                        out.correction);
    } else {
        blac_selim_(&pivots, &nb, &rule.tolerance, panel, &order, out.d, out.dinv);
    }
    if (rest == 0)
        return;

    const auto at = [&](int i, int j) { return i + static_cast<std::int64_t>(order) * j; };
    // L21*D := F21 * L11^-T, block by block: each diagonal panel of F11 holds its L^T above the diagonal.
    for (int start = 0; start < pivots; start += nb)
        for (int j = start; j < std::min(start + nb, pivots); j += solveBlock) {
            const int width = std::min({solveBlock, start + nb - j, pivots - j});
            const int later = pivots - j - width;
            const double* diagonal = panel + at(j, j);
            double* rows = panel + at(pivots, j);
            solveByUpperUnit(rest, width, diagonal, order, rows, order);
            inPieces(rest, later, width, [&](int k, int columns, int l, int depth) {
                dense::subtractScaledProduct(rest, columns, depth, rows + at(0, l), order,
                                             diagonal + at(width + k, l), order, 1.0, rows + at(0, width + k),
                                             order, out.dinv + j + l);
            });
        }
    inPieces(rest, rest, pivots, [&](int j, int columns, int l, int depth) {
        const double* rows = panel + at(pivots + j, l);
        dense::subtractScaledProduct(rest - j, columns, depth, rows, order, rows, order, l == 0 ? 0.0 : 1.0,
                                     schur + j + static_cast<std::int64_t>(rest) * j, rest, out.dinv + l);
    });
}

void eliminateUnsymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* right,
                          double* schur, const Pivots& out)
{
    const int order = pivots + rest;
    const int nb = panelWidth(rule, pivots, 256);
    if (rule.shift > 0.0) {
        blac_uelim_reg_(&pivots, &nb, panel, &order, out.d, out.dinv, out.tolerance, out.negative, out.shift,
                        out.correction);
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
    inPieces(rest, rest, pivots, [&](int j, int columns, int l, int depth) {
        dense::gemm('N', 'N', rest, columns, depth, -1.0, at(pivots, l), order,
                    right + l + static_cast<std::int64_t>(pivots) * j, pivots, l == 0 ? 0.0 : 1.0,
                    schur + static_cast<std::int64_t>(rest) * j, rest);
    });
}
