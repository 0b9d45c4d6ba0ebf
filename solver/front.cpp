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
    alignas(64) double inverse[solveBlock * solveBlock]; // at the same place in a line on every stack
    for (int j = 0; j < m; ++j)
        std::copy_n(l + j + static_cast<std::int64_t>(ldl) * j, m - j, inverse + j + m * j);
    dense::invert('L', 'N', m, inverse, m);
    dense::trmm('L', 'L', 'N', m, n, inverse, m, b, ldb);
}

// The panel width of the elimination of p pivots, of which a number goes without panels.
int panelWidth(const PivotRule& rule, int pivots, bool symmetric)
{
    return panelWidth(rule, pivots, symmetric ? 128 : 256);
}

} // namespace

void eliminatePivots(const PivotRule& rule, bool symmetric, int pivots, double* f, int ld, const Pivots& out)
{
    const int nb = panelWidth(rule, pivots, symmetric);
    if (symmetric && rule.shift > 0.0)
        blac_selim_reg_(&pivots, &nb, f, &ld, out.d, out.dinv, out.tolerance, out.negative, out.shift,
                        out.correction);
    else if (symmetric)
        blac_selim_(&pivots, &nb, &rule.tolerance, f, &ld, out.d, out.dinv);
    else if (rule.shift > 0.0)
        blac_uelim_reg_(&pivots, &nb, f, &ld, out.d, out.dinv, out.tolerance, out.negative, out.shift,
                        out.correction);
    else
        blac_uelim_(&pivots, &nb, &rule.tolerance, f, &ld, out.d, out.dinv);
}

void solveLower(const PivotRule& rule, bool symmetric, int m, int pivots, const double* f, int ldf,
                double* rows, int ld, const double* dinv)
{
    // Symmetric, each diagonal panel of F11 holds its L^T above the diagonal, and only there.
    const int nb = symmetric ? panelWidth(rule, pivots, symmetric) : pivots;
    const auto at = [&](int i, int j) { return f + i + static_cast<std::int64_t>(ldf) * j; };
    for (int start = 0; start < pivots; start += nb)
        for (int j = start; j < std::min(start + nb, pivots); j += solveBlock) {
            const int width = std::min({solveBlock, start + nb - j, pivots - j});
            const int next = j + width, later = pivots - next;
            double* const solved = rows + static_cast<std::int64_t>(ld) * j;
            double* const others = rows + static_cast<std::int64_t>(ld) * next;
            solveByUpperUnit(m, width, at(j, j), ldf, solved, ld);
            if (symmetric)
                inPieces(m, later, width, [&](int k, int columns, int l, int depth) {
                    const std::int64_t behind = static_cast<std::int64_t>(ld) * l;
                    dense::subtractScaledProduct(m, columns, depth, solved + behind, ld, at(next + k, j + l),
                                                 ldf, 1.0, others + static_cast<std::int64_t>(ld) * k, ld,
                                                 dinv + j + l);
                });
            else if (later > 0)
                dense::gemm('N', 'N', m, later, width, -1.0, solved, ld, at(j, next), ldf, 1.0, others, ld);
        }
}

void solveUpper(int n, int pivots, const double* f, int ldf, double* columns, int ld)
{
    for (int j = 0; j < pivots; j += solveBlock) {
        const int width = std::min(solveBlock, pivots - j), next = j + width, later = pivots - next;
        const auto at = [&](int i) { return f + i + static_cast<std::int64_t>(ldf) * j; };
        solveByLower(width, n, at(j), ldf, columns + j, ld);
        if (later > 0)
            dense::gemm('N', 'N', later, n, width, -1.0, at(next), ldf, columns + j, ld, 1.0, columns + next,
                        ld);
    }
}

void updateSymmetric(int m, int n, int pivots, const double* a, const double* b, int ld, const double* dinv,
                     double beta, double* c, int ldc)
{
    const bool triangle = a == b;
    inPieces(m, n, pivots, [&](int j, int columns, int l, int depth) {
        const int top = triangle ? j : 0;
        const std::int64_t behind = static_cast<std::int64_t>(ld) * l;
        dense::subtractScaledProduct(m - top, columns, depth, a + top + behind, ld, b + j + behind, ld,
                                     l == 0 ? beta : 1.0, c + top + static_cast<std::int64_t>(ldc) * j, ldc,
                                     dinv + l);
    });
}

void updateUnsymmetric(int m, int n, int pivots, const double* a, int lda, const double* b, int ldb,
                       double beta, double* c, int ldc)
{
    inPieces(m, n, pivots, [&](int j, int columns, int l, int depth) {
        dense::gemm('N', 'N', m, columns, depth, -1.0, a + static_cast<std::int64_t>(lda) * l, lda,
                    b + l + static_cast<std::int64_t>(ldb) * j, ldb, l == 0 ? beta : 1.0,
                    c + static_cast<std::int64_t>(ldc) * j, ldc);
    });
}

void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur,
                        const Pivots& out)
{
    const int order = pivots + rest;
    eliminatePivots(rule, true, pivots, panel, order, out);
    if (rest == 0)
        return;
    solveLower(rule, true, rest, pivots, panel, order, panel + pivots, order, out.dinv);
    updateSymmetric(rest, rest, pivots, panel + pivots, panel + pivots, order, out.dinv, 0.0, schur, rest);
}

void eliminateUnsymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* right,
                          double* schur, const Pivots& out)
{
    const int order = pivots + rest;
    eliminatePivots(rule, false, pivots, panel, order, out);
    if (rest == 0)
        return;
    solveLower(rule, false, rest, pivots, panel, order, panel + pivots, order, out.dinv);
    solveUpper(rest, pivots, panel, order, right, pivots);
    updateUnsymmetric(rest, rest, pivots, panel + pivots, order, right, pivots, 0.0, schur, rest);
}
