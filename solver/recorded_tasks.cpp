// SPDX-License-Identifier: BSD-3-Clause
// What bla_solver_tasks tells of a recorded factorisation.
#include "failure.h"
#include "handle.h"

#include <algorithm>

namespace {

const char* nameOf(Task::Kind kind)
{
    switch (kind) {
    case Task::Kind::branch:
        return "branch";
    case Task::Kind::assemble:
        return "assemble";
    case Task::Kind::keep:
        return "keep";
    case Task::Kind::eliminate:
        return "eliminate";
    case Task::Kind::lower:
        return "lower";
    case Task::Kind::upper:
        return "upper";
    case Task::Kind::update:
        return "update";
    case Task::Kind::finish:
        return "finish";
    }
    return "";
}

} // namespace

void bla_solver::tasks(bla_solver_task* tasks, std::int64_t* start, std::int32_t* next) const
{
    const Schedule& schedule = *plan->schedule;
    for (std::size_t t = 0; t < schedule.tasks.size(); ++t) {
        const Task& task = schedule.tasks[t];
        const TaskTime& time = (*numbers->times)[t];
        tasks[t] = {nameOf(task.kind), task.front, task.i,     task.j,  task.k,
                    time.thread,       1,          time.begin, time.end};
        if (task.kind == Task::Kind::branch) {
            const Branch& branch = schedule.branches[task.front];
            tasks[t].front = branch.last;
            tasks[t].fronts = branch.last - branch.first + 1;
        }
    }
    *start = 0;
    for (int t = 0; t < schedule.graph.count(); ++t) {
        const auto waiting = schedule.graph.next(t);
        std::copy(waiting.begin(), waiting.end(), next + start[t]);
        start[t + 1] = start[t] + static_cast<std::int64_t>(waiting.size());
    }
}

void bla_solver::requireTasks() const
{
    requireFactor();
    if (!numbers->times)
        throw Failure(BLA_SOLVER_NOT_READY,
                      "no tasks have been recorded (option record, then bla_solver_factorise)");
}
