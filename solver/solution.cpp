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
    const Workspace room(std::int64_t{width} * pieces_.length);
    const Solving s{x, in, out, transposed, width, room.get()};
    const auto perform = [&](int t) {
        const Step& step = pieces_.steps[t];
        if (step.kind == Step::Kind::turn)
            return;
        const Piece& piece = pieces_.pieces[step.piece];
        if (step.up)
            forward(piece, step, s);
        else
            backward(piece, step, s);
    };
    pieces_.graph.execute(used, std::cref(perform));
}

// Leaves in the rows outside what is to be added to those of the parent.
void Factor::forward(const Piece& piece, const Step& step, const Solving& s) const
{
    const std::int64_t width = s.width;
    double *const v = s.y + width * piece.home, *const w = s.y + width * piece.front;
    if (step.kind == Step::Kind::tile)
        return forwardTile(piece, step.row, step.column, s.width, v, w);
    enter(s.x, s.in, analysis_.permutation.data() + piece.begin, piece.pivots(), s.width, v);
    std::fill_n(v + width * piece.pivots(), width * piece.outside, 0.0);
    for (int c : piece.children) {
        const Piece& child = pieces_.pieces[c];
        combine(std::plus<>(), s.width, pieces_.at.data() + child.at, child.outside,
                s.y + width * (child.home + child.pivots()), v);
    }
    if (step.kind == Step::Kind::begin) {
        std::fill_n(w, width * (piece.pivots() + piece.outside), 0.0);
        return;
    }
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + width * (front.first - piece.begin);
        std::fill_n(w, width * front.order, 0.0);
        if (s.transposed && !symmetric_)
            forwardByUpper(front, s.width, own, w);
        else
            forwardByLower(front, {0, front.order, 0, front.pivots}, s.width, own, w);
        combine(std::minus<>(), s.width, rows + front.pivots, front.rest(), w + width * front.pivots, v);
    }
}

// Of the only front of a piece, whose rows are those of the vector of the piece.
void Factor::forwardTile(const Piece& piece, int i, int k, int width, double* v, double* w) const
{
    const Tiling& tiling = piece.tiling;
    const PanelPart part{tiling.begin(i), tiling.end(i), tiling.begin(k), tiling.end(k)};
    forwardByLower(analysis_.fronts[piece.last], part, width, v, w);
    if (i >= tiling.pivotTiles() && k + 1 == tiling.pivotTiles())
        for (std::int64_t at = std::int64_t{width} * part.top; at < std::int64_t{width} * part.bottom; ++at)
            v[at] -= w[at];
}

void Factor::backward(const Piece& piece, const Step& step, const Solving& s) const
{
    const std::int64_t width = s.width;
    double *const v = s.y + width * piece.home, *const w = s.y + width * piece.front;
    const int* const unknown = analysis_.permutation.data() + piece.begin;
    if (step.kind == Step::Kind::tile) {
        backwardTile(piece, step.row, step.column, s.width, v, w);
        if (step.row == step.column) {
            const int begin = piece.tiling.begin(step.row), count = piece.tiling.end(step.row) - begin;
            leave(s.x, s.out, unknown + begin, count, s.width, v + width * begin);
        }
        return;
    }
    if (piece.parent >= 0)
        gather(s.width, pieces_.at.data() + piece.at, piece.outside,
               s.y + width * pieces_.pieces[piece.parent].home, v + width * piece.pivots());
    if (step.kind == Step::Kind::begin) {
        scaleRows(s.width, d_.data() + piece.begin, piece.pivots(), v, w);
        std::copy_n(v + width * piece.pivots(), width * piece.outside, w + width * piece.pivots());
        std::fill_n(v, width * piece.pivots(), 0.0);
        return;
    }
    for (int f = piece.last; f >= piece.first; --f) {
        const Front& front = analysis_.fronts[f];
        const int* rows = pieces_.local.data() + front.rows;
        double* const own = v + width * (front.first - piece.begin);
        if (symmetric_)
            scaleRows(s.width, d_.data() + front.first, front.pivots, own, w);
        else
            std::copy_n(own, width * front.pivots, w);
        gather(s.width, rows + front.pivots, front.rest(), v, w + width * front.pivots);
        if (s.transposed || symmetric_)
            backwardByLower(front, {0, front.order, 0, front.pivots}, s.width, w, nullptr);
        else
            backwardByUpper(front, s.width, w);
        std::copy_n(w, width * front.pivots, own);
    }
    leave(s.x, s.out, unknown, piece.pivots(), s.width, v);
}

// Sums are made in the rows of the pivots in V, where the answers take their place.
void Factor::backwardTile(const Piece& piece, int i, int k, int width, double* v, double* w) const
{
    const Tiling& tiling = piece.tiling;
    const PanelPart part{tiling.begin(i), tiling.end(i), tiling.begin(k), tiling.end(k)};
    backwardByLower(analysis_.fronts[piece.last], part, width, w, v);
    const std::int64_t first = std::int64_t{width} * part.top;
    if (i == k)
        std::copy_n(w + first, std::int64_t{width} * part.bottom - first, v + first);
}

// As solveForward by L*D; V and W have all rows.
void Factor::forwardByLower(const Front& f, const PanelPart& part, int width, double* v, double* w) const
{
    const double* panel = panels_.get() + f.panel;
    if (width <= few)
        return solveForward(part, f.order, panel, dinv_.data() + f.first, v, w, width);
    const std::int64_t step = width;
    const int columns = part.right - part.left, top = part.diagonal() ? part.right : part.top;
    const double* const left = panel + std::int64_t{f.order} * part.left;
    double* const own = v + step * part.left;
    if (part.diagonal()) {
        for (std::int64_t at = step * part.left; at < step * part.right; ++at)
            v[at] -= w[at];
        dense::trsm('R', 'L', 'T', 'N', width, columns, left + part.left, f.order, own, width);
    }
    dense::gemm('N', 'T', width, part.bottom - top, columns, 1.0, own, width, left + top, f.order, 1.0,
                w + step * top, width);
}

// As solveBackward by L*D.
void Factor::backwardByLower(const Front& f, const PanelPart& part, int width, double* v, double* s) const
{
    const double* panel = panels_.get() + f.panel;
    if (width <= few)
        return solveBackward(part, f.order, panel, dinv_.data() + f.first, v, s, width);
    const std::int64_t step = width;
    const int columns = part.right - part.left, top = part.diagonal() ? part.right : part.top;
    const double* const left = panel + std::int64_t{f.order} * part.left;
    double* const own = (part.diagonal() ? v : s) + step * part.left;
    if (part.diagonal() && s)
        for (std::int64_t at = step * part.left; at < step * part.right; ++at)
            v[at] -= s[at];
    dense::gemm('N', 'N', width, columns, part.bottom - top, part.diagonal() ? -1.0 : 1.0, v + step * top,
                width, left + top, f.order, 1.0, own, width);
    if (part.diagonal())
        dense::trsm('R', 'L', 'N', 'N', width, columns, left + part.left, f.order, own, width);
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
