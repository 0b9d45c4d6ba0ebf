// SPDX-License-Identifier: BSD-3-Clause
#include "extend_add.h"

#include "dense.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Rows i ... i + count - 1 of the child lie next to each other in the parent, from position `at` on.
struct Run
{
    int i, count, at;
};

// Below this number of entries a call costs more than it adds.
constexpr int smallBlock = 64;

void addBlock(int m, int n, double* to, int ldTo, const double* from, int ldFrom)
{
    if (m * static_cast<std::int64_t>(n) >= smallBlock) {
        dense::addRectangle(m, n, to, ldTo, from, ldFrom);
        return;
    }
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i)
            to[i + static_cast<std::int64_t>(ldTo) * j] += from[i + static_cast<std::int64_t>(ldFrom) * j];
}

} // namespace

void extendAdd(Part part, const FrontStorage& parent, const int* local, const int* rows, int count,
               const double* contribution)
{
    const int pivots = parent.pivots, rest = parent.rest, order = pivots + rest;
    static thread_local std::vector<Run> runs;
    runs.clear();
    std::size_t eliminated = 0; // runs among the pivots; none crosses their border
    for (int i = 0; i < count; ++i) {
        const int at = local[rows[i]];
        if (!runs.empty() && runs.back().at + runs.back().count == at && at != pivots)
            ++runs.back().count;
        else
            runs.push_back({i, 1, at});
        if (at < pivots)
            eliminated = runs.size();
    }

    const auto source = [&](const Run& r, const Run& c) {
        return contribution + r.i + static_cast<std::int64_t>(count) * c.i;
    };
    const bool symmetric = !parent.right;
    const std::size_t begin = part == Part::factor ? 0 : eliminated;
    const std::size_t end = part == Part::factor ? eliminated : runs.size();
    for (std::size_t c = begin; c < end; ++c) {
        const Run& column = runs[c];
        const int ld = part == Part::factor ? order : rest;
        double* target = part == Part::factor
                             ? parent.panel + static_cast<std::int64_t>(order) * column.at
                             : parent.schur + static_cast<std::int64_t>(rest) * (column.at - pivots) - pivots;
        if (symmetric)
            dense::addTriangle(column.count, target + column.at, ld, source(column, column), count);
        for (std::size_t r = symmetric ? c + 1 : begin; r < runs.size(); ++r)
            addBlock(runs[r].count, column.count, target + runs[r].at, ld, source(runs[r], column), count);
    }
    if (symmetric || part == Part::schur)
        return;
    for (std::size_t c = eliminated; c < runs.size(); ++c)
        for (std::size_t r = 0; r < eliminated; ++r)
            addBlock(runs[r].count, runs[c].count,
                     parent.right + runs[r].at + static_cast<std::int64_t>(pivots) * (runs[c].at - pivots),
                     pivots, source(runs[r], runs[c]), count);
}
