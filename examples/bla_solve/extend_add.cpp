// SPDX-License-Identifier: BSD-3-Clause
#include "extend_add.h"

#include "dense.h"

namespace {

// Rows i ... i + count - 1 of the child lie next to each other in the parent, from position `at` on.
struct Run
{
    int i, count, at;
};

} // namespace

void extendAdd(const Front& parent, double* panel, double* schur, const int* local, const int* rows,
               int count, const double* contribution)
{
    const int pivots = parent.pivots, order = parent.order, rest = parent.rest();
    static thread_local std::vector<Run> runs;
    runs.clear();
    for (int i = 0; i < count; ++i) {
        const int at = local[rows[i]];
        if (!runs.empty() && runs.back().at + runs.back().count == at && at != pivots)
            ++runs.back().count;
        else
            runs.push_back({i, 1, at});
    }
    for (std::size_t c = 0; c < runs.size(); ++c) {
        const Run& columns = runs[c];
        for (int k = 0; k < columns.count; ++k) {
            const double* source = contribution + static_cast<std::int64_t>(count) * (columns.i + k);
            const int at = columns.at + k;
            // Both targets are addressed by the row's position in the front.
            double* target = at < pivots ? panel + static_cast<std::int64_t>(order) * at
                                         : schur + static_cast<std::int64_t>(rest) * (at - pivots) - pivots;
            for (int i = k; i < columns.count; ++i)
                target[columns.at + i] += source[columns.i + i];
            for (std::size_t r = c + 1; r < runs.size(); ++r) {
                const double* from = source + runs[r].i;
                double* to = target + runs[r].at;
                for (int i = 0; i < runs[r].count; ++i)
                    to[i] += from[i];
            }
        }
    }
}
