// SPDX-License-Identifier: BSD-3-Clause
#include "schedule.h"

#include "storage.h"

#include <algorithm>

namespace {

// What a front costs: flops, and assembly by about the time of as many.
double work(const Front& front)
{
    return front.flops() + 16.0 * front.order * front.order;
}

// The same of a task.
double workOf(const Task& task, const std::vector<Branch>& branches, const Analysis& analysis, bool symmetric,
              const Cuts& cuts)
{
    if (task.kind == Task::Kind::branch) {
        const Branch& branch = branches[task.front];
        double sum = 0.0;
        for (int f = branch.first; f <= branch.last; ++f)
            sum += work(analysis.fronts[f]);
        return symmetric ? sum : 2.0 * sum;
    }
    const Front& front = analysis.fronts[task.front];
    const Tiling tiling = tilingOf(front, cuts);
    if (task.kind == Task::Kind::assemble)
        return (symmetric ? 8.0 : 16.0) * front.order * (tiling.end(task.j) - tiling.begin(task.j));
    return flopsOf(task, tiling, symmetric);
}

struct Builder
{
    Schedule& schedule;
    std::vector<std::pair<int, int>> edges = {}; // task, the one that waits for it

    int add(const Task& task)
    {
        schedule.tasks.push_back(task);
        return static_cast<int>(schedule.tasks.size()) - 1;
    }
    void wait(int task, int for_) { edges.emplace_back(for_, task); }
};

// The tasks of a front; `before` are those that its children's contributions wait for. The last one is the
// result.
int addFront(Builder& builder, const Analysis& analysis, int f, bool symmetric,
             const std::vector<int>& before)
{
    const Front& front = analysis.fronts[f];
    const Tiling tiling = tilingOf(front, builder.schedule.cuts);
    const int tiles = tiling.tiles(), pivotTiles = tiling.pivotTiles();
    std::vector<int> last(static_cast<std::size_t>(tiles) * tiles); // that wrote each tile
    const auto tile = [&](int i, int j) -> int& { return last[i + static_cast<std::size_t>(tiles) * j]; };
    using Kind = Task::Kind;
    for (int j = 0; j < tiles; ++j) {
        const int task = builder.add({Kind::assemble, f, -1, j, -1});
        for (int child : before)
            builder.wait(task, child);
        for (int i = 0; i < tiles; ++i)
            tile(i, j) = task;
    }
    if (f == analysis.kept) {
        const int task = builder.add({Kind::keep, f, -1, -1, -1});
        for (int j = 0; j < tiles; ++j)
            builder.wait(task, tile(0, j));
        std::fill(last.begin(), last.end(), task);
    }
    const auto write = [&](const Task& task, int i, int j) {
        const int made = builder.add(task);
        builder.wait(made, tile(i, j));
        tile(i, j) = made;
        return made;
    };
    const auto panel = [&](int k) {
        write({Kind::eliminate, f, k, k, k}, k, k);
        for (int i = k + 1; i < tiles; ++i)
            builder.wait(write({Kind::lower, f, i, k, k}, i, k), tile(k, k));
    };
    for (int k = 0; k < pivotTiles; ++k) {
        if (k == 0)
            panel(0);
        for (int j = k + 1; j < tiles; ++j) {
            if (!symmetric)
                builder.wait(write({Kind::upper, f, k, j, k}, k, j), tile(k, k));
            for (int i = symmetric ? j : k + 1; i < tiles; ++i) {
                const int made = write({Kind::update, f, i, j, k}, i, j);
                builder.wait(made, tile(i, k));
                builder.wait(made, symmetric ? tile(j, k) : tile(k, j));
            }
            if (j == k + 1 && j < pivotTiles)
                panel(j); // first, for all else waits for it
        }
    }
    const int finished = builder.add({Kind::finish, f, -1, -1, -1});
    for (int j = pivotTiles; j < tiles; ++j)
        for (int i = symmetric ? j : pivotTiles; i < tiles; ++i)
            builder.wait(finished, tile(i, j));
    return finished;
}

// What the contributions within a branch take; those of its roots have places of their own.
void measureStacks(const Analysis& analysis, Branch& branch)
{
    std::int64_t used[2] = {0, 0};
    branch.stack[0] = branch.stack[1] = 0;
    std::vector<std::int64_t> children(branch.last - branch.first + 1, 0);
    for (int f = branch.first; f <= branch.last; ++f) {
        const Front& front = analysis.fronts[f];
        const int parity = front.depth % 2;
        const bool within = front.parent >= 0 && front.parent <= branch.last;
        const std::int64_t size = within ? std::int64_t{front.rest()} * front.rest() : 0;
        used[parity] += size;
        branch.stack[parity] = std::max(branch.stack[parity], used[parity]);
        used[1 - parity] -= children[f - branch.first];
        if (within)
            children[front.parent - branch.first] += size;
    }
}

// Contributions above the branches have fixed places: a front's own takes that of what its children have
// eaten.
void placeContributions(const Analysis& analysis, Schedule& schedule)
{
    const auto placed = [&](int f) {
        const int parent = analysis.fronts[f].parent;
        return schedule.branchOf[f] < 0 || (parent >= 0 && schedule.branchOf[parent] < 0);
    };
    const int count = static_cast<int>(analysis.fronts.size());
    constexpr std::int64_t unit = 8;                           // doubles of a cache line
    std::vector<std::int64_t> same(count, 0), other(count, 0); // by the parity of a front's children
    std::vector<std::int64_t> grandchildren(count, 0), children(count, 0);
    for (int f = 0; f < count; ++f) {
        if (!placed(f))
            continue;
        const Front& front = analysis.fronts[f];
        const std::int64_t own =
            front.parent < 0 ? 0 : (std::int64_t{front.rest()} * front.rest() + unit - 1) / unit * unit;
        same[f] = std::max(own, grandchildren[f]);
        other[f] = children[f];
        if (front.parent >= 0) {
            children[front.parent] += same[f];
            grandchildren[front.parent] += other[f];
        }
    }
    // From the roots down: where the same and the other parity of each subtree start.
    schedule.contribution.assign(count, -1);
    std::vector<std::int64_t> start(count, 0), startOther(count, 0), used(count, 0), usedOther(count, 0);
    std::int64_t end = 0;
    for (int f = count - 1; f >= 0; --f) {
        if (!placed(f))
            continue;
        const int parent = analysis.fronts[f].parent;
        if (parent < 0) {
            start[f] = end;
            startOther[f] = end + same[f];
            end += same[f] + other[f];
        } else {
            start[f] = startOther[parent] + usedOther[parent];
            startOther[f] = start[parent] + used[parent];
            usedOther[parent] += same[f];
            used[parent] += other[f];
        }
        schedule.contribution[f] = start[f];
    }
    schedule.contributions = end;
}

} // namespace

Tiling tilingOf(const Front& front, const Cuts& cuts)
{
    const int width = std::max(cuts.leastTile, (front.order / cuts.mostTiles + 31) / 32 * 32);
    return {front.pivots, front.order, width};
}

double flopsOf(const Task& task, const Tiling& tiling, bool symmetric)
{
    const auto product = [&](int a, int b, int c) {
        const auto width = [&](int t) { return static_cast<double>(tiling.end(t) - tiling.begin(t)); };
        return width(a) * width(b) * width(c);
    };
    switch (task.kind) {
    case Task::Kind::eliminate:
        return product(task.k, task.k, task.k) * (symmetric ? 1.0 : 2.0) / 3.0;
    case Task::Kind::lower:
        return product(task.i, task.k, task.k);
    case Task::Kind::upper:
        return product(task.k, task.k, task.j);
    case Task::Kind::update:
        return product(task.i, task.j, task.k) * (symmetric && task.i == task.j ? 1.0 : 2.0);
    case Task::Kind::branch:
    case Task::Kind::assemble:
    case Task::Kind::keep:
    case Task::Kind::finish:
        break;
    }
    return 0.0;
}

Schedule::Schedule(const Analysis& analysis, bool symmetric, const Cuts& wanted) : cuts(wanted)
{
    const int count = static_cast<int>(analysis.fronts.size());
    std::vector<double> below(count, 0.0);
    double total = 0.0;
    for (int f = 0; f < count; ++f) {
        total += work(analysis.fronts[f]);
        below[f] += work(analysis.fronts[f]);
        if (const int parent = analysis.fronts[f].parent; parent >= 0)
            below[parent] += below[f];
    }
    const double limit = std::max(total / cuts.parts, cuts.leastBranch);

    Builder builder{*this};
    branchOf.assign(count, -1);
    std::vector<std::vector<int>> before(count); // tasks that the contributions of its children wait for
    double filled = 0.0;
    int parentOfLast = -2;
    for (int f = 0, first = 0; f < count; ++f) {
        const int parent = analysis.fronts[f].parent;
        if (below[f] > limit) {
            const int task = addFront(builder, analysis, f, symmetric, before[f]);
            if (parent >= 0)
                before[parent].push_back(task);
            first = f + 1;
            parentOfLast = -2;
            continue;
        }
        if (parent >= 0 && below[parent] <= limit)
            continue; // not the root of a branch
        // Small subtrees of one parent go together.
        if (parentOfLast == parent && filled + below[f] <= limit / 4) {
            branches.back().last = f;
            filled += below[f];
        } else {
            branches.push_back({first, f, {0, 0}});
            filled = below[f];
            const int task =
                builder.add({Task::Kind::branch, static_cast<int>(branches.size()) - 1, -1, -1, -1});
            if (parent >= 0)
                before[parent].push_back(task);
        }
        parentOfLast = parent;
        first = f + 1;
    }
    for (std::size_t b = 0; b < branches.size(); ++b) {
        std::fill(branchOf.begin() + branches[b].first, branchOf.begin() + branches[b].last + 1,
                  static_cast<int>(b));
        measureStacks(analysis, branches[b]);
        for (int parity : {0, 1})
            stack[parity] = std::max(stack[parity], branches[b].stack[parity]);
    }
    children.resize(count);
    for (int f = 0; f < count; ++f)
        if (const int parent = analysis.fronts[f].parent; parent >= 0 && branchOf[parent] < 0)
            children[parent].push_back(f);
    placeContributions(analysis, *this);
    std::vector<double> taskWork;
    for (const Task& task : tasks)
        taskWork.push_back(workOf(task, branches, analysis, symmetric, cuts));
    graph = TaskGraph(static_cast<int>(tasks.size()), std::move(builder.edges), taskWork);
}

double Schedule::bytes() const
{
    return storageOf(branches) + storageOf(branchOf) + storageOf(tasks) + graph.bytes() +
           storageOf(contribution);
}
