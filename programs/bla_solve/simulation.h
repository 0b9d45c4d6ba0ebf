// SPDX-License-Identifier: BSD-3-Clause
// How long tasks that wait for each other take on a number of workers. List scheduling: a task is ready when
// all that it waits for have ended; the worker that is free first takes the ready task with the longest path
// to the end. Graham 1969: within twice the best schedule.
#pragma once

#include <cstdint>
#include <vector>

class Simulation
{
public:
    // What each task takes; next[start[t]] ... next[start[t + 1] - 1] wait for task t and stand behind it.
    Simulation(std::vector<double> seconds, std::vector<std::int64_t> start, std::vector<std::int32_t> next);

    // From the begin of the first task to the end of the last one.
    double on(int workers) const;

    // No number of workers is faster than one after the other of these: a longest path.
    std::vector<int> criticalPath() const;
    double criticalSeconds() const;
    // One worker.
    double sum() const;

private:
    int count() const { return static_cast<int>(seconds_.size()); }

    std::vector<double> seconds_;
    std::vector<std::int64_t> start_;
    std::vector<std::int32_t> next_;
    std::vector<int> waits_;    // for how many
    std::vector<double> toEnd_; // the longest path from the begin of each task
};
