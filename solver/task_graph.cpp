// SPDX-License-Identifier: BSD-3-Clause
#include "task_graph.h"

#include "storage.h"

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <numeric>

class Run
{
public:
    Run(const TaskGraph& graph, const std::function<void(int)>& task)
        : graph_(graph), task_(task), waits_(graph.waits_.size())
    {
        for (std::size_t t = 0; t < waits_.size(); ++t)
            waits_[t].store(graph.waits_[t], std::memory_order_relaxed);
    }

    void begin()
    {
        attempt([this] {
            // The last one begun is the first one done by this thread.
            for (std::size_t t = waits_.size(); t-- > 0;)
                if (graph_.waits_[t] == 0)
                    spawn(static_cast<int>(t));
        });
        group_.wait();
        if (failure_)
            std::rethrow_exception(failure_);
    }

private:
    void spawn(int t)
    {
        group_.run([this, t] { perform(t); });
    }

    void perform(int t)
    {
        if (failed_.load(std::memory_order_acquire))
            return;
        attempt([this, t] {
            task_(t);
            for (std::int64_t e = graph_.start_[t + 1]; e-- > graph_.start_[t];)
                if (waits_[graph_.next_[e]].fetch_sub(1, std::memory_order_acq_rel) == 1)
                    spawn(graph_.next_[e]);
        });
    }

    // The first failure is kept, and nothing is begun after it. The runtime's own want of memory is one too.
    template <class Work>
    void attempt(Work work)
    {
        try {
            work();
        } catch (...) {
            if (!failed_.exchange(true))
                failure_ = std::current_exception();
        }
    }

    const TaskGraph& graph_;
    const std::function<void(int)>& task_;
    std::vector<std::atomic<int>> waits_;
    tbb::task_group group_;
    std::atomic<bool> failed_{false};
    std::exception_ptr failure_;
};

TaskGraph::TaskGraph(int count, std::vector<std::pair<int, int>> edges)
    : waits_(count, 0), start_(static_cast<std::size_t>(count) + 1, 0)
{
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    for (const auto& [task, waiting] : edges) {
        ++waits_[waiting];
        ++start_[task + 1];
        next_.push_back(waiting);
    }
    std::partial_sum(start_.begin(), start_.end(), start_.begin());
}

void TaskGraph::execute(int threads, const std::function<void(int)>& task) const
{
    if (inSequence(threads)) {
        for (int t = 0; t < count(); ++t)
            task(t);
        return;
    }
    // Else the runtime takes no more threads than there are processors, and says so on stderr.
    const tbb::global_control allowed(tbb::global_control::max_allowed_parallelism, threads);
    tbb::task_arena arena(threads);
    arena.execute([&] { Run(*this, task).begin(); });
}

int TaskGraph::thread(int threads) const
{
    return inSequence(threads) ? 0 : tbb::this_task_arena::current_thread_index();
}

double TaskGraph::bytes() const
{
    return storageOf(waits_) + storageOf(start_) + storageOf(next_);
}
