// SPDX-License-Identifier: BSD-3-Clause
#include "factor.h"

#include "dense.h"
#include "extend_add.h"

#include <algorithm>

Factor::Factor(const Analysis& analysis, const SparseMatrix& a, const std::vector<double>& scale,
               const PivotRule& rule, const Progress& progress)
    : analysis_(analysis), scale_(scale), panels_(new double[analysis.panelEntries]), d_(analysis.n),
      dinv_(analysis.n), local_(analysis.n)
{
    const std::unique_ptr<double[]> stack[2] = {std::unique_ptr<double[]>(new double[analysis.stack[0]]),
                                                std::unique_ptr<double[]>(new double[analysis.stack[1]])};
    std::vector<int> waiting[2]; // fronts whose contributions lie on each stack
    std::int64_t used[2] = {0, 0};
    double done = 0.0;
    for (int f = 0; f < static_cast<int>(analysis.fronts.size()); ++f) {
        const Front& front = analysis.fronts[f];
        const int rest = front.rest(), parity = front.depth % 2;
        double* panel = panels_.get() + front.panel;
        double* schur = stack[parity].get() + used[parity];
        assemble(front, a, panel);
        std::fill_n(schur, static_cast<std::int64_t>(rest) * rest, 0.0);

        std::vector<int>& children = waiting[1 - parity];
        while (!children.empty() && analysis.fronts[children.back()].parent == f) {
            const Front& child = analysis.fronts[children.back()];
            const std::int64_t size = static_cast<std::int64_t>(child.rest()) * child.rest();
            used[1 - parity] -= size;
            extendAdd(front, panel, schur, local_.data(), analysis.rowsOf(child) + child.pivots, child.rest(),
                      stack[1 - parity].get() + used[1 - parity]);
            children.pop_back();
        }

        eliminateSymmetric(rule, front.pivots, rest, panel, schur, d_.data() + front.first,
                           dinv_.data() + front.first);
        if (front.parent >= 0) {
            used[parity] += static_cast<std::int64_t>(rest) * rest;
            waiting[parity].push_back(f);
        }
        if (progress) {
            for (double m = rest; m < front.order; ++m)
                done += m * (m + 2);
            progress(done / std::max(analysis.flops, 1.0));
        }
    }
    countPivots();
}

// The scaled entries of A in the pivots' columns, lower half.
void Factor::assemble(const Front& front, const SparseMatrix& a, double* panel)
{
    const int* rows = analysis_.rowsOf(front);
    for (int i = 0; i < front.order; ++i)
        local_[rows[i]] = i;
    std::fill_n(panel, static_cast<std::int64_t>(front.order) * front.pivots, 0.0);
    for (int k = 0; k < front.pivots; ++k) {
        const int old = analysis_.permutation[front.first + k];
        double* column = panel + static_cast<std::int64_t>(front.order) * k;
        for (int p = a.start[old]; p < a.start[old + 1]; ++p) {
            const int row = analysis_.inverse[a.column[p]];
            if (row >= front.first + k)
                column[local_[row]] += scale_[old] * a.value[p] * scale_[a.column[p]];
        }
    }
}

void Factor::countPivots()
{
    for (double pivot : d_) {
        if (pivot == 1.0e36)
            ++replaced_;
        else
            ++(pivot > 0.0 ? positive_ : negative_);
    }
}

// Forward with L*D, then backward with its transpose; between the two the unknowns of a front are multiplied
// by its pivots, since the panels hold L*D and not L.
void Factor::solve(Vectors& x) const
{
    const int n = analysis_.n, columns = x.columns;
    Vectors y(n, columns);
    for (int j = 0; j < columns; ++j)
        for (int k = 0; k < n; ++k) {
            const int old = analysis_.permutation[k];
            y.column(j)[k] = scale_[old] * x.column(j)[old];
        }

    std::vector<double> gathered(static_cast<std::size_t>(analysis_.largestFront) * columns);
    for (const Front& f : analysis_.fronts) {
        const double* panel = panels_.get() + f.panel;
        double* own = y.value.data() + f.first;
        dense::trsm('L', 'L', 'N', 'N', f.pivots, columns, panel, f.order, own, n);
        const int rest = f.rest();
        if (rest == 0)
            continue;
        dense::gemm('N', 'N', rest, columns, f.pivots, 1.0, panel + f.pivots, f.order, own, n, 0.0,
                    gathered.data(), rest);
        const int* rows = analysis_.rowsOf(f) + f.pivots;
        for (int j = 0; j < columns; ++j)
            for (int i = 0; i < rest; ++i)
                y.column(j)[rows[i]] -= gathered[i + static_cast<std::size_t>(rest) * j];
    }

    for (auto f = analysis_.fronts.rbegin(); f != analysis_.fronts.rend(); ++f) {
        const double* panel = panels_.get() + f->panel;
        double* own = y.value.data() + f->first;
        dense::scaleRows(f->pivots, columns, own, n, d_.data() + f->first);
        const int rest = f->rest();
        if (rest > 0) {
            const int* rows = analysis_.rowsOf(*f) + f->pivots;
            for (int j = 0; j < columns; ++j)
                for (int i = 0; i < rest; ++i)
                    gathered[i + static_cast<std::size_t>(rest) * j] = y.column(j)[rows[i]];
            dense::gemm('T', 'N', f->pivots, columns, rest, -1.0, panel + f->pivots, f->order,
                        gathered.data(), rest, 1.0, own, n);
        }
        dense::trsm('L', 'L', 'T', 'N', f->pivots, columns, panel, f->order, own, n);
    }

    for (int j = 0; j < columns; ++j)
        for (int k = 0; k < n; ++k) {
            const int old = analysis_.permutation[k];
            x.column(j)[old] = scale_[old] * y.column(j)[k];
        }
}
