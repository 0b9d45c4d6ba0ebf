// SPDX-License-Identifier: BSD-3-Clause
// Task graphs executed in other ways than the solver's own: in any sequence that the dependencies allow, on
// threads that wait at random, without some of the dependencies.
#pragma once

#include "task_graph.h"

#include <functional>
#include <random>

namespace disorder {

using Execution = std::function<void(const TaskGraph&, const std::function<void(int)>& task)>;

// While it lives, TaskGraph::execute does this instead.
class Instead
{
public:
    explicit Instead(Execution execution);
    ~Instead();
    Instead(const Instead&) = delete;
    Instead& operator=(const Instead&) = delete;
};

// Whether the second need not wait for the first.
using Ignored = std::function<bool(const TaskGraph& graph, int first, int second)>;

// One task after the other: any of those that are ready, or the last one that became so, or by a rank drawn
// for each.
Execution inAnyOrder(std::mt19937_64& random, Ignored ignored = {});
// On so many threads, each of which sleeps before and after a task as long as it likes. What the tasks see of
// one another they see through their dependencies alone.
Execution onThreads(int threads, std::mt19937_64& random);

} // namespace disorder
