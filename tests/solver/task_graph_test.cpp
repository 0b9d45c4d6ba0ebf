// SPDX-License-Identifier: BSD-3-Clause
// Tasks are done once each, behind all that they wait for, on no more threads than asked for; one that fails
// ends the others.
#include "random.h"
#include "task_graph.h"

#include <gtest/gtest.h>
#include <oneapi/tbb/info.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

using namespace support;

namespace {

using Edge = std::pair<int, int>;

std::vector<Edge> anyEdges(int count, std::mt19937_64& random)
{
    std::vector<Edge> edges;
    for (int e = static_cast<int>(random() % (3 * count + 1)); e > 0 && count > 1; --e) {
        const int x = static_cast<int>(random() % count), y = static_cast<int>(random() % count);
        if (x != y)
            edges.push_back({std::min(x, y), std::max(x, y)}); // some of them twice
    }
    return edges;
}

// Whether so many threads come here before long.
bool meets(std::atomic<int>& arrived, int threads = 2)
{
    const auto begin = std::chrono::steady_clock::now();
    for (++arrived; arrived < threads;) {
        if (std::chrono::steady_clock::now() - begin > std::chrono::seconds(5))
            return false;
        std::this_thread::yield();
    }
    return true;
}

TEST(TaskGraph, WakesAThreadThatHadNothingToDoForLong)
{
    const TaskGraph graph(4, {{0, 1}, {0, 2}, {1, 3}, {2, 3}});
    for (int round = 0; round < 3; ++round) {
        std::atomic<int> arrived{0}, missed{0};
        graph.execute(2, [&](int t) {
            if (t == 0 || t == 3) // meanwhile the other thread falls asleep
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            else
                missed += meets(arrived) ? 0 : 1;
        });
        EXPECT_EQ(missed, 0);
    }
}

TEST(TaskGraph, DoesEachTaskOnceBehindThoseItWaitsFor)
{
    auto random = generator(51);
    for (int round = 0; round < 300; ++round) {
        const int count = static_cast<int>(random() % 60), threads = 1 + static_cast<int>(random() % 5);
        const std::vector<Edge> edges = anyEdges(count, random);
        const TaskGraph graph(count, edges);
        ASSERT_EQ(graph.count(), count);
        std::vector<std::atomic<int>> begun(count), ended(count);
        std::atomic<int> clock{0}, now{0}, most{0};
        graph.execute(threads, [&](int t) {
            for (int running = ++now, seen = most; running > seen;)
                if (most.compare_exchange_weak(seen, running))
                    break;
            const int before = begun[t].exchange(++clock);
            EXPECT_EQ(before, 0) << "task " << t << " twice";
            if (t % 4 == 0)
                std::this_thread::sleep_for(std::chrono::microseconds(t % 16));
            ended[t] = ++clock;
            --now;
        });
        EXPECT_LE(most, threads);
        for (int t = 0; t < count; ++t)
            ASSERT_GT(begun[t], 0) << "task " << t << " of " << count;
        for (const auto& [first, second] : edges)
            ASSERT_LT(ended[first], begun[second]) << threads << " threads";
    }
}

TEST(TaskGraph, KnowsThoseThatWait)
{
    const TaskGraph graph(4, {{0, 3}, {0, 1}, {1, 3}, {0, 3}});
    const auto next = [&](int t) { return std::vector<int>(graph.next(t).begin(), graph.next(t).end()); };
    EXPECT_EQ(next(0), (std::vector<int>{1, 3}));
    EXPECT_EQ(next(1), (std::vector<int>{3}));
    EXPECT_TRUE(next(2).empty() && next(3).empty());
}

// More threads than processors are threads all the same: the tests of many of them rely on it.
TEST(TaskGraph, HasAsManyThreadsAsAskedFor)
{
    constexpr int threads = 5;
    std::atomic<int> arrived{0};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    TaskGraph(threads, {}).execute(threads, [&](int) {
        ++arrived;
        while (arrived < threads && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
    });
    EXPECT_EQ(arrived, threads);
    EXPECT_LT(std::chrono::steady_clock::now(), end) << "they did not meet";
}

// While one of two threads is busy, the other one takes what is ready by the work on its path to the end.
// The runtime's limit is that of the larger of two executions at the same time.
TEST(TaskGraph, HasAllThreadsBesideASmallerTeam)
{
    const int threads = tbb::info::default_concurrency() + 3;
    std::atomic<int> begun{0}, ended{0}, arrived{0}, missed{0};
    std::thread smaller([&] {
        const TaskGraph graph(2, {});
        graph.execute(2, [&](int) {
            for (++begun; ended == 0;)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        });
    });
    while (begun == 0)
        std::this_thread::yield();
    const TaskGraph graph(threads, {});
    graph.execute(threads,
                  [&](int) { missed += meets(arrived, threads - 1) ? 0 : 1; }); // one is with the other
    ended = 1;
    smaller.join();
    EXPECT_EQ(missed, 0);
}

TEST(TaskGraph, BeginsTheLongestPathFirst)
{
    auto random = generator(53);
    for (int round = 0; round < 40; ++round) {
        const int count = 2 + static_cast<int>(random() % 40);
        std::vector<Edge> edges = anyEdges(count - 1, random);
        for (auto& [first, second] : edges)
            ++first, ++second; // nothing waits for task 0
        std::vector<double> work(count, 1e6);
        for (int t = 1; t < count; ++t)
            work[t] = static_cast<double>(random() % 5);

        std::vector<double> path = work;
        for (int t = count - 1; t > 0; --t)
            for (const auto& [first, second] : edges)
                if (first == t)
                    path[t] = std::max(path[t], work[t] + path[second]);
        std::vector<int> expected;
        std::vector<bool> done(count, false);
        while (static_cast<int>(expected.size()) < count - 1) {
            int best = -1;
            for (int t = 1; t < count; ++t) {
                const bool ready =
                    !done[t] && std::none_of(edges.begin(), edges.end(), [&](const Edge& edge) {
                        return edge.second == t && !done[edge.first];
                    });
                if (ready && (best < 0 || path[t] > path[best]))
                    best = t;
            }
            done[best] = true;
            expected.push_back(best);
        }

        std::vector<int> begun;
        std::atomic<int> left{count - 1};
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        TaskGraph(count, edges, work).execute(2, [&](int t) {
            if (t > 0) {
                begun.push_back(t);
                --left;
            }
            while (t == 0 && left > 0 && std::chrono::steady_clock::now() < end)
                std::this_thread::yield();
        });
        ASSERT_EQ(begun, expected);
    }
}

// The runtime's own do not grow in number from one execution to the next.
TEST(TaskGraph, StartsFewThreads)
{
    std::vector<Edge> edges;
    for (int t = 1; t < 40; ++t)
        edges.push_back({(t - 1) / 2, t});
    const TaskGraph graph(40, edges);
    for (int round = 0; round < 300; ++round)
        graph.execute(2, [](int) { std::this_thread::sleep_for(std::chrono::microseconds(5)); });
    const std::filesystem::directory_iterator all("/proc/self/task");
    EXPECT_LE(std::distance(begin(all), end(all)), std::max(8, tbb::info::default_concurrency() + 5));
}

TEST(TaskGraph, AFailureEndsTheOthers)
{
    constexpr int count = 400;
    for (int threads : {1, 2, 3})
        for (int failing : {0, 7, 399}) {
            std::vector<Edge> edges; // from each hundredth task to those behind it
            for (int t = 0; t < count; ++t)
                if (t % 100 != 0)
                    edges.push_back({t / 100 * 100, t});
            std::atomic<int> done{0};
            std::atomic<bool> afterFailing{false};
            const TaskGraph graph(count, edges);
            try {
                graph.execute(threads, [&](int t) {
                    if (t == failing)
                        throw std::runtime_error("task " + std::to_string(t));
                    if (failing % 100 == 0 && t / 100 == failing / 100)
                        afterFailing = true;
                    std::this_thread::sleep_for(std::chrono::microseconds(50));
                    ++done;
                });
                ADD_FAILURE() << "nothing is thrown";
            } catch (const std::runtime_error& failure) {
                EXPECT_EQ(failure.what(), "task " + std::to_string(failing));
            }
            EXPECT_FALSE(afterFailing) << "what waits for a task that failed is done";
            if (failing < 100 && threads == 1)
                EXPECT_EQ(done, failing);
            const int before = done;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            EXPECT_EQ(done, before) << "tasks are still running";
            graph.execute(threads, [&](int) { ++done; });
            EXPECT_EQ(done, before + count);
        }
}

// Of tasks that wait for nothing those that have not begun do not begin.
TEST(TaskGraph, AFailureIsTheLastToBegin)
{
    constexpr int count = 2000;
    std::atomic<int> done{0};
    std::atomic<bool> thrown{false};
    try {
        TaskGraph(count, {}).execute(2, [&](int) {
            if (!thrown.exchange(true))
                throw 1;
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            ++done;
        });
        ADD_FAILURE() << "nothing is thrown";
    } catch (int) {
    }
    EXPECT_LT(done, count / 2);
}

} // namespace
