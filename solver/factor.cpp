// SPDX-License-Identifier: BSD-3-Clause
#include "factor.h"

#include "stopwatch.h"

#include <algorithm>
#include <cmath>
#include <thread>

Factor::Factor(const Analysis& analysis, const Assembly& assembly, const Schedule& schedule,
               const Pieces& pieces, int threads)
    : analysis_(analysis), assembly_(assembly), schedule_(schedule), pieces_(pieces), threads_(threads),
      symmetric_(assembly.symmetric()), panels_(analysis.panelEntries),
      rights_(symmetric_ ? 0 : analysis.rightEntries), contributions_(schedule.contributions), d_(analysis.n),
      dinv_(analysis.n), correction_(analysis.n), tolerance_(analysis.largestFront),
      shift_(analysis.largestFront), downward_(analysis.n)
{
    for (std::size_t t = 0; t < std::min<std::size_t>(threads, schedule.branches.size()); ++t)
        benches_.emplace_back(schedule);
    for (Bench& bench : benches_) {
        for (std::vector<int>& waiting : bench.waiting)
            waiting.reserve(analysis.fronts.size());
        idle_.push_back(&bench);
    }
    treated_.reserve(analysis.n);
    if (analysis.kept >= 0) {
        const std::size_t order = analysis.fronts[analysis.kept].order;
        schur_.resize(order * order);
    }
}

double Factor::bytes(const Analysis& analysis, const Schedule& schedule, bool symmetric, int threads)
{
    const double kept = analysis.kept < 0 ? 0.0 : analysis.fronts[analysis.kept].order;
    const double benches = static_cast<double>(std::min<std::size_t>(threads, schedule.branches.size()));
    const auto workspace = [](std::int64_t count) { return static_cast<double>(Workspace::bytes(count)); };
    return workspace(analysis.panelEntries) + workspace(symmetric ? 0 : analysis.rightEntries) +
           workspace(schedule.contributions) +
           benches * (workspace(schedule.stack[0]) + workspace(schedule.stack[1])) +
           sizeof(double) * kept * kept +
           (3 * sizeof(double) + sizeof(int) + sizeof(TreatedPivot)) * static_cast<double>(analysis.n) +
           2 * sizeof(double) * static_cast<double>(analysis.largestFront) +
           2 * benches * sizeof(int) * static_cast<double>(analysis.fronts.size());
}

void Factor::factorise(const double* value, const PivotRule& rule, const Progress& progress, const Team& team,
                       TaskTime* times)
{
    const Stopwatch watch;
    if (rule.shift > 0.0) {
        std::fill(tolerance_.begin(), tolerance_.end(), rule.tolerance / rule.shift);
        std::fill(shift_.begin(), shift_.end(), rule.shift);
    }

    const std::thread::id caller = std::this_thread::get_id();
    std::mutex counting;
    double done = 0.0;
    const auto count = [&](double flops) {
        double share;
        {
            const std::lock_guard<std::mutex> lock(counting);
            share = (done += flops) / std::max(this->flops(), 1.0);
        }
        if (std::this_thread::get_id() == caller)
            progress(std::min(share, 1.0));
    };
    const Progress add = progress ? Progress(std::cref(count)) : Progress();
    const auto perform = [&](int t) {
        const Task& task = schedule_.tasks[t];
        const double begin = times ? watch.seconds() : 0.0;
        if (task.kind == Task::Kind::branch)
            eliminateBranch(schedule_.branches[task.front], value, rule, add);
        else
            doTile(task, value, rule, add);
        if (times)
            times[t] = {TaskGraph::thread(), begin, watch.seconds()};
    };
    const Team alone(1);
    const bool little = flops() < schedule_.cuts.leastFactorised;
    schedule_.graph.execute(little ? alone : team, std::cref(perform)); // which takes no memory
    countPivots(rule.shift > 0.0);
}

FrontStorage Factor::storage(int f, double* schur) const
{
    const Front& front = analysis_.fronts[f];
    return {front.pivots, front.rest(), panels_.get() + front.panel,
            symmetric_ ? nullptr : rights_.get() + front.right, schur};
}

// A tiny pivot keeps the side of zero on which its diagonal entry lay; one that started at zero goes below,
// where the Schur complements of saddle-point systems are.
Pivots Factor::pivotsFrom(int first, int count, const double* value)
{
    for (int k = first; k < first + count; ++k) {
        const std::int64_t p = assembly_.diagonal(analysis_.permutation[k]);
        downward_[k] = p < 0 || value[p] == 0.0 ? symmetric_ : value[p] < 0.0;
    }
    return {d_.data() + first,          dinv_.data() + first, downward_.data() + first,
            correction_.data() + first, tolerance_.data(),    shift_.data()};
}

// One bench for each thread: there is an idle one.
class Factor::Seat
{
public:
    explicit Seat(Factor& factor) : factor_(factor)
    {
        const std::lock_guard<std::mutex> lock(factor_.benchesInUse_);
        bench_ = factor_.idle_.back();
        factor_.idle_.pop_back();
    }
    ~Seat()
    {
        const std::lock_guard<std::mutex> lock(factor_.benchesInUse_);
        factor_.idle_.push_back(bench_);
    }
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;
    Bench* operator->() const { return bench_; }

private:
    Factor& factor_;
    Bench* bench_;
};

void Factor::eliminateBranch(const Branch& branch, const double* value, const PivotRule& rule,
                             const Progress& add)
{
    const Seat bench(*this);
    double* const stack[2] = {bench->stack[0].get(), bench->stack[1].get()};
    std::int64_t used[2] = {0, 0};
    for (std::vector<int>& waiting : bench->waiting)
        waiting.clear();
    for (int f = branch.first; f <= branch.last; ++f) {
        const Front& front = analysis_.fronts[f];
        const int parity = front.depth % 2;
        const bool within = front.parent >= 0 && front.parent <= branch.last;
        std::vector<int>& children = bench->waiting[1 - parity];
        const FrontStorage own = storage(f, within ? stack[parity] + used[parity]
                                                   : contributions_.get() + schedule_.contribution[f]);
        assemble(f, 0, front.order, value, own);
        const auto addChildren = [&](Part part) {
            const double* top = stack[1 - parity] + used[1 - parity];
            for (auto child = children.rbegin(); child != children.rend(); ++child) {
                const Front& c = analysis_.fronts[*child];
                if (c.parent != f)
                    break;
                top -= static_cast<std::int64_t>(c.rest()) * c.rest();
                assembly_.addContribution(*child, part, 0, front.order, own, top);
            }
        };
        addChildren(Part::factor);
        if (f == analysis_.kept)
            std::copy_n(own.panel, schur_.size(), schur_.begin());
        const Pivots pivots = pivotsFrom(front.first, own.pivots, value);
        if (symmetric_)
            eliminateSymmetric(rule, own.pivots, own.rest, own.panel, own.schur, pivots);
        else
            eliminateUnsymmetric(rule, own.pivots, own.rest, own.panel, own.right, own.schur, pivots);
        addChildren(Part::schur);
        for (; !children.empty() && analysis_.fronts[children.back()].parent == f; children.pop_back()) {
            const std::int64_t rest = analysis_.fronts[children.back()].rest();
            used[1 - parity] -= rest * rest;
        }
        if (within) {
            used[parity] += static_cast<std::int64_t>(front.rest()) * front.rest();
            bench->waiting[parity].push_back(f);
        }
        if (add)
            add(symmetric_ ? front.flops() : 2.0 * front.flops());
    }
}

// Zeros, and the entries of A; of C nothing.
void Factor::assemble(int f, int begin, int end, const double* value, const FrontStorage& front) const
{
    const std::int64_t pivots = front.pivots, order = pivots + front.rest;
    const std::int64_t left = std::min<std::int64_t>(end, pivots),
                       behind = std::max<std::int64_t>(begin, pivots);
    if (begin < left)
        std::fill_n(front.panel + order * begin, order * (left - begin), 0.0);
    if (front.right && behind < end)
        std::fill_n(front.right + pivots * (behind - pivots), pivots * (end - behind), 0.0);
    assembly_.addEntries(f, begin, end, value, front);
}

void Factor::doTile(const Task& task, const double* value, const PivotRule& rule, const Progress& add)
{
    const Front& front = analysis_.fronts[task.front];
    const Tiling tiling = tilingOf(front, schedule_.cuts);
    const FrontStorage own = storage(task.front, contributions_.get() + schedule_.contribution[task.front]);
    const auto width = [&](int t) { return tiling.end(t) - tiling.begin(t); };
    struct Tile
    {
        double* data;
        int ld;
    };
    const auto tile = [&](int i, int j) -> Tile {
        const std::int64_t row = tiling.begin(i), column = tiling.begin(j);
        if (column < own.pivots)
            return {own.panel + row + front.order * column, front.order};
        if (row < own.pivots)
            return {own.right + row + own.pivots * (column - own.pivots), own.pivots};
        return {own.schur + (row - own.pivots) + own.rest * (column - own.pivots), own.rest};
    };
    const int k = task.k;
    switch (task.kind) {
    case Task::Kind::assemble: {
        const int begin = tiling.begin(task.j), end = tiling.end(task.j);
        assemble(task.front, begin, end, value, own);
        if (begin >= own.pivots)
            for (std::int64_t j = begin - own.pivots; j < end - own.pivots; ++j) {
                const std::int64_t top = symmetric_ ? begin - own.pivots : 0;
                std::fill_n(own.schur + top + own.rest * j, own.rest - top, 0.0);
            }
        for (int child : schedule_.children[task.front]) {
            const double* const contribution = contributions_.get() + schedule_.contribution[child];
            assembly_.addContribution(child, Part::factor, begin, end, own, contribution);
            if (begin >= own.pivots)
                assembly_.addContribution(child, Part::schur, begin, end, own, contribution);
        }
        break;
    }
    case Task::Kind::keep:
        std::copy_n(own.panel, schur_.size(), schur_.begin());
        break;
    case Task::Kind::eliminate:
        eliminatePivots(rule, symmetric_, width(k), tile(k, k).data, front.order,
                        pivotsFrom(front.first + tiling.begin(k), width(k), value));
        break;
    case Task::Kind::lower:
        solveLower(rule, symmetric_, width(task.i), width(k), tile(k, k).data, front.order,
                   tile(task.i, k).data, front.order, dinv_.data() + front.first + tiling.begin(k));
        break;
    case Task::Kind::upper:
        solveUpper(width(task.j), width(k), tile(k, k).data, front.order, tile(k, task.j).data,
                   tile(k, task.j).ld);
        break;
    case Task::Kind::update: {
        const Tile c = tile(task.i, task.j);
        if (symmetric_)
            updateSymmetric(width(task.i), width(task.j), width(k), tile(task.i, k).data,
                            tile(task.j, k).data, front.order, dinv_.data() + front.first + tiling.begin(k),
                            1.0, c.data, c.ld);
        else
            updateUnsymmetric(width(task.i), width(task.j), width(k), tile(task.i, k).data, front.order,
                              tile(k, task.j).data, tile(k, task.j).ld, 1.0, c.data, c.ld);
        break;
    }
    case Task::Kind::finish:
    case Task::Kind::branch:
        break;
    }
    if (const double flops = flopsOf(task, tiling, symmetric_); add && flops > 0.0)
        add(flops);
}

double Factor::smallestPivot() const
{
    const auto smaller = [](double x, double y) { return std::fabs(x) < std::fabs(y); };
    return std::fabs(*std::min_element(d_.begin(), d_.end(), smaller));
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
