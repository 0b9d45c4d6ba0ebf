// SPDX-License-Identifier: BSD-3-Clause
// The solution over the tree: forward from the leaves to the roots, backward from the roots to the leaves.
// Right-hand sides are held unknown by unknown, so that what a front takes and gives is in one piece each.
#include "columns.h"
#include "dense.h"
#include "factor.h"

#include <algorithm>

namespace {

// More right-hand sides than this are worth the calls of the BLAS.
constexpr int few = 16;

// One number, or a multiple of columnGroup.
void copyRow(int width, const double* from, double* to)
{
    if (width == 1)
        *to = *from;
    else
        for (int j = 0; j < width; j += columnGroup)
            std::copy_n(from + j, columnGroup, to + j);
}

void subtractRow(int width, const double* from, double* to)
{
    for (int j = 0; j < width; ++j)
        to[j] -= from[j];
}

} // namespace

void Factor::solve(Vectors& x, bool transposed) const
{
    const int width = x.columns == 1 ? 1 : (x.columns + columnGroup - 1) / columnGroup * columnGroup;
    const std::int64_t step = width;
    std::vector<double> y(step * analysis_.n), given(step * static_cast<std::int64_t>(pieces_.rows.size()));
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            y[j + step * k] = x.column(j)[analysis_.permutation[k]];
    const int count = pieces_.up.count();
    pieces_.up.execute(threads_,
                       [&](int p) { forward(pieces_.pieces[p], width, transposed, y.data(), given.data()); });
    pieces_.down.execute(
        threads_, [&](int t) { backward(pieces_.pieces[count - 1 - t], width, transposed, y.data()); });
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            x.column(j)[analysis_.permutation[k]] = y[j + step * k];
}

// `given`: what each piece takes from the rows outside of it.
void Factor::forward(const Piece& piece, int width, bool transposed, double* y, double* given) const
{
    const std::int64_t step = width, pivots = piece.end - piece.begin;
    std::vector<double> room(piece.count > 0 ? step * (pivots + piece.count) : 0),
        work(step * piece.largestFront);
    double* const v = piece.count > 0 ? room.data() : y + step * piece.begin;
    if (piece.count > 0)
        std::copy_n(y + step * piece.begin, step * pivots, v);
    for (int c : piece.children) {
        const Piece& child = pieces_.pieces[c];
        for (std::int64_t i = child.outside; i < child.outside + child.count; ++i)
            subtractRow(width, given + step * i, v + step * pieces_.at[i]);
    }
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        if (transposed && !symmetric_)
            forwardByUpper(front, width, own, work.data());
        else
            forwardByLower(front, width, own, work.data());
        for (int i = front.pivots; i < front.order; ++i)
            subtractRow(width, work.data() + step * i, v + step * rows[i]);
    }
    if (piece.count > 0)
        std::copy_n(v, step * pivots, y + step * piece.begin);
    double* const out = given + step * piece.outside;
    for (std::int64_t i = 0; i < step * piece.count; ++i)
        out[i] = -v[step * pivots + i];
}

void Factor::backward(const Piece& piece, int width, bool transposed, double* y) const
{
    const std::int64_t step = width, pivots = piece.end - piece.begin;
    std::vector<double> room(piece.count > 0 ? step * (pivots + piece.count) : 0),
        work(step * piece.largestFront);
    double* const v = piece.count > 0 ? room.data() : y + step * piece.begin;
    if (piece.count > 0)
        std::copy_n(y + step * piece.begin, step * pivots, v);
    for (int i = 0; i < piece.count; ++i)
        copyRow(width, y + step * pieces_.rows[piece.outside + i], v + step * (pivots + i));
    for (int f = piece.last; f >= piece.first; --f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        std::copy_n(own, step * front.pivots, work.data());
        for (int i = front.pivots; i < front.order; ++i)
            copyRow(width, v + step * rows[i], work.data() + step * i);
        if (transposed || symmetric_)
            backwardByLower(front, width, work.data());
        else
            backwardByUpper(front, width, work.data());
        std::copy_n(work.data(), step * front.pivots, own);
    }
    if (piece.count > 0)
        std::copy_n(v, step * pivots, y + step * piece.begin);
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
