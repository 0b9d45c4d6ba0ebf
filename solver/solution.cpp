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

// Rows of `width` numbers, one or a multiple of columnGroup: W[i] := V[rows[i]]
void gather(int width, const int* rows, int count, const double* v, double* w)
{
    const std::int64_t step = width;
    if (width == 1)
        for (int i = 0; i < count; ++i)
            w[i] = v[rows[i]];
    else
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < width; j += columnGroup)
                std::copy_n(v + step * rows[i] + j, columnGroup, w + step * i + j);
}

// V[rows[i]] := V[rows[i]] - W[i]
void subtract(int width, const int* rows, int count, const double* w, double* v)
{
    const std::int64_t step = width;
    if (width == 1)
        for (int i = 0; i < count; ++i)
            v[rows[i]] -= w[i];
    else
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < width; j += columnGroup) {
                double* const row = v + step * rows[i] + j;
                for (int k = 0; k < columnGroup; ++k)
                    row[k] -= w[step * i + j + k];
            }
}

// Where the next array starts, behind so many numbers: with a cache line.
std::int64_t aligned(std::int64_t count)
{
    return (count + 7) / 8 * 8;
}

} // namespace

void Factor::solve(Vectors& x, bool transposed, int threads) const
{
    const int width = x.columns == 1 ? 1 : (x.columns + columnGroup - 1) / columnGroup * columnGroup;
    const std::int64_t step = width;
    const std::int64_t own = aligned(step * analysis_.n);
    const Workspace room(own + step * static_cast<std::int64_t>(pieces_.rows.size()));
    double *const y = room.get(), *const given = y + own;
    for (int k = 0; k < x.n; ++k)
        for (int j = 0; j < width; ++j)
            y[j + step * k] = j < x.columns ? x.column(j)[analysis_.permutation[k]] : 0.0;
    const double work = static_cast<double>(width) * static_cast<double>(analysis_.panelEntries);
    const int used = work < schedule_.cuts.leastSolved ? 1 : threads, tasks = pieces_.graph.count();
    pieces_.graph.execute(used, [&](int t) {
        if (t < tasks / 2)
            forward(pieces_.pieces[t], width, transposed, y, given);
        else
            backward(pieces_.pieces[tasks - 1 - t], width, transposed, y);
    });
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            x.column(j)[analysis_.permutation[k]] = y[j + step * k];
}

// Where a piece works: its pivots in Y, or, where it has rows outside, a copy of them with room for those.
// Aligned, so that the BLAS does the same wherever it is.
struct Factor::Desk
{
    Desk(const Piece& piece, std::int64_t step, double* y)
        : own(y + step * piece.begin), pivots(step * (piece.end - piece.begin)), outside(step * piece.count),
          copied(outside > 0 ? aligned(pivots + outside) : 0), room(copied + step * piece.largestFront),
          v(outside > 0 ? room.get() : own), work(room.get() + copied)
    {
        if (outside > 0)
            std::copy_n(own, pivots, v);
    }
    void leave()
    {
        if (outside > 0)
            std::copy_n(v, pivots, own);
    }

    double* own;
    std::int64_t pivots, outside, copied;
    Workspace room;
    double *v, *work; // work has the rows of one front
};

// `given`: what each piece takes from the rows outside of it.
void Factor::forward(const Piece& piece, int width, bool transposed, double* y, double* given) const
{
    const std::int64_t step = width;
    Desk desk(piece, step, y);
    double *const v = desk.v, *const work = desk.work;
    std::fill_n(v + desk.pivots, desk.outside, 0.0);
    for (int c : piece.children) {
        const Piece& child = pieces_.pieces[c];
        subtract(width, pieces_.at.data() + child.outside, child.count, given + step * child.outside, v);
    }
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        if (transposed && !symmetric_)
            forwardByUpper(front, width, own, work);
        else
            forwardByLower(front, width, own, work);
        subtract(width, rows + front.pivots, front.rest(), work + step * front.pivots, v);
    }
    double* const out = given + step * piece.outside;
    for (std::int64_t i = 0; i < desk.outside; ++i)
        out[i] = -v[desk.pivots + i];
    desk.leave();
}

void Factor::backward(const Piece& piece, int width, bool transposed, double* y) const
{
    const std::int64_t step = width;
    Desk desk(piece, step, y);
    double *const v = desk.v, *const work = desk.work;
    gather(width, pieces_.rows.data() + piece.outside, piece.count, y, v + desk.pivots);
    for (int f = piece.last; f >= piece.first; --f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        std::copy_n(own, step * front.pivots, work);
        gather(width, rows + front.pivots, front.rest(), v, work + step * front.pivots);
        if (transposed || symmetric_)
            backwardByLower(front, width, work);
        else
            backwardByUpper(front, width, work);
        std::copy_n(work, step * front.pivots, own);
    }
    desk.leave();
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
