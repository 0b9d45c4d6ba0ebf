// SPDX-License-Identifier: BSD-3-Clause
// The shared library under load: many threads, first calls at the same time, loading and unloading, small
// stacks, fork.
#include "TOVBlaModule.h"
#include "workload.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <dlfcn.h>
#include <fstream>
#include <pthread.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using stress::first_call;
using stress::workload;

namespace {

constexpr int Threads = 8;

/// Runs body(t) on 8 threads that start together.
template <class Body>
void on_threads(Body body)
{
    std::barrier start(Threads);
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t)
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            body(t);
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Concurrency, ThreadsOnDistinctArraysGetTheBitsOfASingleThread)
{
    for (int blas_threads : {1, 2}) {
        blaC_set_num_threads(blas_threads);
        constexpr int Rounds = 12;
        std::uint64_t expected[Threads * Rounds];
        for (int i = 0; i < Threads * Rounds; ++i)
            expected[i] = workload(static_cast<std::uint64_t>(i));
        std::atomic<int> wrong = 0;
        on_threads([&](int t) {
            for (int round = 0; round < Rounds; ++round)
                wrong +=
                    workload(static_cast<std::uint64_t>(t * Rounds + round)) != expected[t * Rounds + round];
        });
        EXPECT_EQ(wrong, 0) << "BLAS threads: " << blas_threads;
    }
    blaC_set_num_threads(1);
}

// The library opened anew, apart from the one that this program is linked to.
void* opened;
void* in_opened(const char* name)
{
    return dlsym(opened, name);
}

bool mapped()
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(BLA_COPY) != std::string::npos)
            return true;
    return false;
}

long resident_kilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    return -1;
}

TEST(Loading, TheFirstCallOfAProcessMayBeMadeByEightThreadsAtOnce)
{
    const std::uint64_t expected = first_call(stress::linked);
    for (int round = 0; round < 100; ++round) { // every round has a fresh, unfilled feature word
        opened = dlopen(BLA_COPY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(opened, nullptr) << dlerror();
        std::atomic<int> wrong = 0;
        on_threads([&](int) { wrong += first_call(in_opened) != expected; });
        EXPECT_EQ(wrong, 0) << "round " << round;
        dlclose(opened);
        ASSERT_FALSE(mapped()) << "unloaded for good";
    }
}

TEST(Loading, ManyCyclesOfLoadingAndUnloadingLeakNothing)
{
    blaC_set_num_threads(1);
    const std::uint64_t expected = workload(5);
    [[maybe_unused]] long after_warming = 0;
    for (int cycle = 0; cycle < 300; ++cycle) {
        opened = dlopen(BLA_COPY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(opened, nullptr) << dlerror();
        EXPECT_EQ(workload(5, in_opened), expected);
        ASSERT_EQ(dlclose(opened), 0);
        ASSERT_FALSE(mapped());
        if (cycle == 100)
            after_warming = resident_kilobytes();
    }
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed, and looks for leaks itself
    EXPECT_LT(resident_kilobytes(), after_warming + 1024) << "kilobytes";
#endif
}

// Those that call the BLAS, the rest: digest.on_a_stack_of_256_KiB.
TEST(Stack, TheRoutinesFitIntoAThreadWith256KiB)
{
    const std::uint64_t expected = workload(7);
    struct Result
    {
        std::uint64_t hash;
    } result{};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* p) -> void* {
                      static_cast<Result*>(p)->hash = workload(7);
                      return nullptr;
                  },
                  &result),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(result.hash, expected);
}

TEST(Fork, TheChildGetsTheSameBits)
{
    for (int blas_threads : {1, 2}) {
        blaC_set_num_threads(blas_threads);
        const std::uint64_t expected = workload(9);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            _exit(workload(9) == expected ? 0 : 1);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "BLAS threads: " << blas_threads;
        EXPECT_EQ(workload(9), expected) << "and the parent goes on";
    }
    blaC_set_num_threads(1);
}

TEST(Workload, IsSensitiveToTheSeed)
{
    std::set<std::uint64_t> hashes;
    for (std::uint64_t seed = 0; seed < 20; ++seed)
        hashes.insert(workload(seed));
    EXPECT_EQ(hashes.size(), 20u);
}

} // namespace
