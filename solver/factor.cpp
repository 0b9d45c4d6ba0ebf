// SPDX-License-Identifier: BSD-3-Clause
#include "factor.h"

#include "dense.h"

#include <algorithm>

Factor::Factor(const Analysis& analysis, bool symmetric)
    : analysis_(analysis), symmetric_(symmetric), panels_(analysis.panelEntries),
      rights_(symmetric ? 0 : analysis.rightEntries), stack_{Workspace(analysis.stack[0]),
                                                             Workspace(analysis.stack[1])},
      d_(analysis.n), dinv_(analysis.n), local_(analysis.n)
{
}

void Factor::factorise(const SparseMatrix& a, const PivotRule& rule, const Progress& progress)
{
    const SparseMatrix columns = symmetric_ ? SparseMatrix() : transposed(a);
    // A tiny pivot keeps the side of zero on which its diagonal entry lay; one that started at zero goes
    // below, where the Schur complements of saddle-point systems are.
    std::vector<int> negative(rule.shift > 0.0 ? a.n : 0, symmetric_ ? 1 : 0);
    std::vector<double> correction(negative.size(), 0.0);
    for (int k = 0; k < static_cast<int>(negative.size()); ++k) {
        const int old = analysis_.permutation[k];
        for (int p = a.start[old]; p < a.start[old + 1]; ++p)
            if (a.column[p] == old && a.value[p] != 0.0)
                negative[k] = a.value[p] < 0.0;
    }

    double* const stack[2] = {stack_[0].get(), stack_[1].get()};
    std::vector<int> waiting[2]; // fronts whose contributions lie on each stack
    std::int64_t used[2] = {0, 0};
    double done = 0.0;
    for (int f = 0; f < static_cast<int>(analysis_.fronts.size()); ++f) {
        const Front& front = analysis_.fronts[f];
        const int parity = front.depth % 2;
        const FrontStorage storage =
            assemble(front, a, symmetric_ ? a : columns, stack[parity] + used[parity]);

        const auto addChildren = [&](Part part) {
            const double* top = stack[1 - parity] + used[1 - parity];
            for (auto child = waiting[1 - parity].rbegin(); child != waiting[1 - parity].rend(); ++child) {
                const Front& c = analysis_.fronts[*child];
                if (c.parent != f)
                    break;
                top -= static_cast<std::int64_t>(c.rest()) * c.rest();
                extendAdd(part, storage, local_.data(), analysis_.rowsOf(c) + c.pivots, c.rest(), top);
            }
        };
        addChildren(Part::factor);
        const Pivots pivots{d_.data() + front.first, dinv_.data() + front.first,
                            negative.data() + front.first, correction.data() + front.first};
        if (symmetric_)
            eliminateSymmetric(rule, front.pivots, front.rest(), storage.panel, storage.schur, pivots);
        else
            eliminateUnsymmetric(rule, front.pivots, front.rest(), storage.panel, storage.right,
                                 storage.schur, pivots);
        addChildren(Part::schur);
        std::vector<int>& children = waiting[1 - parity];
        for (; !children.empty() && analysis_.fronts[children.back()].parent == f; children.pop_back()) {
            const std::int64_t rest = analysis_.fronts[children.back()].rest();
            used[1 - parity] -= rest * rest;
        }
        if (front.parent >= 0) {
            used[parity] += static_cast<std::int64_t>(front.rest()) * front.rest();
            waiting[parity].push_back(f);
        }
        if (progress)
            progress((done += front.flops()) / std::max(analysis_.flops, 1.0));
    }
    countPivots(correction);
}

// The entries of A in the pivots' columns (lower half) and, unsymmetric, in their rows (upper half).
// `columns` is the transpose of A: its rows are A's columns.
FrontStorage Factor::assemble(const Front& front, const SparseMatrix& a, const SparseMatrix& columns,
                              double* schur)
{
    const int* rows = analysis_.rowsOf(front);
    for (int i = 0; i < front.order; ++i)
        local_[rows[i]] = i;
    const int rest = front.rest();
    const FrontStorage storage{front.pivots, rest, panels_.get() + front.panel,
                               symmetric_ ? nullptr : rights_.get() + front.right, schur};

    std::fill_n(storage.panel, static_cast<std::int64_t>(front.order) * front.pivots, 0.0);
    if (!symmetric_)
        std::fill_n(storage.right, static_cast<std::int64_t>(rest) * front.pivots, 0.0);

    for (int k = 0; k < front.pivots; ++k) {
        const int old = analysis_.permutation[front.first + k];
        double* column = storage.panel + static_cast<std::int64_t>(front.order) * k;
        for (int p = columns.start[old]; p < columns.start[old + 1]; ++p) {
            const int row = analysis_.inverse[columns.column[p]];
            if (row >= front.first + k)
                column[local_[row]] += columns.value[p];
        }
        if (symmetric_)
            continue;
        for (int p = a.start[old]; p < a.start[old + 1]; ++p) {
            const int other = analysis_.inverse[a.column[p]];
            if (other <= front.first + k)
                continue;
            const int at = local_[other];
            if (at < front.pivots)
                storage.panel[k + static_cast<std::int64_t>(front.order) * at] += a.value[p];
            else
                storage.right[k + static_cast<std::int64_t>(front.pivots) * (at - front.pivots)] +=
                    a.value[p];
        }
    }
    return storage;
}

void Factor::countPivots(const std::vector<double>& corrections)
{
    positive_ = negative_ = 0;
    treated_.clear();
    for (int k = 0; k < analysis_.n; ++k) {
        const double shift = !corrections.empty() ? -corrections[k] : d_[k] == 1.0e36 ? 1.0e36 : 0.0;
        if (shift != 0.0)
            treated_.push_back({analysis_.permutation[k], shift});
        else
            ++(d_[k] > 0.0 ? positive_ : negative_);
    }
}

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

// y1 := (L11*D)^-1 * y1, y2 := y2 - (L21*D) * y1; transposed, y1 := U11^-T * y1, y2 := y2 - U12^T * y1
void Factor::forward(const Front& f, Vectors& y, std::vector<double>& work, bool transposed) const
{
    const double* panel = panels_.get() + f.panel;
    double* own = y.value.data() + f.first;
    if (transposed)
        dense::solveColumns('U', 'T', 'U', f.pivots, y.columns, panel, f.order, own, y.n);
    else
        dense::solveColumns('L', 'N', 'N', f.pivots, y.columns, panel, f.order, own, y.n);
    const int rest = f.rest();
    if (rest == 0)
        return;
    if (transposed)
        dense::multiplyColumns('T', f.pivots, rest, y.columns, 1.0, rights_.get() + f.right, f.pivots, own,
                               y.n, 0.0, work.data(), rest);
    else
        dense::multiplyColumns('N', rest, f.pivots, y.columns, 1.0, panel + f.pivots, f.order, own, y.n, 0.0,
                               work.data(), rest);
    const int* rows = analysis_.rowsOf(f) + f.pivots;
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
