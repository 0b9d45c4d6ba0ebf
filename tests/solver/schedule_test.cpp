// SPDX-License-Identifier: BSD-3-Clause
// Random trees, cut in any way: every front is in one branch or in tiles, whatever two tasks touch, one of
// them to change it, they touch one after the other, and so they do where contributions share a place.
#include "random.h"
#include "schedule.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

using namespace support;

namespace {

// Fronts of a forest, children before parents and next to what is below them, and nothing else.
Analysis anyTree(std::mt19937_64& random)
{
    const auto upTo = [&](int bound) { return static_cast<int>(random() % (bound + 1)); };
    const int count = 1 + upTo(random() % 4 ? 12 : 40), size = 1 + upTo(30);
    Analysis analysis;
    std::vector<int> open; // from the last front down: those that may have children still
    std::vector<Front> fronts(count);
    for (int f = count - 1; f >= 0; --f) {
        while (!open.empty() && random() % 3 == 0)
            open.pop_back();
        Front& front = fronts[f];
        front.parent = open.empty() ? -1 : open.back();
        front.depth = open.empty() ? 0 : fronts[front.parent].depth + 1;
        front.pivots = 1 + upTo(size);
        front.order = front.pivots + (open.empty() ? 0 : 1 + upTo(fronts[front.parent].order - 1));
        open.push_back(f);
    }
    for (Front& front : fronts) {
        front.first = analysis.n;
        analysis.n += front.pivots;
        analysis.flops += front.flops();
    }
    analysis.fronts = fronts;
    if (random() % 4 == 0)
        analysis.kept = count - 1;
    return analysis;
}

Cuts anyCuts(std::mt19937_64& random)
{
    const double branches[] = {0.0, 100.0, 2000.0, 1e5};
    return {1.0 + static_cast<double>(random() % 40), branches[random() % 4],
            1 + static_cast<int>(random() % 12), 1000};
}

// What a task touches: a tile of a front, or, of the root of a branch, its contribution as tile (0, 0); what
// is kept of the front as tile (-1, -1).
using Place = std::tuple<int, int, int>;
struct Touch
{
    int task;
    bool changes;
};

struct Touches
{
    const Analysis& analysis;
    const Schedule& schedule;
    bool symmetric;
    std::map<Place, std::vector<Touch>> all = {};

    void contribution(int task, int f, bool changes)
    {
        if (analysis.fronts[f].rest() == 0)
            return;
        if (schedule.branchOf[f] >= 0) {
            all[{f, 0, 0}].push_back({task, changes});
            return;
        }
        const Tiling tiling = tilingOf(analysis.fronts[f], schedule.cuts);
        for (int j = tiling.pivotTiles(); j < tiling.tiles(); ++j)
            for (int i = symmetric ? j : tiling.pivotTiles(); i < tiling.tiles(); ++i)
                all[{f, i, j}].push_back({task, changes});
    }

    void enter(int number)
    {
        const Task& task = schedule.tasks[number];
        const auto touch = [&](int i, int j, bool changes) {
            all[{task.front, i, j}].push_back({number, changes});
        };
        const auto column = [&](int j, bool changes) {
            for (int i = 0; i < tilingOf(analysis.fronts[task.front], schedule.cuts).tiles(); ++i)
                touch(i, j, changes);
        };
        switch (task.kind) {
        case Task::Kind::branch:
            for (int f = schedule.branches[task.front].first; f <= schedule.branches[task.front].last; ++f)
                if (analysis.fronts[f].parent > schedule.branches[task.front].last)
                    contribution(number, f, true);
            break;
        case Task::Kind::assemble:
            column(task.j, true);
            for (int child : schedule.children[task.front])
                contribution(number, child, false);
            break;
        case Task::Kind::keep:
            for (int j = 0; j < tilingOf(analysis.fronts[task.front], schedule.cuts).tiles(); ++j)
                column(j, false);
            touch(-1, -1, true);
            break;
        case Task::Kind::eliminate:
            touch(task.k, task.k, true);
            break;
        case Task::Kind::lower:
            touch(task.k, task.k, false);
            touch(task.i, task.k, true);
            break;
        case Task::Kind::upper:
            touch(task.k, task.k, false);
            touch(task.k, task.j, true);
            break;
        case Task::Kind::update:
            touch(task.i, task.k, false);
            symmetric ? touch(task.j, task.k, false) : touch(task.k, task.j, false);
            touch(task.i, task.j, true);
            break;
        case Task::Kind::finish:
            break;
        }
    }
};

// Of each task: which ones it waits for, at whatever distance.
std::vector<std::vector<bool>> allBefore(const TaskGraph& graph)
{
    std::vector<std::vector<bool>> before(graph.count(), std::vector<bool>(graph.count()));
    for (int t = 0; t < graph.count(); ++t)
        for (int waiting : graph.next(t)) {
            before[waiting][t] = true;
            for (int s = 0; s < t; ++s)
                if (before[t][s])
                    before[waiting][s] = true;
        }
    return before;
}

void checkCover(const Analysis& analysis, const Schedule& schedule)
{
    int next = 0;
    std::vector<int> branchTasks(schedule.branches.size(), 0);
    for (int f = 0, b = 0; f < static_cast<int>(analysis.fronts.size()); ++f) {
        if (schedule.branchOf[f] < 0)
            continue;
        ASSERT_GE(f, next) << "branches do not come one after the other";
        const Branch& branch = schedule.branches[b];
        ASSERT_EQ(branch.first, f);
        for (; f <= branch.last; ++f) {
            ASSERT_EQ(schedule.branchOf[f], b);
            // What leaves a branch goes to a front above.
            const int parent = analysis.fronts[f].parent;
            ASSERT_TRUE(parent <= branch.last || schedule.branchOf[parent] < 0);
        }
        next = f--;
        ++b;
    }
    std::map<std::tuple<int, Task::Kind>, int> count;
    for (const Task& task : schedule.tasks) {
        if (task.kind == Task::Kind::branch)
            ++branchTasks[task.front];
        else
            ++count[{task.front, task.kind}];
    }
    EXPECT_EQ(branchTasks, std::vector<int>(branchTasks.size(), 1));
    for (int f = 0; f < static_cast<int>(analysis.fronts.size()); ++f) {
        const Tiling tiling = tilingOf(analysis.fronts[f], schedule.cuts);
        const bool above = schedule.branchOf[f] < 0;
        ASSERT_EQ((count[{f, Task::Kind::assemble}]), above ? tiling.tiles() : 0);
        ASSERT_EQ((count[{f, Task::Kind::eliminate}]), above ? tiling.pivotTiles() : 0);
        ASSERT_EQ((count[{f, Task::Kind::keep}]), above && f == analysis.kept ? 1 : 0);
        int end = 0;
        for (int t = 0; t < tiling.tiles(); ++t) {
            ASSERT_EQ(tiling.begin(t), end);
            end = tiling.end(t);
            ASSERT_GT(end, tiling.begin(t));
            ASSERT_LE(end - tiling.begin(t), tiling.width);
        }
        ASSERT_EQ(end, analysis.fronts[f].order);
        ASSERT_EQ(tiling.end(tiling.pivotTiles() - 1), analysis.fronts[f].pivots);
    }
}

// All touches of the one before all of the other.
bool inSequence(const std::vector<std::vector<bool>>& before, const std::vector<int>& one,
                const std::vector<int>& other)
{
    for (int x : one)
        for (int y : other)
            if (!before[y][x])
                return false;
    return true;
}

void checkPlaces(const Analysis& analysis, const Schedule& schedule, const Touches& touches,
                 const std::vector<std::vector<bool>>& before)
{
    std::map<int, std::vector<int>> users; // of each contribution that has a place
    for (const auto& [place, list] : touches.all) {
        const auto [f, i, j] = place;
        const Front& front = analysis.fronts[f];
        if (front.rest() > 0 &&
            (schedule.branchOf[f] >= 0 || std::min(i, j) >= tilingOf(front, schedule.cuts).pivotTiles()))
            for (const Touch& touch : list)
                users[f].push_back(touch.task);
    }
    const auto size = [&](int f) {
        return static_cast<std::int64_t>(analysis.fronts[f].rest()) * analysis.fronts[f].rest();
    };
    for (auto one = users.begin(); one != users.end(); ++one) {
        const std::int64_t place = schedule.contribution[one->first];
        ASSERT_GE(place, 0);
        ASSERT_LE(place + size(one->first), schedule.contributions);
        ASSERT_EQ(place % 8, 0) << "not on a cache line of its own";
        for (auto other = users.begin(); other != one; ++other) {
            const std::int64_t there = schedule.contribution[other->first];
            if (place + size(one->first) <= there || there + size(other->first) <= place)
                continue;
            ASSERT_TRUE(inSequence(before, one->second, other->second) ||
                        inSequence(before, other->second, one->second))
                << "fronts " << other->first << " and " << one->first << " at " << there << " and " << place;
        }
    }
}

TEST(Schedule, TwoTasksTouchAPlaceOneAfterTheOther)
{
    auto random = generator(41);
    int tiled = 0, branches = 0, shared = 0;
    for (int round = 0; round < 600 && !testing::Test::HasFatalFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const Analysis analysis = anyTree(random);
        const bool symmetric = random() % 2;
        const Schedule schedule(analysis, symmetric, anyCuts(random));
        ASSERT_EQ(schedule.graph.count(), static_cast<int>(schedule.tasks.size()));
        if (schedule.graph.count() > 4000)
            continue;
        checkCover(analysis, schedule);
        const auto before = allBefore(schedule.graph);
        Touches touches{analysis, schedule, symmetric};
        for (int t = 0; t < schedule.graph.count(); ++t) {
            for (int waiting : schedule.graph.next(t))
                ASSERT_GT(waiting, t) << "the sequence does not do alone";
            touches.enter(t);
        }
        // In the sequence of one thread.
        for (const auto& [place, list] : touches.all)
            for (const Touch& later : list)
                for (const Touch& earlier : list)
                    if (earlier.task < later.task && (earlier.changes || later.changes))
                        ASSERT_TRUE(before[later.task][earlier.task])
                            << "tile " << std::get<1>(place) << ", " << std::get<2>(place) << " of front "
                            << std::get<0>(place);
        checkPlaces(analysis, schedule, touches, before);

        branches += static_cast<int>(schedule.branches.size());
        std::int64_t sum = 0;
        for (std::size_t f = 0; f < analysis.fronts.size(); ++f)
            if (schedule.branchOf[f] < 0) {
                tiled += tilingOf(analysis.fronts[f], schedule.cuts).pivotTiles() > 1;
                sum += (std::int64_t{analysis.fronts[f].rest()} * analysis.fronts[f].rest() + 7) / 8 * 8;
            }
        shared += sum > schedule.contributions;
    }
    EXPECT_GT(tiled, 200);
    EXPECT_GT(branches, 200);
    EXPECT_GT(shared, 20) << "no place is used twice";
}

// What the tasks of a front take is what its elimination takes.
TEST(Schedule, FlopsOfTilesAreThoseOfTheFront)
{
    auto random = generator(43);
    for (int round = 0; round < 40; ++round) {
        Analysis analysis;
        analysis.fronts.resize(1);
        Front& front = analysis.fronts[0];
        front.parent = -1;
        front.pivots = analysis.n = 300 + static_cast<int>(random() % 500);
        front.order = front.pivots + static_cast<int>(random() % 800);
        const bool symmetric = random() % 2;
        const Schedule schedule(analysis, symmetric, {1e9, 0.0, 32 + static_cast<int>(random() % 90), 1000});
        double sum = 0.0;
        for (const Task& task : schedule.tasks) {
            ASSERT_NE(task.kind, Task::Kind::branch);
            sum += flopsOf(task, tilingOf(front, schedule.cuts), symmetric);
        }
        const double expected = (symmetric ? 1.0 : 2.0) * front.flops();
        EXPECT_NEAR(sum, expected, 0.01 * expected) << front.pivots << " of " << front.order;
    }
}

// The stacks of a branch are as large as its contributions make them, on one or the other by parity.
TEST(Schedule, StacksOfABranchAreWhatItPutsThere)
{
    auto random = generator(42);
    for (int round = 0; round < 400; ++round) {
        const Analysis analysis = anyTree(random);
        const Schedule schedule(analysis, true, anyCuts(random));
        std::int64_t most[2] = {0, 0};
        for (const Branch& branch : schedule.branches) {
            std::vector<int> waiting[2];
            std::int64_t used[2] = {0, 0}, peak[2] = {0, 0};
            for (int f = branch.first; f <= branch.last; ++f) {
                const Front& front = analysis.fronts[f];
                const int own = front.depth % 2;
                const auto size = [&](int c) {
                    return static_cast<std::int64_t>(analysis.fronts[c].rest()) * analysis.fronts[c].rest();
                };
                const bool stays = front.parent >= 0 && front.parent <= branch.last;
                if (stays) {
                    used[own] += size(f);
                    peak[own] = std::max(peak[own], used[own]);
                }
                for (auto& stack = waiting[1 - own];
                     !stack.empty() && analysis.fronts[stack.back()].parent == f; stack.pop_back())
                    used[1 - own] -= size(stack.back());
                if (stays)
                    waiting[own].push_back(f);
            }
            ASSERT_TRUE(waiting[0].empty() && waiting[1].empty());
            for (int parity : {0, 1}) {
                ASSERT_EQ(branch.stack[parity], peak[parity]);
                most[parity] = std::max(most[parity], peak[parity]);
            }
        }
        ASSERT_EQ(schedule.stack[0], most[0]);
        ASSERT_EQ(schedule.stack[1], most[1]);
    }
}

} // namespace
