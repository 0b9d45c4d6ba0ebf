// SPDX-License-Identifier: BSD-3-Clause
// Which task waits for which, and their execution.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

// As many threads of oneTBB, the calling one among them. Those that a team has had come back to its next
// execution at once: make it once for several. It has one execution at a time.
class Team
{
public:
    Team(int threads); // makes a team of any number; none that it has no memory for
    ~Team();
    Team(Team&& other) noexcept;
    Team& operator=(Team&& other) noexcept;

    int threads() const { return threads_; }

private:
    friend class TaskGraph;
    struct Arena;

    int threads_;
    std::unique_ptr<Arena> arena_; // null: the calling thread is all
};

class TaskGraph
{
public:
    TaskGraph() = default;
    // Tasks 0 ... count - 1; of each pair the second waits for the first. In sequence each stands behind all
    // that it waits for. Of those that are ready the one with the most work on its longest path to the end
    // begins first, or, where `work` is not known, the first in sequence.
    TaskGraph(int count, std::vector<std::pair<int, int>> edges, const std::vector<double>& work = {});

    // On the threads of a team; on the calling one alone, in sequence, where that is all. What a task throws
    // ends the others that have not begun, and is thrown again when all have ended.
    void execute(const Team& team, const std::function<void(int)>& task) const;

    // For a task that execute() performs: on which of the threads, from 0.
    static int thread();

    int count() const { return static_cast<int>(waits_.size()); }
    std::size_t edges() const { return next_.size(); }
    // Those that wait for task t.
    std::span<const int> next(int t) const
    {
        return {next_.data() + start_[t], next_.data() + start_[t + 1]};
    }
    double bytes() const;

private:
    friend class Run;
    void rank(const std::vector<double>& work);

    std::vector<int> waits_;          // of each task: for how many
    std::vector<std::int64_t> start_; // of each task: where those that wait for it start in next_
    std::vector<int> next_;
    std::vector<int> rank_; // of each task: how many go before it
};
