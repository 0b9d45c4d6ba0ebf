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
    std::vector<double> y(static_cast<std::size_t>(analysis_.n) * width),
        work(static_cast<std::size_t>(analysis_.largestFront) * width);
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            y[j + static_cast<std::size_t>(width) * k] = x.column(j)[analysis_.permutation[k]];
    const bool upperFirst = transposed && !symmetric_, lowerLast = transposed || symmetric_;
    for (auto f = analysis_.fronts.begin(); f != analysis_.fronts.end(); ++f) {
        double* const own = y.data() + static_cast<std::int64_t>(width) * f->first;
        upperFirst ? forwardByUpper(*f, width, own, work.data())
                   : forwardByLower(*f, width, own, work.data());
        subtractRows(*f, work.data(), width, y.data());
    }
    for (auto f = analysis_.fronts.rbegin(); f != analysis_.fronts.rend(); ++f) {
        gather(*f, y.data(), width, work.data());
        lowerLast ? backwardByLower(*f, width, work.data()) : backwardByUpper(*f, width, work.data());
        std::copy_n(work.data(), static_cast<std::int64_t>(width) * f->pivots,
                    y.data() + static_cast<std::int64_t>(width) * f->first);
    }
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            x.column(j)[analysis_.permutation[k]] = y[j + static_cast<std::size_t>(width) * k];
}

// V := the rows of Y that a front has; those of its pivots lie together
void Factor::gather(const Front& f, const double* y, int width, double* v) const
{
    const int* rows = analysis_.rowsOf(f);
    const std::int64_t step = width;
    std::copy_n(y + step * f.first, step * f.pivots, v);
    for (int i = f.pivots; i < f.order; ++i)
        copyRow(width, y + step * rows[i], v + step * i);
}

// Y := Y - W in the rows of a front that are not its pivots
void Factor::subtractRows(const Front& f, const double* w, int width, double* y) const
{
    const int* rows = analysis_.rowsOf(f);
    const std::int64_t step = width;
    for (int i = f.pivots; i < f.order; ++i)
        subtractRow(width, w + step * i, y + step * rows[i]);
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
