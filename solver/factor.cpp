// SPDX-License-Identifier: BSD-3-Clause
#include "factor.h"

#include "dense.h"

#include <algorithm>

Factor::Factor(const Analysis& analysis, const Assembly& assembly)
    : analysis_(analysis), assembly_(assembly), symmetric_(assembly.symmetric()),
      panels_(analysis.panelEntries),
      rights_(symmetric_ ? 0 : analysis.rightEntries), stack_{Workspace(analysis.stack[0]),
                                                              Workspace(analysis.stack[1])},
      d_(analysis.n), dinv_(analysis.n), correction_(analysis.n), tolerance_(analysis.largestFront),
      shift_(analysis.largestFront), downward_(analysis.n)
{
    for (std::vector<int>& waiting : waiting_)
        waiting.reserve(analysis.fronts.size());
    treated_.reserve(analysis.n);
    if (analysis.kept >= 0) {
        const std::size_t order = analysis.fronts[analysis.kept].order;
        schur_.resize(order * order);
    }
}

double Factor::bytes(const Analysis& analysis, bool symmetric)
{
    const double kept = analysis.kept < 0 ? 0.0 : analysis.fronts[analysis.kept].order;
    const auto workspace = [](std::int64_t count) { return static_cast<double>(Workspace::bytes(count)); };
    return workspace(analysis.panelEntries) + workspace(symmetric ? 0 : analysis.rightEntries) +
           workspace(analysis.stack[0]) + workspace(analysis.stack[1]) + sizeof(double) * kept * kept +
           (3 * sizeof(double) + sizeof(int) + sizeof(TreatedPivot)) * static_cast<double>(analysis.n) +
           2 * sizeof(double) * static_cast<double>(analysis.largestFront) +
           2 * sizeof(int) * static_cast<double>(analysis.fronts.size());
}

void Factor::factorise(const double* value, const PivotRule& rule, const Progress& progress)
{
    // A tiny pivot keeps the side of zero on which its diagonal entry lay; one that started at zero goes
    // below, where the Schur complements of saddle-point systems are.
    for (int k = 0; k < analysis_.n; ++k) {
        const std::int64_t p = assembly_.diagonal(analysis_.permutation[k]);
        downward_[k] = p < 0 || value[p] == 0.0 ? symmetric_ : value[p] < 0.0;
    }

    if (rule.shift > 0.0) {
        std::fill(tolerance_.begin(), tolerance_.end(), rule.tolerance / rule.shift);
        std::fill(shift_.begin(), shift_.end(), rule.shift);
    }

    double* const stack[2] = {stack_[0].get(), stack_[1].get()};
    std::int64_t used[2] = {0, 0};
    for (std::vector<int>& waiting : waiting_)
        waiting.clear();
    double done = 0.0;
    for (int f = 0; f < static_cast<int>(analysis_.fronts.size()); ++f) {
        const Front& front = analysis_.fronts[f];
        const int parity = front.depth % 2;
        std::vector<int>& children = waiting_[1 - parity];
        const FrontStorage storage{front.pivots, front.rest(), panels_.get() + front.panel,
                                   symmetric_ ? nullptr : rights_.get() + front.right,
                                   stack[parity] + used[parity]};
        assemble(f, value, storage);

        const auto addChildren = [&](Part part) {
            const double* top = stack[1 - parity] + used[1 - parity];
            for (auto child = children.rbegin(); child != children.rend(); ++child) {
                const Front& c = analysis_.fronts[*child];
                if (c.parent != f)
                    break;
                top -= static_cast<std::int64_t>(c.rest()) * c.rest();
                assembly_.addContribution(*child, part, storage, top);
            }
        };
        addChildren(Part::factor);
        if (f == analysis_.kept)
            std::copy_n(storage.panel, schur_.size(), schur_.begin());
        eliminate(front, rule, storage);
        addChildren(Part::schur);
        for (; !children.empty() && analysis_.fronts[children.back()].parent == f; children.pop_back()) {
            const std::int64_t rest = analysis_.fronts[children.back()].rest();
            used[1 - parity] -= rest * rest;
        }
        if (front.parent >= 0) {
            used[parity] += static_cast<std::int64_t>(front.rest()) * front.rest();
            waiting_[parity].push_back(f);
        }
        if (progress)
            progress(std::min((done += front.flops()) / std::max(analysis_.flops, 1.0), 1.0));
    }
    countPivots(rule.shift > 0.0);
}

void Factor::assemble(int f, const double* value, const FrontStorage& storage) const
{
    const std::int64_t pivots = storage.pivots;
    std::fill_n(storage.panel, (pivots + storage.rest) * pivots, 0.0);
    if (!symmetric_)
        std::fill_n(storage.right, pivots * storage.rest, 0.0);
    assembly_.addEntries(f, value, storage);
}

void Factor::eliminate(const Front& front, const PivotRule& rule, const FrontStorage& storage)
{
    const Pivots pivots{
        d_.data() + front.first,          dinv_.data() + front.first, downward_.data() + front.first,
        correction_.data() + front.first, tolerance_.data(),          shift_.data()};
    if (symmetric_)
        eliminateSymmetric(rule, front.pivots, front.rest(), storage.panel, storage.schur, pivots);
    else
        eliminateUnsymmetric(rule, front.pivots, front.rest(), storage.panel, storage.right, storage.schur,
                             pivots);
}

void Factor::countPivots(bool shifted)
{
    positive_ = negative_ = 0;
    treated_.clear();
    for (int k = 0; k < analysis_.n; ++k) {
        const double shift = shifted ? -correction_[k] : d_[k] == 1.0e36 ? 1.0e36 : 0.0;
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
