// SPDX-License-Identifier: BSD-3-Clause
#include "factor.h"

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
