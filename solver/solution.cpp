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

// W[k] := d[k] * V[k]
void scaleRows(int width, const double* d, int count, const double* v, double* w)
{
    for (int k = 0; k < count; ++k)
        for (int j = 0; j < width; ++j)
            w[std::int64_t{width} * k + j] = d[k] * v[std::int64_t{width} * k + j];
}

// Calls visit(k, the number in the first vector of unknown[k], how often it counts).
template <class Visit>
void acrossBorder(const Block& x, const Border& border, const int* unknown, int count, Visit visit)
{
    for (int k = 0; k < count; ++k)
        visit(k, x.value + (border.row ? border.row[unknown[k]] : unknown[k]),
              border.factor ? border.factor[unknown[k]] : 1.0);
}

// Rows of V, numbers that there are no vectors for being zero, from those of X; and to them.
void enter(const Block& x, const Border& in, const int* unknown, int count, int width, double* v)
{
    if (width == 1)
        return acrossBorder(x, in, unknown, count,
                            [&](int k, const double* given, double factor) { v[k] = *given * factor; });
    acrossBorder(x, in, unknown, count, [&](int k, const double* given, double factor) {
        for (int j = 0; j < width; ++j)
            v[std::int64_t{width} * k + j] = j < x.columns ? given[x.ld * j] * factor : 0.0;
    });
}

void leave(const Block& x, const Border& out, const int* unknown, int count, int width, const double* v)
{
    if (width == 1)
        return acrossBorder(x, out, unknown, count,
                            [&](int k, double* wanted, double factor) { *wanted = v[k] * factor; });
    acrossBorder(x, out, unknown, count, [&](int k, double* wanted, double factor) {
        for (int j = 0; j < x.columns; ++j)
            wanted[x.ld * j] = v[std::int64_t{width} * k + j] * factor;
    });
}

} // namespace

void Factor::solve(Vectors& x, bool transposed, const Team& team) const
{
    solve({x.value.data(), x.n, x.columns}, {}, {}, transposed, team);
}

// Right-hand sides that become solutions, and the vectors of all pieces, rows of `width` numbers.
struct Factor::Solving
{
    const Block& x;
    const Border &in, &out;
    bool transposed;
    int width;
    double* y;
};

void Factor::solve(const Block& x, const Border& in, const Border& out, bool transposed,
                   const Team& team) const
{
    const int width = x.columns == 1 ? 1 : (x.columns + columnGroup - 1) / columnGroup * columnGroup;
    const double work = static_cast<double>(width) * static_cast<double>(analysis_.panelEntries);
    const Team alone(1);
    const Team& used = work < schedule_.cuts.leastSolved ? alone : team;
    const int count = static_cast<int>(pieces_.pieces.size());
    const Workspace room(std::int64_t{width} * pieces_.length);
    const Solving s{x, in, out, transposed, width, room.get()};
    const auto pass = [&](int t) {
        if (t < count)
            forward(pieces_.pieces[t], s);
        else if (t > count)
            backward(pieces_.pieces[2 * count - t], s);
    };
    pieces_.graph.execute(used, std::cref(pass));
}

// Leaves in the rows outside what is to be added to those of the parent.
void Factor::forward(const Piece& piece, const Solving& s) const
{
    const std::int64_t step = s.width;
    double *const v = s.y + step * piece.home, *const w = s.y + step * piece.front;
    enter(s.x, s.in, analysis_.permutation.data() + piece.begin, piece.pivots(), s.width, v);
    std::fill_n(v + step * piece.pivots(), step * piece.outside, 0.0);
    for (int c : piece.children) {
        const Piece& child = pieces_.pieces[c];
        combine(std::plus<>(), s.width, pieces_.at.data() + child.at, child.outside,
                s.y + step * (child.home + child.pivots()), v);
    }
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        if (s.transposed && !symmetric_)
            forwardByUpper(front, s.width, own, w);
        else
            forwardByLower(front, s.width, own, w);
        combine(std::minus<>(), s.width, rows + front.pivots, front.rest(), w + step * front.pivots, v);
    }
}

void Factor::backward(const Piece& piece, const Solving& s) const
{
    const std::int64_t step = s.width;
    double *const v = s.y + step * piece.home, *const w = s.y + step * piece.front;
    if (piece.parent >= 0)
        gather(s.width, pieces_.at.data() + piece.at, piece.outside,
               s.y + step * pieces_.pieces[piece.parent].home, v + step * piece.pivots());
    for (int f = piece.last; f >= piece.first; --f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + step * (front.first - piece.begin);
        if (symmetric_)
            scaleRows(s.width, d_.data() + front.first, front.pivots, own, w);
        else
            std::copy_n(own, step * front.pivots, w);
        gather(s.width, rows + front.pivots, front.rest(), v, w + step * front.pivots);
        if (s.transposed || symmetric_)
            backwardByLower(front, s.width, w);
        else
            backwardByUpper(front, s.width, w);
        std::copy_n(w, step * front.pivots, own);
    }
    leave(s.x, s.out, analysis_.permutation.data() + piece.begin, piece.pivots(), s.width, v);
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

// V1 := (L11*D)^-T * (V1 - (L21*D)^T * V2)
void Factor::backwardByLower(const Front& f, int width, double* v) const
{
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
