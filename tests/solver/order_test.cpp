// SPDX-License-Identifier: BSD-3-Clause
// Orders of elimination depend on the pattern alone, and finding one leaves no trace in the process.
#include "analysis.h"
#include "order.h"
#include "patterns.h"
#include "random.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace support;

namespace {

const Edges& cube()
{
    static const Edges edges(3 * 512, elasticity(8, 3));
    return edges;
}

std::vector<int> permutationOf(const Edges& edges, Ordering ordering = Ordering::metis)
{
    return analyse(edges.pattern(), {}, {ordering, nullptr, {}}).permutation;
}

TEST(Order, TheHostsRandomNumbersGoOn)
{
    std::vector<int> alone, around;
    std::srand(7);
    for (int i = 0; i < 100; ++i)
        alone.push_back(std::rand());
    std::srand(7);
    for (int i = 0; i < 100; ++i) {
        if (i % 10 == 3)
            permutationOf(cube());
        around.push_back(std::rand());
    }
    EXPECT_EQ(alone, around);
}

TEST(Order, DoesNotDependOnTheHostsRandomNumbers)
{
    const std::vector<int> before = permutationOf(cube());
    std::srand(7);
    EXPECT_EQ(permutationOf(cube()), before);
    std::rand();
    EXPECT_EQ(permutationOf(cube()), before);
}

TEST(Order, ThreadsFindTheOrderThatOneFindsAlone)
{
    std::vector<Edges> patterns;
    std::vector<std::vector<int>> alone;
    for (std::int32_t m : {6, 7, 8, 9}) {
        patterns.emplace_back(m * m * m, elasticity(m, 1));
        alone.push_back(permutationOf(patterns.back()));
    }
    std::atomic<int> different{0};
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < patterns.size(); ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i)
                different += permutationOf(patterns[t]) != alone[t];
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(different, 0);
}

TEST(Order, TheHostsSignalHandlersStay)
{
    for (int signal : {SIGTERM, SIGABRT}) {
        struct sigaction own = {}, before, after;
        own.sa_sigaction = [](int, siginfo_t*, void*) {};
        own.sa_flags = SA_SIGINFO | SA_RESTART;
        sigaddset(&own.sa_mask, SIGUSR1);
        sigaction(signal, &own, &before);
        permutationOf(cube());
        sigaction(signal, &before, &after);
        EXPECT_EQ(after.sa_sigaction, own.sa_sigaction);
        EXPECT_EQ(after.sa_flags & ~0x04000000, own.sa_flags); // but for the C library's restorer
        EXPECT_EQ(sigismember(&after.sa_mask, SIGUSR1), 1);
    }
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
}

// A SIGTERM that comes while METIS works waits for the host's handler.
TEST(Order, TerminationWaits)
{
    static std::atomic<int> received;
    received = 0;
    struct sigaction own = {}, before;
    own.sa_handler = [](int) { ++received; };
    sigaction(SIGTERM, &own, &before);
    const std::vector<int> quiet = permutationOf(cube());
    std::atomic<bool> done{false};
    std::thread sender([&, receiver = pthread_self()] {
        while (!done) {
            pthread_kill(receiver, SIGTERM);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    int different = 0;
    for (int i = 0; i < 20; ++i)
        try {
            different += permutationOf(cube()) != quiet;
        } catch (const std::exception&) {
            ++different;
        }
    done = true;
    sender.join();
    sigaction(SIGTERM, &before, nullptr);
    EXPECT_EQ(different, 0);
    EXPECT_GT(received, 0);
}

TEST(Order, EveryVertexHasItsPlace)
{
    std::mt19937_64 random = generator(21);
    for (int round = 0; round < 1000; ++round) {
        const Edges edges = anyPattern(random);
        const Graph graph = compressedGraph(edges.pattern(), {});
        for (std::vector<std::int32_t> order : {metisOrder(graph), amdOrder(edges.pattern(), graph)}) {
            std::sort(order.begin(), order.end());
            ASSERT_EQ(order.size(), static_cast<std::size_t>(graph.n));
            for (std::int32_t v = 0; v < graph.n; ++v)
                ASSERT_EQ(order[v], v);
        }
    }
}

TEST(Order, WideIntegersChangeNothing)
{
    std::mt19937_64 random = generator(22);
    for (int round = 0; round < 300; ++round) {
        const Edges edges = anyPattern(random);
        const Graph graph = compressedGraph(edges.pattern(), {});
        ASSERT_EQ(amdOrder(edges.pattern(), graph), amdOrder(edges.pattern(), graph, 0.0));
    }
}

TEST(Order, MetisIsNotGivenMoreEdgesThanItCounts)
{
    EXPECT_TRUE(metisTakes(0));
    EXPECT_TRUE(metisTakes(std::numeric_limits<std::int32_t>::max()));
    if (sizeof(void*) == 8)
        EXPECT_FALSE(metisTakes(std::int64_t{1} << 62));
}

// A vertex that touches all others comes last, and METIS is not slow because of it.
TEST(Order, AStarIsOrderedFromItsPoints)
{
    const std::int32_t n = 50000;
    EdgeSet edges = chain(n);
    edges.merge(star(n, 12345));
    const Edges wheel(n, edges);
    const Graph graph = compressedGraph(wheel.pattern(), {});
    EXPECT_EQ(metisOrder(graph).back(), 12345);
    EXPECT_LT(analyse(wheel.pattern(), {}).lowerEntries, 10 * n);
}

} // namespace
