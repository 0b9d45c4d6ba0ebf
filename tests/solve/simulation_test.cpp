// SPDX-License-Identifier: BSD-3-Clause
// Tasks on a number of workers, simulated: graphs whose answer is known. Times are sums of powers of two, so
// that every sum is exact.
#include "simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

// Edges by task: those that wait for it.
Simulation made(const std::vector<double>& seconds, const std::vector<std::vector<int>>& edges)
{
    std::vector<std::int64_t> start{0};
    std::vector<std::int32_t> next;
    for (std::size_t t = 0; t < seconds.size(); ++t) {
        if (t < edges.size())
            next.insert(next.end(), edges[t].begin(), edges[t].end());
        start.push_back(static_cast<std::int64_t>(next.size()));
    }
    return Simulation(seconds, start, next);
}

} // namespace

TEST(Simulation, NoTasksTakeNoTime)
{
    const Simulation none = made({}, {});
    EXPECT_EQ(none.on(1), 0.0);
    EXPECT_EQ(none.on(7), 0.0);
    EXPECT_EQ(none.criticalSeconds(), 0.0);
    EXPECT_TRUE(none.criticalPath().empty());
}

TEST(Simulation, AChainIsAsLongOnAnyNumber)
{
    const Simulation chain = made({1, 2, 0, 4}, {{1}, {2}, {3}});
    for (int workers : {1, 2, 1000000})
        EXPECT_EQ(chain.on(workers), 7);
    EXPECT_EQ(chain.criticalSeconds(), 7);
    EXPECT_EQ(chain.criticalPath(), (std::vector<int>{0, 1, 2, 3}));
}

TEST(Simulation, IndependentTasksAreShared)
{
    const Simulation equal = made({1, 1, 1, 1, 1, 1}, {});
    EXPECT_EQ(equal.on(1), 6);
    EXPECT_EQ(equal.on(2), 3);
    EXPECT_EQ(equal.on(3), 2);
    EXPECT_EQ(equal.on(4), 2);
    EXPECT_EQ(equal.on(6), 1);
    EXPECT_EQ(equal.criticalSeconds(), 1);
}

TEST(Simulation, TheLongestPathGoesFirst)
{
    // Long tasks first, whatever their numbers: 3 beside 2 + 1.
    EXPECT_EQ(made({1, 2, 3}, {}).on(2), 3);
    // A short task that a long one waits for goes before longer ones that nothing waits for.
    EXPECT_EQ(made({4, 1, 4}, {{}, {2}}).on(2), 5);
    EXPECT_EQ(made({2, 2, 1, 4}, {{}, {}, {3}}).on(2), 5);
}

TEST(Simulation, ADiamondWaitsForBothSides)
{
    const Simulation diamond = made({1, 2, 4, 8}, {{1, 2}, {3}, {3}});
    EXPECT_EQ(diamond.on(1), 15);
    EXPECT_EQ(diamond.on(2), 13);
    EXPECT_EQ(diamond.on(3), 13);
    EXPECT_EQ(diamond.criticalPath(), (std::vector<int>{0, 2, 3}));
}

TEST(Simulation, TheWorkerThatIsFreeFirstTakesTheNextTask)
{
    // 8 on one worker, 4 and then 2 on the other; the last waits for the 4 alone.
    EXPECT_EQ(made({8, 4, 2}, {{}, {2}}).on(2), 8);
}

TEST(Simulation, WhatEndsAtOnceIsSeenAtOnce)
{
    // 0 and 1 end together, and two tasks become ready that go before 2, which was.
    EXPECT_EQ(made({2, 2, 1, 4, 4, 16}, {{}, {3, 4}, {}, {5}, {5}}).on(2), 22);
}

TEST(Simulation, StaysWithinTheBounds)
{
    std::mt19937_64 random(5);
    for (int round = 0; round < 200; ++round) {
        const int count = 1 + static_cast<int>(random() % 60);
        std::vector<double> seconds(count);
        std::vector<std::vector<int>> edges(count);
        for (int t = 0; t < count; ++t) {
            seconds[t] = static_cast<double>(random() % 64) / 16.0;
            for (int s = t + 1; s < count; ++s)
                if (random() % 16 == 0)
                    edges[t].push_back(s);
        }
        const Simulation simulation = made(seconds, edges);
        double longest = 0.0;
        for (int t : simulation.criticalPath())
            longest += seconds[t];
        ASSERT_EQ(longest, simulation.criticalSeconds());
        ASSERT_EQ(simulation.on(1), simulation.sum());
        ASSERT_EQ(simulation.on(count), longest);
        for (int workers = 1; workers <= count; ++workers) {
            const double predicted = simulation.on(workers), share = simulation.sum() / workers;
            ASSERT_GE(predicted, std::max(longest, share));
            ASSERT_LE(predicted, share + longest); // Graham
        }
    }
}
