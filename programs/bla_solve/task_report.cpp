// SPDX-License-Identifier: BSD-3-Clause
#include "task_report.h"

#include "simulation.h"

#include <algorithm>
#include <cstdio>

namespace {

std::string text(const char* pattern, double a, double b = 0.0, double c = 0.0)
{
    char buffer[120];
    std::snprintf(buffer, sizeof buffer, pattern, a, b, c);
    return buffer;
}

Simulation simulated(const Tasks& tasks)
{
    std::vector<double> seconds;
    for (const bla_solver_task& task : tasks.task)
        seconds.push_back(task.end - task.begin);
    return Simulation(std::move(seconds), tasks.start, tasks.next);
}

// "eliminate 61 %, lower 30 %": of the seconds on the critical path, in the sequence of their sizes.
std::string shares(const Tasks& tasks, const Simulation& simulation)
{
    std::vector<std::pair<double, std::string>> kinds;
    for (int t : simulation.criticalPath()) {
        const bla_solver_task& task = tasks.task[t];
        const auto same = [&](const auto& kind) { return kind.second == task.name; };
        auto kind = std::find_if(kinds.begin(), kinds.end(), same);
        if (kind == kinds.end())
            kind = kinds.insert(kinds.end(), {0.0, task.name});
        kind->first += task.end - task.begin;
    }
    std::sort(kinds.rbegin(), kinds.rend());
    std::string result;
    for (const auto& [seconds, name] : kinds)
        if (const double percent = 100.0 * seconds / simulation.criticalSeconds(); percent >= 0.5)
            result += (result.empty() ? "" : ", ") + name + text(" %.0f %%", percent);
    return result;
}

} // namespace

void reportTasks(Report& report, const Tasks& tasks)
{
    double begin = tasks.task.empty() ? 0.0 : tasks.task[0].begin, end = begin;
    for (const bla_solver_task& task : tasks.task) {
        begin = std::min(begin, task.begin);
        end = std::max(end, task.end);
    }
    const Simulation simulation = simulated(tasks);
    const double sum = simulation.sum(), critical = simulation.criticalSeconds();

    report.heading("Tasks of the factorisation");
    report.add("tasks", "tasks", static_cast<std::int64_t>(tasks.task.size()));
    report.add("task_edges", "dependencies", static_cast<std::int64_t>(tasks.next.size()));
    report.add("task_seconds", "", sum);
    report.line("sum of their times", text("%8.3f s", sum));
    report.add("task_span_seconds", "", end - begin);
    report.line("first begin to last end", text("%8.3f s", end - begin));
    report.add("critical_path_seconds", "", critical);
    report.line("critical path", text("%8.3f s  ", critical) + shares(tasks, simulation));
}

void reportSimulation(Report& report, const Tasks& tasks, const std::vector<int>& workers)
{
    const Simulation simulation = simulated(tasks);
    const double sum = simulation.sum();
    report.heading("The same tasks on other numbers of workers, simulated");
    report.line("workers", "   seconds   speedup  efficiency");
    for (int count : workers) {
        const double predicted = simulation.on(count), speedup = predicted > 0.0 ? sum / predicted : 1.0;
        report.add("simulated_seconds_" + std::to_string(count), "", predicted);
        report.line(std::to_string(count),
                    text("%8.3f s %9.2f %9.1f %%", predicted, speedup, 100.0 * speedup / count));
    }
}
