// SPDX-License-Identifier: BSD-3-Clause
#include "executor.h"

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>

#include <atomic>
#include <exception>
#include <vector>

namespace {

class Run
{
public:
    Run(const Schedule& schedule, const std::function<void(const Task&)>& task)
        : schedule_(schedule), task_(task), waits_(schedule.tasks.size())
    {
        for (std::size_t t = 0; t < waits_.size(); ++t)
            waits_[t].store(schedule.waits[t], std::memory_order_relaxed);
    }

    void begin()
    {
        // The last one begun is the first one done by this thread.
        for (std::size_t t = waits_.size(); t-- > 0;)
            if (schedule_.waits[t] == 0)
                spawn(static_cast<int>(t));
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
        try {
            task_(schedule_.tasks[t]);
        } catch (...) {
            if (!failed_.exchange(true))
                failure_ = std::current_exception();
            return;
        }
        for (std::int64_t e = schedule_.start[t + 1]; e-- > schedule_.start[t];)
            if (waits_[schedule_.next[e]].fetch_sub(1, std::memory_order_acq_rel) == 1)
                spawn(schedule_.next[e]);
    }

    const Schedule& schedule_;
    const std::function<void(const Task&)>& task_;
    std::vector<std::atomic<int>> waits_;
    tbb::task_group group_;
    std::atomic<bool> failed_{false};
    std::exception_ptr failure_;
};

} // namespace

void execute(const Schedule& schedule, int threads, const std::function<void(const Task&)>& task)
{
    if (threads == 1 || schedule.tasks.size() < 2) {
        for (const Task& each : schedule.tasks)
            task(each);
        return;
    }
    // Else the runtime takes no more threads than there are processors, and says so on stderr.
    const tbb::global_control allowed(tbb::global_control::max_allowed_parallelism, threads);
    tbb::task_arena arena(threads);
    arena.execute([&] { Run(schedule, task).begin(); });
}
