// SPDX-License-Identifier: BSD-3-Clause
#include "extend_add.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Rows i ... i + count - 1 of the child lie next to each other in the parent, from position `at` on.
struct Run
{
    int i, count, at;
};

void add(double* to, const double* from, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] += from[i];
}

} // namespace

void extendAdd(const FrontStorage& parent, const int* local, const int* rows, int count,
               const double* contribution)
{
    const int pivots = parent.pivots, rest = parent.rest, order = pivots + rest;
    static thread_local std::vector<Run> runs;
    runs.clear();
    for (int i = 0; i < count; ++i) {
        const int at = local[rows[i]];
        if (!runs.empty() && runs.back().at + runs.back().count == at && at != pivots)
            ++runs.back().count;
        else
            runs.push_back({i, 1, at});
    }
    for (std::size_t c = 0; c < runs.size(); ++c)
        for (int k = 0; k < runs[c].count; ++k) {
            const double* source = contribution + static_cast<std::int64_t>(count) * (runs[c].i + k);
            const int at = runs[c].at + k;
            // Addressed by the row's position in the front.
            double* target = at < pivots
                                 ? parent.panel + static_cast<std::int64_t>(order) * at
                                 : parent.schur + static_cast<std::int64_t>(rest) * (at - pivots) - pivots;
            if (parent.right) {
                double* above =
                    at < pivots ? target : parent.right + static_cast<std::int64_t>(pivots) * (at - pivots);
                for (const Run& run : runs)
                    add((run.at < pivots ? above : target) + run.at, source + run.i, run.count);
            } else {
                add(target + at, source + runs[c].i + k, runs[c].count - k);
                for (std::size_t r = c + 1; r < runs.size(); ++r)
                    add(target + runs[r].at, source + runs[r].i, runs[r].count);
            }
        }
}
