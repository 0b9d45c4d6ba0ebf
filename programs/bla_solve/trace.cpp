// SPDX-License-Identifier: BSD-3-Clause
#include "trace.h"

#include "output_file.h"

#include <algorithm>
#include <cmath>

namespace {

// Whole nanoseconds: rounded, no task overlaps the next one.
long long nanoseconds(double seconds)
{
    return std::llround(1e9 * seconds);
}

void writeTask(std::FILE* out, const Tasks& tasks, std::size_t t)
{
    const bla_solver_task& task = tasks.task[t];
    const long long begin = nanoseconds(task.begin), end = nanoseconds(task.end);
    std::fprintf(out,
                 ",\n{\"ph\": \"X\", \"pid\": 1, \"tid\": %d, \"ts\": %lld.%03lld, \"dur\": %lld.%03lld, "
                 "\"name\": \"%s\", \"args\": {\"task\": %zu, \"front\": %d",
                 task.thread, begin / 1000, begin % 1000, (end - begin) / 1000, (end - begin) % 1000,
                 task.name, t, task.front);
    if (task.fronts > 1)
        std::fprintf(out, ", \"fronts\": %d", task.fronts);
    const std::pair<const char*, int> places[] = {
        {"row", task.row}, {"column", task.column}, {"step", task.step}};
    for (const auto& [name, number] : places)
        if (number >= 0)
            std::fprintf(out, ", \"%s\": %d", name, number);
    std::fputs(", \"next\": [", out);
    for (std::int64_t e = tasks.start[t]; e < tasks.start[t + 1]; ++e)
        std::fprintf(out, e > tasks.start[t] ? ", %d" : "%d", tasks.next[e]);
    std::fputs("]}}", out);
}

} // namespace

void writeTrace(const std::string& path, const Tasks& tasks)
{
    OutputFile file(path);
    std::FILE* const out = file.stream();
    std::fputs("[\n{\"ph\": \"M\", \"pid\": 1, \"name\": \"process_name\", \"args\": {\"name\": "
               "\"factorisation\"}}",
               out);
    int threads = 0;
    for (const bla_solver_task& task : tasks.task)
        threads = std::max(threads, task.thread + 1);
    for (int thread = 0; thread < threads; ++thread)
        std::fprintf(out,
                     ",\n{\"ph\": \"M\", \"pid\": 1, \"tid\": %d, \"name\": \"thread_name\", \"args\": "
                     "{\"name\": \"thread %d\"}}",
                     thread, thread);
    for (std::size_t t = 0; t < tasks.task.size(); ++t)
        writeTask(out, tasks, t);
    std::fputs("\n]\n", out);
    file.finish();
}
