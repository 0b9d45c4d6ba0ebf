// SPDX-License-Identifier: BSD-3-Clause
// The solution over the tree: forward from the leaves to the roots, backward from the roots to the leaves.
// Right-hand sides are held unknown by unknown, so that what a front takes and gives is in one piece each.
#include "columns.h"
#include "dense.h"
#include "factor.h"

#include <algorithm>
#include <functional>

namespace {

// More right-hand sides than this are worth the calls of the BLAS.
constexpr int few = 16;

// Rows of `width` numbers, one or a multiple of columnGroup: W[i] := V[rows[i]]
void gather(int width, const int* rows, int count, const double* v, double* w)
{
    const std::int64_t step = width;
    if (width == 1)
        for (int i = 0; i < count; ++i)
            w[i] = v[rows[i]];
    else
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < width; j += columnGroup) {
                const double* const row = v + step * rows[i] + j;
                for (int k = 0; k < columnGroup; ++k)
                    w[step * i + j + k] = row[k];
            }
}

// V[rows[i]] := V[rows[i]] + or - W[i]
template <class Operation>
void combine(Operation operation, int width, const int* rows, int count, const double* w, double* v)
{
    const std::int64_t step = width;
    if (width == 1)
        for (int i = 0; i < count; ++i)
            v[rows[i]] = operation(v[rows[i]], w[i]);
    else
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < width; j += columnGroup) {
                double* const row = v + step * rows[i] + j;
                for (int k = 0; k < columnGroup; ++k)
                    row[k] = operation(row[k], w[step * i + j + k]);
            }
}

} // namespace

void Factor::solve(Vectors& x, bool transposed, int threads) const
{
    const int width = x.columns == 1 ? 1 : (x.columns + columnGroup - 1) / columnGroup * columnGroup;
    const std::int64_t step = width;
    const double work = static_cast<double>(width) * static_cast<double>(analysis_.panelEntries);
    const int used = work < schedule_.cuts.leastSolved ? 1 : threads, tasks = pieces_.graph.count();
    const Workspace room(step * pieces_.length);
    double* const y = room.get();
    const auto eachUnknown = [&](const auto& visit) {
        for (const Piece& piece : pieces_.pieces)
            for (int k = 0; k < piece.pivots(); ++k)
                visit(analysis_.permutation[piece.begin + k], y + step * (piece.home + k));
    };
    eachUnknown([&](int unknown, double* row) {
        for (int j = 0; j < width; ++j)
            row[j] = j < x.columns ? x.column(j)[unknown] : 0.0;
    });
    pieces_.graph.execute(used, [&](int t) {
        if (t < tasks / 2)
            forward(pieces_.pieces[t], width, transposed, y);
        else
            backward(pieces_.pieces[tasks - 1 - t], width, transposed, y);
    });
    eachUnknown([&](int unknown, const double* row) {
        for (int j = 0; j < x.columns; ++j)
            x.column(j)[unknown] = row[j];
    });
}

// Leaves in the rows outside what is to be added to those of the parent.
void Factor::forward(const Piece& piece, int width, bool transposed, double* y) const
{
    const std::int64_t step = width;
    double *const v = y + step * piece.home, *const w = y + step * piece.front;
    std::fill_n(v + step * piece.pivots(), step * piece.outside, 0.0);
    for (int c : piece.children) {
        const Piece& child = pieces_.pieces[c];
        combine(std::plus<>(), width, pieces_.at.data() + child.at, child.outside,
                y + step * (child.home + child.pivots()), v);
    }
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        if (transposed && !symmetric_)
            forwardByUpper(front, width, own, w);
        else
            forwardByLower(front, width, own, w);
        combine(std::minus<>(), width, rows + front.pivots, front.rest(), w + step * front.pivots, v);
    }
}

void Factor::backward(const Piece& piece, int width, bool transposed, double* y) const
{
    const std::int64_t step = width;
    double *const v = y + step * piece.home, *const w = y + step * piece.front;
    if (piece.parent >= 0)
        gather(width, pieces_.at.data() + piece.at, piece.outside,
               y + step * pieces_.pieces[piece.parent].home, v + step * piece.pivots());
    for (int f = piece.last; f >= piece.first; --f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        std::copy_n(own, step * front.pivots, w);
        gather(width, rows + front.pivots, front.rest(), v, w + step * front.pivots);
        if (transposed || symmetric_)
            backwardByLower(front, width, w);
        else
            backwardByUpper(front, width, w);
        std::copy_n(w, step * front.pivots, own);
    }
}

// V := (L11*D)^-1 * V, W2 := (L21*D) * V
void Factor::forwardByLower(const Front& f, int width, double* v, double* w) const
{
    const double* panel = panels_.get() + f.panel;
    if (width <= few)
        return solveForward(f.order, f.pivots, panel, dinv_.data() + f.first, v, w, width);
    dense::trsm('R', 'L', 'T', 'N', width, f.pivots, panel, f.order, v, width);
    dense::gemm('N', 'T', width, f.rest(), f.pivots, 1.0, v, width, panel + f.pivots, f.order, 0.0,
                w + static_cast<std::int64_t>(width) * f.pivots, width);
}

// V1 := (L11*D)^-T * (V1 - (L21*D)^T * V2), of a symmetric factor with D * V1 in place of V1
void Factor::backwardByLower(const Front& f, int width, double* v) const
{
    if (symmetric_)
        for (int k = 0; k < f.pivots; ++k)
            for (int j = 0; j < width; ++j)
                v[static_cast<std::int64_t>(width) * k + j] *= d_[f.first + k];
    const double* panel = panels_.get() + f.panel;
    if (width <= few)
        return solveBackward(f.order, f.pivots, panel, dinv_.data() + f.first, v, width);
    const double* const other = v + static_cast<std::int64_t>(width) * f.pivots;
    dense::gemm('N', 'N', width, f.pivots, f.rest(), -1.0, other, width, panel + f.pivots, f.order, 1.0, v,
                width);
    dense::trsm('R', 'L', 'N', 'N', width, f.pivots, panel, f.order, v, width);
}

// V := U11^-T * V, W2 := U12^T * V
void Factor::forwardByUpper(const Front& f, int width, double* v, double* w) const
{
    dense::solveRows('U', 'N', 'U', width, f.pivots, panels_.get() + f.panel, f.order, v);
    dense::multiplyRows('N', width, f.rest(), f.pivots, 1.0, v, rights_.get() + f.right, f.pivots, 0.0,
                        w + static_cast<std::int64_t>(width) * f.pivots);
}

// V1 := U11^-1 * (V1 - U12 * V2)
void Factor::backwardByUpper(const Front& f, int width, double* v) const
{
    const double* const other = v + static_cast<std::int64_t>(width) * f.pivots;
    dense::multiplyRows('T', width, f.pivots, f.rest(), -1.0, other, rights_.get() + f.right, f.pivots, 1.0,
                        v);
    dense::solveRows('U', 'T', 'U', width, f.pivots, panels_.get() + f.panel, f.order, v);
}
