// SPDX-License-Identifier: BSD-3-Clause
// What bla_solver_tasks tells: times that obey the dependencies, all fronts, and nothing where nothing was
// recorded.
#include "TOVBlaSolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

struct Matrix
{
    std::vector<std::int64_t> start{0};
    std::vector<std::int32_t> column;
    std::vector<double> value;

    int n() const { return static_cast<int>(start.size()) - 1; }
    void enter(int j, double v)
    {
        column.push_back(j);
        value.push_back(v);
    }
    void endRow() { start.push_back(static_cast<std::int64_t>(column.size())); }
};

// A cube of m^3 points, each beside its 26 neighbours; a little unsymmetric. Then pairs of unknowns that only
// hold each other, which no pivot of their own has a value for.
Matrix cube(int m, int pairs = 0)
{
    Matrix a;
    for (int i = 0; i < m * m * m; ++i) {
        const int x = i / (m * m), y = i / m % m, z = i % m;
        for (int u = std::max(x - 1, 0); u <= std::min(x + 1, m - 1); ++u)
            for (int v = std::max(y - 1, 0); v <= std::min(y + 1, m - 1); ++v)
                for (int w = std::max(z - 1, 0); w <= std::min(z + 1, m - 1); ++w) {
                    const int j = (u * m + v) * m + w;
                    a.enter(j, i == j ? 28.0 : i < j ? -1.0 : -1.0 - 0x1p-10);
                }
        a.endRow();
    }
    for (int i = a.n(), first = i; i < first + 2 * pairs; ++i) {
        a.enter(first + ((i - first) ^ 1), 1.0);
        a.endRow();
    }
    return a;
}

double get(const Handle& solver, const char* quantity)
{
    double value = -1.0;
    EXPECT_EQ(bla_solver_get(solver.get(), quantity, &value), BLA_SOLVER_OK) << quantity;
    return value;
}

Handle analysed(const Matrix& a, int kind, int threads, double record)
{
    bla_solver* solver = nullptr;
    EXPECT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_set(solver, "threads", threads), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_set(solver, "record", record), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_analyse(solver, kind, a.n(), a.start.data(), a.column.data()), BLA_SOLVER_OK);
    return Handle(solver);
}

struct Tasks
{
    std::vector<bla_solver_task> task;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> next;
};

Tasks tasksOf(const Handle& solver)
{
    const auto count = static_cast<std::size_t>(get(solver, "tasks"));
    Tasks tasks{std::vector<bla_solver_task>(count), std::vector<std::int64_t>(count + 1),
                std::vector<std::int32_t>(static_cast<std::size_t>(get(solver, "task_edges")))};
    EXPECT_EQ(bla_solver_tasks(solver.get(), tasks.task.data(), tasks.start.data(), tasks.next.data()),
              BLA_SOLVER_OK)
        << bla_solver_message(solver.get());
    return tasks;
}

Tasks recorded(const Matrix& a, int kind, int threads)
{
    const Handle solver = analysed(a, kind, threads, 1.0);
    EXPECT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
    return tasksOf(solver);
}

using Place = std::tuple<std::string, int, int, int, int>;
Place place(const bla_solver_task& task)
{
    return {task.name, task.front, task.row, task.column, task.step};
}

constexpr int kinds[] = {BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_GENERAL};
constexpr int points = 18; // enough for branches and for fronts of several tiles above them

} // namespace

TEST(Tasks, RunWhenThoseTheyWaitForHaveEnded)
{
    const Matrix a = cube(points);
    for (int kind : kinds)
        for (int threads : {1, 2, 5}) {
            SCOPED_TRACE(std::to_string(kind) + ", " + std::to_string(threads) + " threads");
            const Handle solver = analysed(a, kind, threads, 1.0);
            ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
            const Tasks tasks = tasksOf(solver);
            const int count = static_cast<int>(tasks.task.size());
            ASSERT_GT(count, 20);
            ASSERT_EQ(tasks.start.front(), 0);
            ASSERT_EQ(tasks.start.back(), static_cast<std::int64_t>(tasks.next.size()));
            std::map<int, std::vector<std::pair<double, double>>> onThread;
            for (int t = 0; t < count; ++t) {
                const bla_solver_task& task = tasks.task[t];
                ASSERT_GE(task.begin, 0.0);
                ASSERT_LE(task.begin, task.end);
                ASSERT_LE(task.end, get(solver, "seconds_factorise"));
                ASSERT_GE(task.thread, 0);
                ASSERT_LT(task.thread, threads);
                onThread[task.thread].emplace_back(task.begin, task.end);
                for (std::int64_t e = tasks.start[t]; e < tasks.start[t + 1]; ++e) {
                    ASSERT_GT(tasks.next[e], e > tasks.start[t] ? tasks.next[e - 1] : t);
                    ASSERT_LT(tasks.next[e], count);
                    ASSERT_LE(task.end, tasks.task[tasks.next[e]].begin);
                }
            }
            for (auto& [thread, intervals] : onThread) {
                std::sort(intervals.begin(), intervals.end());
                for (std::size_t k = 1; k < intervals.size(); ++k)
                    ASSERT_LE(intervals[k - 1].second, intervals[k].first) << "on " << thread;
            }
        }
}

TEST(Tasks, AreOfAllFrontsAndTiles)
{
    const Matrix a = cube(points);
    for (int kind : kinds) {
        const Handle solver = analysed(a, kind, 2, 1.0);
        ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
        const Tasks tasks = tasksOf(solver);
        std::set<int> inBranches, above;
        std::set<Place> all;
        std::set<std::string> names;
        for (const bla_solver_task& task : tasks.task) {
            EXPECT_TRUE(all.insert(place(task)).second) << "twice";
            names.insert(task.name);
            const bool branch = std::string(task.name) == "branch";
            ASSERT_GE(task.fronts, 1);
            if (!branch)
                ASSERT_EQ(task.fronts, 1);
            for (int f = task.front - task.fronts + 1; f <= task.front; ++f)
                ASSERT_TRUE(!branch ? above.insert(f).second || true : inBranches.insert(f).second);
        }
        EXPECT_EQ(names.count("upper"), kind == BLA_SOLVER_GENERAL);
        names.erase("upper");
        EXPECT_EQ(names,
                  (std::set<std::string>{"branch", "assemble", "eliminate", "lower", "update", "finish"}));
        std::set<int> both = inBranches;
        both.insert(above.begin(), above.end());
        EXPECT_EQ(both.size(), inBranches.size() + above.size());
        EXPECT_EQ(static_cast<double>(both.size()), get(solver, "fronts"));
        EXPECT_EQ(*both.begin(), 0);
        EXPECT_EQ(*both.rbegin(), get(solver, "fronts") - 1);

        // An update waits for the tiles that it multiplies; those, for the diagonal tile of their step.
        std::map<Place, std::set<Place>> waits;
        for (std::size_t t = 0; t < tasks.task.size(); ++t)
            for (std::int64_t e = tasks.start[t]; e < tasks.start[t + 1]; ++e)
                waits[place(tasks.task[tasks.next[e]])].insert(place(tasks.task[t]));
        int updates = 0;
        for (const Place& task : all) {
            const auto& [name, front, row, column, step] = task;
            if (name == "update") {
                ++updates;
                EXPECT_TRUE(waits[task].count({"lower", front, row, step, step}));
                EXPECT_TRUE(waits[task].count(kind == BLA_SOLVER_GENERAL
                                                  ? Place{"upper", front, step, column, step}
                                                  : Place{"lower", front, column, step, step}));
            } else if (name == "lower" || name == "upper") {
                EXPECT_TRUE(waits[task].count({"eliminate", front, step, step, step}));
            } else if (name == "branch") {
                EXPECT_TRUE(waits[task].empty());
            }
        }
        EXPECT_GT(updates, 0);
    }
}

TEST(Tasks, AreTheSameOnAnyNumberOfThreads)
{
    const Matrix a = cube(points);
    for (int kind : kinds) {
        const Tasks one = recorded(a, kind, 1), three = recorded(a, kind, 3);
        ASSERT_EQ(one.task.size(), three.task.size());
        for (std::size_t t = 0; t < one.task.size(); ++t)
            ASSERT_EQ(place(one.task[t]), place(three.task[t]));
        EXPECT_EQ(one.start, three.start);
        EXPECT_EQ(one.next, three.next);
    }
}

TEST(Tasks, AreThoseOfTheLastElimination)
{
    const Matrix a = cube(9, 3);
    const Handle solver = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, 1, 1.0);
    struct Told
    {
        bool slept = false, shifted = false;
    } told;
    static constexpr double nap = 1.0;
    const auto monitor = [](void* context, const char* phase, double share) {
        Told& t = *static_cast<Told*>(context);
        t.shifted |= std::string(phase) == "factorising with shifted pivots";
        if (share > 0.0 && !t.slept) { // behind the first of the tasks
            t.slept = std::string(phase) == "factorising";
            std::this_thread::sleep_for(std::chrono::duration<double>(nap));
        }
        return 0;
    };
    ASSERT_EQ(bla_solver_set_monitor(solver.get(), monitor, &told), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
    ASSERT_TRUE(told.slept && told.shifted);
    ASSERT_GT(get(solver, "shifted_pivots"), 0);
    const Tasks tasks = tasksOf(solver);
    ASSERT_GT(tasks.task.size(), 1u);
    for (const bla_solver_task& task : tasks.task)
        EXPECT_LT(task.end, nap);
}

TEST(Tasks, AreToldOnlyWhereTheyWereRecorded)
{
    const Matrix a = cube(9);
    const Handle solver = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, 1, 0.0);
    bla_solver* const s = solver.get();
    std::vector<bla_solver_task> task(100000);
    std::vector<std::int64_t> start(task.size() + 1, -7);
    std::vector<std::int32_t> next(1000000);
    const auto ask = [&] { return bla_solver_tasks(s, task.data(), start.data(), next.data()); };
    EXPECT_EQ(ask(), BLA_SOLVER_NOT_READY); // no factor
    ASSERT_EQ(bla_solver_factorise(s, a.value.data()), BLA_SOLVER_OK);
    EXPECT_EQ(ask(), BLA_SOLVER_NOT_READY);
    EXPECT_NE(std::string(bla_solver_message(s)).find("record"), std::string::npos);
    EXPECT_EQ(get(solver, "tasks"), 0);
    EXPECT_EQ(get(solver, "task_edges"), 0);

    const double before = get(solver, "memory");
    ASSERT_EQ(bla_solver_set(s, "record", 1), BLA_SOLVER_OK);
    EXPECT_EQ(ask(), BLA_SOLVER_NOT_READY); // holds from the next factorisation
    const double more = get(solver, "memory") - before;
    EXPECT_EQ(start[0], -7);
    ASSERT_EQ(bla_solver_factorise(s, a.value.data()), BLA_SOLVER_OK);
    EXPECT_EQ(ask(), BLA_SOLVER_OK);
    EXPECT_GT(get(solver, "tasks"), 1);
    EXPECT_GT(get(solver, "task_edges"), 0);
    EXPECT_GE(more, get(solver, "tasks") * (2 * sizeof(double) + sizeof(int)));

    ASSERT_EQ(bla_solver_set(s, "record", 0), BLA_SOLVER_OK);
    EXPECT_EQ(ask(), BLA_SOLVER_OK);
    EXPECT_EQ(get(solver, "memory"), before);
    ASSERT_EQ(bla_solver_factorise(s, a.value.data()), BLA_SOLVER_OK);
    EXPECT_EQ(ask(), BLA_SOLVER_NOT_READY);
    for (double nonsense : {-1.0, 0.5, 2.0})
        EXPECT_EQ(bla_solver_set(s, "record", nonsense), BLA_SOLVER_BAD_ARGUMENT);
}

TEST(Tasks, NeedPlacesToGoTo)
{
    const Matrix a = cube(9);
    const Handle solver = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, 1, 1.0);
    bla_solver* const s = solver.get();
    ASSERT_EQ(bla_solver_factorise(s, a.value.data()), BLA_SOLVER_OK);
    Tasks tasks = tasksOf(solver);
    EXPECT_EQ(bla_solver_tasks(s, nullptr, tasks.start.data(), tasks.next.data()), BLA_SOLVER_BAD_ARGUMENT);
    EXPECT_EQ(bla_solver_tasks(s, tasks.task.data(), nullptr, tasks.next.data()), BLA_SOLVER_BAD_ARGUMENT);
    EXPECT_EQ(bla_solver_tasks(s, tasks.task.data(), tasks.start.data(), nullptr), BLA_SOLVER_BAD_ARGUMENT);
    EXPECT_STRNE(bla_solver_message(s), "");
    EXPECT_EQ(bla_solver_tasks(nullptr, tasks.task.data(), tasks.start.data(), tasks.next.data()),
              BLA_SOLVER_BAD_ARGUMENT);

    Matrix none;
    const Handle empty = analysed(none, BLA_SOLVER_GENERAL, 1, 1.0);
    ASSERT_EQ(bla_solver_factorise(empty.get(), nullptr), BLA_SOLVER_OK);
    EXPECT_EQ(get(empty, "tasks"), 0);
    std::int64_t start = -7;
    EXPECT_EQ(bla_solver_tasks(empty.get(), nullptr, &start, nullptr), BLA_SOLVER_OK);
    EXPECT_EQ(start, 0);
}

// Whatever the handle was given before.
TEST(Tasks, RunOnAsManyThreadsAsAskedForLast)
{
    const Matrix a = cube(points);
    const Handle solver = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, 2, 1.0);
    const auto threadsSeen = [&] {
        EXPECT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
        std::set<int> seen;
        for (const bla_solver_task& task : tasksOf(solver).task)
            seen.insert(task.thread);
        return seen.size();
    };
    std::size_t most = 0;
    for (int run = 0; run < 200 && most < 2; ++run) // one may be late
        most = std::max(most, threadsSeen());
    EXPECT_EQ(most, 2);
    EXPECT_EQ(bla_solver_set(solver.get(), "threads", 1), BLA_SOLVER_OK);
    for (int run = 0; run < 20; ++run)
        EXPECT_EQ(threadsSeen(), 1);
}
