// SPDX-License-Identifier: BSD-3-Clause
// Callers who have threads of their own: several of them, workers of the runtime that the solver uses, or of
// OpenMP. Each gets the bits of one thread.
#include "learned.h"

#include <TOVBlaModule.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

struct System
{
    Cube a;
    bool symmetric;
    std::vector<double> expected = learned(a, symmetric, 1);
};

const System& system(int k)
{
    static const System systems[] = {{Cube(9, true, 9.0), true}, {Cube(8, false, 9.0), false}};
    return systems[k % 2];
}

// Whether the k-th call, on so many threads, gives other bits.
bool differs(int k, int threads)
{
    return !sameBits(system(k).expected, learned(system(k).a, system(k).symmetric, threads));
}

constexpr int calls = 6;

// Of different numbers of threads, more than there are processors: the runtime has nothing to say on it.
TEST(Callers, TwoHandlesAtOnce)
{
    system(0); // and the other one
    testing::internal::CaptureStderr();
    std::atomic<int> wrong{0};
    std::vector<std::thread> callers;
    for (int k = 0; k < 2; ++k)
        callers.emplace_back([&wrong, k] {
            for (int round = 0; round < calls; ++round)
                wrong += differs(k, 2 + 3 * k + round % 3);
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Callers, WorkersOfTheSameRuntime)
{
    system(0);
    std::atomic<int> wrong{0};
    tbb::parallel_for(0, calls, [&](int k) { wrong += differs(k, 2); });
    EXPECT_EQ(wrong, 0);
}

// The only worker there may be waits for what is done on its own stack.
TEST(Callers, AnArenaOfOneThread)
{
    system(0);
    std::atomic<int> wrong{0};
    tbb::task_arena one(1);
    one.execute([&] {
        tbb::task_group group;
        for (int k = 0; k < 2; ++k)
            group.run([&, k] { wrong += differs(k, 3); });
        group.wait();
    });
    EXPECT_EQ(wrong, 0);
}

// Who gives up his own tasks has called for a solution all the same.
TEST(Callers, AGroupOfTasksThatIsCancelled)
{
    system(0);
    std::atomic<int> wrong{0}, called{0};
    tbb::task_group group;
    group.run([&] {
        for (; called < 3; ++called) {
            group.cancel();
            wrong += differs(called, 2);
        }
    });
    group.wait();
    EXPECT_EQ(called, 3);
    EXPECT_EQ(wrong, 0);
}

TEST(Callers, AParallelRegionOfOpenMp)
{
#ifndef _OPENMP
    GTEST_SKIP() << "built without OpenMP";
#else
    system(0);
    std::atomic<int> wrong{0};
#    pragma omp parallel for schedule(dynamic, 1) num_threads(3)
    for (int k = 0; k < calls; ++k)
        wrong += differs(k, 2);
    EXPECT_EQ(wrong, 0);
#endif
}

// While the solver works; the number is asked for at every report.
TEST(Callers, FindOneBlasThreadBeneath)
{
    blaC_set_num_threads(2);
    const Cube a(8, true, 9.0);
    bla_solver* solver = nullptr;
    ASSERT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    const Handle owner(solver);
    int most = 0;
    const auto look = [](void* context, const char* phase, double share) {
        if (std::strcmp(phase, "factorising") == 0 && share > 0.0)
            *static_cast<int*>(context) = std::max(*static_cast<int*>(context), blaC_get_num_threads());
        return 0;
    };
    ASSERT_EQ(bla_solver_set_monitor(solver, look, &most), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_set(solver, "threads", 2), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_analyse(solver, BLA_SOLVER_SYMMETRIC_LOWER, a.n, a.start.data(), a.column.data()),
              BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OK);
    EXPECT_EQ(most, 1);
}

// Of several that overlap, too.
TEST(Callers, FindTheirNumberOfBlasThreadsAgain)
{
    system(0);
    for (int before : {2, 1}) {
        blaC_set_num_threads(before);
        const int set = blaC_get_num_threads(); // that the library beneath can have
        std::atomic<int> wrong{0};
        std::vector<std::thread> callers;
        for (int k = 0; k < 3; ++k)
            callers.emplace_back([&wrong, k] { wrong += differs(k, 2); });
        for (std::thread& caller : callers)
            caller.join();
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(blaC_get_num_threads(), set);
    }
}

} // namespace
