// SPDX-License-Identifier: BSD-3-Clause
#include "task_graph.h"

#include "storage.h"

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/partitioner.h>
#include <oneapi/tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <numeric>
#include <optional>

namespace {

thread_local int worker = 0; // in the execution that this thread works on

// While it lives, the runtime has as many threads as the most demanding execution asks for; else it takes no
// more than there are processors, and says so on stderr. Of several limits the least holds: there is one. It
// is no larger than it must be, because the runtime starts a thread rather than wait for one to fall asleep.
class Allowance
{
public:
    explicit Allowance(int threads)
    {
        const std::lock_guard<std::mutex> lock(changing);
        if (threads > most) {
            control = std::make_unique<tbb::global_control>(
                tbb::global_control::max_allowed_parallelism,
                static_cast<std::size_t>(std::max(threads, tbb::info::default_concurrency())));
            most = threads;
        }
        ++alive;
    }
    ~Allowance()
    {
        const std::lock_guard<std::mutex> lock(changing);
        if (--alive > 0)
            return;
        control.reset();
        most = 0;
    }
    Allowance(const Allowance&) = delete;
    Allowance& operator=(const Allowance&) = delete;

private:
    static inline std::mutex changing;
    static inline std::unique_ptr<tbb::global_control> control;
    static inline int alive = 0, most = 0;
};

} // namespace

// One execution. Threads that work on it take the first by rank of the tasks that are ready. All memory is
// taken before the first task begins: half a factorisation cannot be taken back.
class Run
{
public:
    Run(const TaskGraph& graph, const std::function<void(int)>& task)
        : graph_(graph), task_(task), waits_(graph.waits_), left_(graph.count())
    {
        ready_.reserve(waits_.size());
        for (int t = 0; t < left_; ++t)
            if (waits_[t] == 0)
                add(t);
    }

    // Until no task is left to begin, or one has failed.
    void work()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        const int before = std::exchange(worker, workers_++);
        while (!ended()) {
            if (ready_.empty()) {
                await(lock);
                continue;
            }
            const int t = take();
            lock.unlock();
            const std::exception_ptr failure = failureOf(t);
            enter(lock);
            finished(t, failure);
        }
        worker = before;
    }

    std::exception_ptr failure() const { return failure_; }

private:
    // Some tens of microseconds. To be woken takes a thread as long as many tasks of a small tree.
    static constexpr int looks = 2000;

    bool ended() const { return left_ == 0 || failure_; }

    // Until a task may be ready, or all has ended: looks for a while before it falls asleep.
    void await(std::unique_lock<std::mutex>& lock)
    {
        lock.unlock();
        int left = looks;
        while (nothing_.load(std::memory_order_relaxed) && --left > 0)
            __builtin_ia32_pause();
        enter(lock);
        if (left == 0 && ready_.empty() && !ended())
            changed_.wait(lock);
    }

    static void enter(std::unique_lock<std::mutex>& lock)
    {
        for (int left = looks; left > 0; --left) {
            if (lock.try_lock())
                return;
            __builtin_ia32_pause();
        }
        lock.lock();
    }

    // ready_ is a heap: the first by rank is at its front
    auto behind() const
    {
        return [this](int a, int b) { return graph_.rank_[a] > graph_.rank_[b]; };
    }
    void add(int t)
    {
        ready_.push_back(t);
        std::push_heap(ready_.begin(), ready_.end(), behind());
        nothing_ = false;
    }
    int take()
    {
        std::pop_heap(ready_.begin(), ready_.end(), behind());
        const int t = ready_.back();
        ready_.pop_back();
        nothing_ = ready_.empty();
        return t;
    }

    std::exception_ptr failureOf(int t) const
    {
        try {
            task_(t);
            return nullptr;
        } catch (...) {
            return std::current_exception();
        }
    }

    void finished(int t, const std::exception_ptr& failure)
    {
        if (failure && !failure_)
            failure_ = failure;
        --left_;
        if (ended()) {
            nothing_ = false;
            return changed_.notify_all();
        }
        bool mine = true; // this thread takes one
        for (int waiting : graph_.next(t))
            if (--waits_[waiting] == 0) {
                add(waiting);
                if (!std::exchange(mine, false))
                    changed_.notify_one();
            }
    }

    const TaskGraph& graph_;
    const std::function<void(int)>& task_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int> waits_, ready_;
    int left_, workers_ = 0;
    std::exception_ptr failure_;
    std::atomic<bool> nothing_ = true; // nothing is ready, and not all has ended
};

TaskGraph::TaskGraph(int count, std::vector<std::pair<int, int>> edges, const std::vector<double>& work)
    : waits_(count, 0), start_(static_cast<std::size_t>(count) + 1, 0), rank_(count)
{
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    for (const auto& [task, waiting] : edges) {
        ++waits_[waiting];
        ++start_[task + 1];
        next_.push_back(waiting);
    }
    std::partial_sum(start_.begin(), start_.end(), start_.begin());
    if (work.empty())
        std::iota(rank_.begin(), rank_.end(), 0);
    else
        rank(work);
}

void TaskGraph::rank(const std::vector<double>& work)
{
    std::vector<double> path(count(), 0.0); // from the begin of each to the end
    for (int t = count() - 1; t >= 0; --t) {
        for (int waiting : next(t))
            path[t] = std::max(path[t], path[waiting]);
        path[t] += work[t];
    }
    std::vector<int> tasks(count());
    std::iota(tasks.begin(), tasks.end(), 0);
    std::stable_sort(tasks.begin(), tasks.end(), [&](int a, int b) { return path[a] > path[b]; });
    for (int i = 0; i < count(); ++i)
        rank_[tasks[i]] = i;
}

struct Team::Arena
{
    tbb::task_arena threads;
};

Team::Team(int threads) : threads_(threads)
{
    if (threads > 1)
        arena_.reset(new (std::nothrow) Arena{tbb::task_arena(threads)});
}
Team::~Team() = default;
Team::Team(Team&&) noexcept = default;
Team& Team::operator=(Team&&) noexcept = default;

void TaskGraph::execute(const Team& team, const std::function<void(int)>& task) const
{
    std::optional<Run> run;
    try {
        if (team.arena_ && count() > 1)
            run.emplace(*this, task);
    } catch (const std::bad_alloc&) { // it can do without
    }
    if (!run) {
        for (int t = 0; t < count(); ++t)
            task(t);
        return;
    }
    try {
        const Allowance allowed(team.threads());
        tbb::task_group_context own(tbb::task_group_context::isolated); // the caller's may be cancelled
        team.arena_->threads.execute([&] {
            tbb::parallel_for(
                0, std::min(team.threads(), count()), [&](int) { run->work(); }, tbb::simple_partitioner(),
                own);
        });
    } catch (...) { // the runtime has no memory or no thread; what it had begun has ended
    }
    run->work(); // alone, if anything is left
    if (run->failure())
        std::rethrow_exception(run->failure());
}

int TaskGraph::thread()
{
    return worker;
}

double TaskGraph::bytes() const
{
    return storageOf(waits_) + storageOf(start_) + storageOf(next_) + storageOf(rank_);
}
