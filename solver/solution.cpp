// SPDX-License-Identifier: BSD-3-Clause
// The solution over the tree: forward from the leaves to the roots, backward from the roots to the leaves.
#include "dense.h"
#include "factor.h"
#include "triangles.h"

#include <algorithm>

void Factor::solve(Vectors& x, bool transposed) const
{
    const bool swapped = transposed && !symmetric_;
    Vectors y(analysis_.n, x.columns);
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            y.column(j)[k] = x.column(j)[analysis_.permutation[k]];
    std::vector<double> work(static_cast<std::size_t>(analysis_.largestFront) * x.columns);
    for (auto f = analysis_.fronts.begin(); f != analysis_.fronts.end(); ++f)
        forward(*f, y, work, swapped);
    for (auto f = analysis_.fronts.rbegin(); f != analysis_.fronts.rend(); ++f)
        backward(*f, y, work, swapped);
    for (int j = 0; j < x.columns; ++j)
        for (int k = 0; k < x.n; ++k)
            x.column(j)[analysis_.permutation[k]] = y.column(j)[k];
}

// work := y1 over y2, of one column
void Factor::gather(const Front& f, const Vectors& y, std::vector<double>& work) const
{
    std::copy_n(y.value.data() + f.first, f.pivots, work.data());
    const int* rows = analysis_.rowsOf(f);
    for (int i = f.pivots; i < f.order; ++i)
        work[i] = y.value[rows[i]];
}

// y1 := (L11*D)^-1 * y1, y2 := y2 - (L21*D) * y1; transposed, y1 := U11^-T * y1, y2 := y2 - U12^T * y1
void Factor::forward(const Front& f, Vectors& y, std::vector<double>& work, bool transposed) const
{
    const double* panel = panels_.get() + f.panel;
    double* own = y.value.data() + f.first;
    const int* rows = analysis_.rowsOf(f) + f.pivots;
    const int rest = f.rest();
    if (y.columns == 1 && !transposed) {
        gather(f, y, work);
        triangles::forward(f.order, f.pivots, panel, dinv_.data() + f.first, work.data());
        std::copy_n(work.data(), f.pivots, own);
        for (int i = 0; i < rest; ++i)
            y.value[rows[i]] = work[f.pivots + i];
        return;
    }
    if (transposed)
        dense::solveColumns('U', 'T', 'U', f.pivots, y.columns, panel, f.order, own, y.n);
    else
        dense::solveColumns('L', 'N', 'N', f.pivots, y.columns, panel, f.order, own, y.n);
    if (rest == 0)
        return;
    if (transposed)
        dense::multiplyColumns('T', f.pivots, rest, y.columns, 1.0, rights_.get() + f.right, f.pivots, own,
                               y.n, 0.0, work.data(), rest);
    else
        dense::multiplyColumns('N', rest, f.pivots, y.columns, 1.0, panel + f.pivots, f.order, own, y.n, 0.0,
                               work.data(), rest);
    for (int j = 0; j < y.columns; ++j)
        for (int i = 0; i < rest; ++i)
            y.column(j)[rows[i]] -= work[i + static_cast<std::size_t>(rest) * j];
}

// Unsymmetric: y1 := U11^-1 * (y1 - U12*y2), transposed y1 := (L11*D)^-T * (y1 - (L21*D)^T*y2). Symmetric,
// where only L*D is there: y1 := (L11*D)^-T * (D*y1 - (L21*D)^T*y2)
void Factor::backward(const Front& f, Vectors& y, std::vector<double>& work, bool transposed) const
{
    const double* panel = panels_.get() + f.panel;
    double* own = y.value.data() + f.first;
    const int rest = f.rest();
    const int* rows = analysis_.rowsOf(f) + f.pivots;
    if (y.columns == 1 && (symmetric_ || transposed)) {
        gather(f, y, work);
        if (symmetric_)
            for (int k = 0; k < f.pivots; ++k)
                work[k] *= d_[f.first + k];
        triangles::backward(f.order, f.pivots, panel, dinv_.data() + f.first, work.data());
        std::copy_n(work.data(), f.pivots, own);
        return;
    }
    for (int j = 0; j < y.columns; ++j)
        for (int i = 0; i < rest; ++i)
            work[i + static_cast<std::size_t>(rest) * j] = y.column(j)[rows[i]];
    if (symmetric_ || transposed) {
        if (symmetric_)
            dense::scaleRows(f.pivots, y.columns, own, y.n, d_.data() + f.first);
        if (rest > 0)
            dense::multiplyColumns('T', rest, f.pivots, y.columns, -1.0, panel + f.pivots, f.order,
                                   work.data(), rest, 1.0, own, y.n);
        dense::solveColumns('L', 'T', 'N', f.pivots, y.columns, panel, f.order, own, y.n);
    } else {
        if (rest > 0)
            dense::multiplyColumns('N', f.pivots, rest, y.columns, -1.0, rights_.get() + f.right, f.pivots,
                                   work.data(), rest, 1.0, own, y.n);
        dense::solveColumns('U', 'N', 'U', f.pivots, y.columns, panel, f.order, own, y.n);
    }
}
