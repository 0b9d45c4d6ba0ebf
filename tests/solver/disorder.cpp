// SPDX-License-Identifier: BSD-3-Clause
#include "disorder.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>
#include <vector>

namespace {

const disorder::Execution* instead = nullptr;

std::vector<int> waitsOf(const TaskGraph& graph, const disorder::Ignored& ignored)
{
    std::vector<int> waits(graph.count(), 0);
    for (int t = 0; t < graph.count(); ++t)
        for (int waiting : graph.next(t))
            waits[waiting] += !ignored || !ignored(graph, t, waiting);
    return waits;
}

} // namespace

// void TaskGraph::execute(const Team& team, const std::function<void(int)>& task) const, as the linker sees
// it
extern "C" {
void __real__ZNK9TaskGraph7executeERK4TeamRKSt8functionIFviEE(const TaskGraph*, const Team&,
                                                              const std::function<void(int)>&);
void __wrap__ZNK9TaskGraph7executeERK4TeamRKSt8functionIFviEE(const TaskGraph* graph, const Team& team,
                                                              const std::function<void(int)>& task)
{
    if (instead)
        (*instead)(*graph, task);
    else
        __real__ZNK9TaskGraph7executeERK4TeamRKSt8functionIFviEE(graph, team, task);
}
}

namespace disorder {

Instead::Instead(Execution execution)
{
    instead = new Execution(std::move(execution));
}

Instead::~Instead()
{
    delete std::exchange(instead, nullptr);
}

Execution inAnyOrder(std::mt19937_64& random, Ignored ignored)
{
    return [&random, ignored](const TaskGraph& graph, const std::function<void(int)>& task) {
        std::vector<int> waits = waitsOf(graph, ignored), ready, rank(graph.count());
        std::iota(rank.begin(), rank.end(), 0);
        std::shuffle(rank.begin(), rank.end(), random);
        for (int t : rank)
            if (waits[t] == 0)
                ready.push_back(t);
        for (const auto how = random() % 3; !ready.empty();) {
            auto chosen = ready.end() - 1;
            if (how == 1)
                chosen = ready.begin() + static_cast<std::ptrdiff_t>(random() % ready.size());
            if (how == 2)
                chosen = std::min_element(ready.begin(), ready.end(),
                                          [&](int x, int y) { return rank[x] < rank[y]; });
            const int t = *chosen;
            ready.erase(chosen);
            task(t);
            for (int waiting : graph.next(t))
                if ((!ignored || !ignored(graph, t, waiting)) && --waits[waiting] == 0)
                    ready.push_back(waiting);
        }
    };
}

Execution onThreads(int threads, std::mt19937_64& random)
{
    return [threads, &random](const TaskGraph& graph, const std::function<void(int)>& task) {
        const std::vector<int> waits = waitsOf(graph, {});
        std::vector<std::atomic<int>> left(waits.begin(), waits.end());
        std::vector<std::atomic<bool>> taken(waits.size());
        std::atomic<int> done{0};
        // Each looks for work in a sequence of its own. No lock, and nothing but `left` orders anything: a
        // thread sanitizer would take any other order for one that the tasks have asked for.
        const auto work = [&](std::uint64_t seed) {
            std::mt19937_64 own(seed);
            const auto sleep = [&] {
                if (own() % 8 == 0)
                    std::this_thread::sleep_for(std::chrono::microseconds(own() % 200));
            };
            std::vector<int> sequence(waits.size());
            std::iota(sequence.begin(), sequence.end(), 0);
            std::shuffle(sequence.begin(), sequence.end(), own);
            while (done.load(std::memory_order_relaxed) < graph.count()) {
                for (int t : sequence) {
                    if (taken[t].load(std::memory_order_relaxed) ||
                        left[t].load(std::memory_order_acquire) > 0 ||
                        taken[t].exchange(true, std::memory_order_relaxed))
                        continue;
                    sleep();
                    task(t);
                    sleep();
                    done.fetch_add(1, std::memory_order_relaxed);
                    for (int waiting : graph.next(t))
                        left[waiting].fetch_sub(1, std::memory_order_acq_rel);
                }
                std::this_thread::yield();
            }
        };
        std::vector<std::thread> crew;
        for (int w = 0; w < threads; ++w)
            crew.emplace_back(work, random());
        for (std::thread& worker : crew)
            worker.join();
    };
}

} // namespace disorder
