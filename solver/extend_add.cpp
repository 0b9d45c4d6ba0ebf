// SPDX-License-Identifier: BSD-3-Clause
#include "extend_add.h"

#include "dense.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Rows i ... i + count - 1 of the child. In a run they lie next to each other in the parent.
struct Segment
{
    int i, count;
    bool run;
};

// Shorter runs are added entry by entry: neighbours of them make one segment together.
constexpr int longRun = 12;
// Below this number of entries a call costs more than it adds.
constexpr int smallBlock = 64;

// What a thread needs again and again.
struct Split
{
    std::vector<int> at; // position of every row of the child in the parent's front
    std::vector<Segment> segments;
    std::size_t eliminated = 0; // segments among the pivots

    void make(const int* local, const int* rows, int count, int pivots)
    {
        at.resize(count);
        for (int i = 0; i < count; ++i)
            at[i] = local[rows[i]];
        segments.clear();
        eliminated = 0;
        for (int i = 0, end = 1; i < count; i = end++) {
            while (end < count && at[end] == at[end - 1] + 1 && at[end] != pivots)
                ++end;
            const bool run = end - i >= longRun;
            const bool border = segments.empty() || (at[i] >= pivots && at[i - 1] < pivots);
            if (run || border || segments.back().run)
                segments.push_back({i, end - i, run});
            else
                segments.back().count += end - i;
            if (at[i] < pivots)
                eliminated = segments.size();
        }
    }
};

// Where the columns of a part of the parent's front start: column j, row i at data[i + ld*j]
struct Target
{
    double* data;
    std::int64_t ld;
};

} // namespace

void extendAdd(Part part, const FrontStorage& parent, const int* local, const int* rows, int count,
               const double* contribution)
{
    static thread_local Split split;
    const int pivots = parent.pivots, rest = parent.rest;
    split.make(local, rows, count, pivots);
    const int* at = split.at.data();

    const auto addTriangle = [&](const Segment& s, const Target& target) {
        const double* from = contribution + s.i + static_cast<std::int64_t>(count) * s.i;
        if (s.run) {
            dense::addTriangle(s.count, target.data + at[s.i] * (target.ld + 1), static_cast<int>(target.ld),
                               from, count);
            return;
        }
        for (int j = 0; j < s.count; ++j, from += count) {
            double* to = target.data + target.ld * at[s.i + j];
            for (int i = j; i < s.count; ++i)
                to[at[s.i + i]] += from[i];
        }
    };
    const auto addRectangle = [&](const Segment& r, const Segment& c, const Target& target) {
        const double* from = contribution + r.i + static_cast<std::int64_t>(count) * c.i;
        if (r.run && c.run && r.count * static_cast<std::int64_t>(c.count) >= smallBlock) {
            dense::addRectangle(r.count, c.count, target.data + at[r.i] + target.ld * at[c.i],
                                static_cast<int>(target.ld), from, count);
            return;
        }
        for (int j = 0; j < c.count; ++j, from += count) {
            double* to = target.data + target.ld * at[c.i + j];
            if (r.run)
                for (int i = 0; i < r.count; ++i)
                    to[at[r.i] + i] += from[i];
            else
                for (int i = 0; i < r.count; ++i)
                    to[at[r.i + i]] += from[i];
        }
    };

    const std::vector<Segment>& segments = split.segments;
    const bool symmetric = !parent.right;
    const bool factor = part == Part::factor;
    const Target target = factor ? Target{parent.panel, pivots + rest}
                                 : Target{parent.schur - pivots * (std::int64_t{rest} + 1), rest};
    const std::size_t begin = factor ? 0 : split.eliminated;
    const std::size_t end = factor ? split.eliminated : segments.size();
    for (std::size_t c = begin; c < end; ++c) {
        if (symmetric)
            addTriangle(segments[c], target);
        for (std::size_t r = symmetric ? c + 1 : begin; r < segments.size(); ++r)
            addRectangle(segments[r], segments[c], target);
    }
    if (symmetric || !factor)
        return;
    const Target right{parent.right - std::int64_t{pivots} * pivots, pivots};
    for (std::size_t c = end; c < segments.size(); ++c)
        for (std::size_t r = 0; r < end; ++r)
            addRectangle(segments[r], segments[c], right);
}
