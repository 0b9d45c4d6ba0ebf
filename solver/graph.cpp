// SPDX-License-Identifier: BSD-3-Clause
#include "graph.h"

#include <algorithm>
#include <numeric>

namespace {

// Sums of these tell neighbourhoods apart, whatever the order of their members.
std::uint64_t mixed(std::int32_t unknown)
{
    std::uint64_t x = (static_cast<std::uint64_t>(unknown) + 1) * 0x9e3779b97f4a7c15u;
    x = (x ^ (x >> 32)) * 0xd6e8feb86659fd93u;
    return x ^ (x >> 32);
}

// The vertex of every unknown; vertices are numbered by their first unknowns.
class Classes
{
public:
    Classes(const Pattern& pattern, const std::vector<char>& label)
        : pattern_(pattern), label_(label), sum_(pattern.n), degree_(pattern.n), seen_(pattern.n, -1),
          vertexOf_(pattern.n, -1)
    {
        for (std::int32_t i = 0; i < pattern.n; ++i) {
            sum_[i] = mixed(i);
            for (std::int64_t p = pattern.start[i]; p < pattern.start[i + 1]; ++p)
                if (pattern.column[p] != i) {
                    sum_[i] += mixed(pattern.column[p]);
                    ++degree_[i];
                }
        }
        for (std::int32_t i = 0; i < pattern.n; ++i)
            if (vertexOf_[i] < 0)
                collect(i);
    }

    std::vector<std::int32_t> take() { return std::move(vertexOf_); }

private:
    // Unknowns of equal structure are neighbours: those of i are the only candidates.
    void collect(std::int32_t i)
    {
        vertexOf_[i] = count_;
        for (std::int64_t p = pattern_.start[i]; p < pattern_.start[i + 1]; ++p) {
            const std::int32_t j = pattern_.column[p];
            if (vertexOf_[j] < 0 && sum_[j] == sum_[i] && degree_[j] == degree_[i] &&
                (label_.empty() || label_[j] == label_[i]) && sameNeighbours(i, j))
                vertexOf_[j] = count_;
        }
        ++count_;
    }

    bool sameNeighbours(std::int32_t i, std::int32_t j)
    {
        if (seen_[i] != i) {
            seen_[i] = i;
            for (std::int64_t p = pattern_.start[i]; p < pattern_.start[i + 1]; ++p)
                seen_[pattern_.column[p]] = i;
        }
        return std::all_of(pattern_.column + pattern_.start[j], pattern_.column + pattern_.start[j + 1],
                           [&](std::int32_t k) { return seen_[k] == i; });
    }

    const Pattern& pattern_;
    const std::vector<char>& label_;
    std::vector<std::uint64_t> sum_;
    std::vector<std::int64_t> degree_;
    std::vector<std::int32_t> seen_; // seen_[k] == i: k is i or a neighbour of it
    std::vector<std::int32_t> vertexOf_;
    std::int32_t count_ = 0;
};

// Vertices renumbered so that those in `kept` are one, the first of theirs.
std::int32_t joinKept(const std::vector<std::int32_t>& kept, std::vector<std::int32_t>& vertexOf)
{
    constexpr std::int32_t none = -1;
    std::vector<std::int32_t> number(vertexOf.size(), none);
    for (std::int32_t i : kept)
        vertexOf[i] = vertexOf[kept.front()];
    std::int32_t count = 0;
    for (std::int32_t& v : vertexOf) {
        if (number[v] == none)
            number[v] = count++;
        v = number[v];
    }
    return count;
}

Graph graphOf(const Pattern& pattern, std::vector<std::int32_t> vertexOf,
              const std::vector<std::int32_t>& kept)
{
    const std::int32_t count = joinKept(kept, vertexOf);
    Graph graph;
    graph.n = count;
    graph.kept = kept.empty() ? -1 : vertexOf[kept.front()];
    graph.first.assign(static_cast<std::size_t>(count) + 1, 0);
    for (std::int32_t v : vertexOf)
        ++graph.first[v + 1];
    std::partial_sum(graph.first.begin(), graph.first.end(), graph.first.begin());
    graph.member.resize(pattern.n);
    std::vector<std::int32_t> next(graph.first.begin(), graph.first.end() - 1);
    for (std::int32_t i = 0; i < pattern.n; ++i)
        graph.member[next[vertexOf[i]]++] = i;

    // The neighbours of one member are those of all, but for what is kept.
    std::vector<std::int32_t> seen(count, -1);
    graph.start.assign(1, 0);
    graph.start.reserve(static_cast<std::size_t>(count) + 1);
    for (std::int32_t v = 0; v < count; ++v) {
        seen[v] = v;
        const std::int32_t members = v == graph.kept ? graph.weight(v) : 1;
        for (std::int32_t k = 0; k < members; ++k) {
            const std::int32_t i = graph.member[graph.first[v] + k];
            for (std::int64_t p = pattern.start[i]; p < pattern.start[i + 1]; ++p) {
                const std::int32_t u = vertexOf[pattern.column[p]];
                if (seen[u] != v)
                    graph.neighbour.push_back(u);
                seen[u] = v;
            }
        }
        graph.start.push_back(static_cast<std::int64_t>(graph.neighbour.size()));
    }
    return graph;
}

} // namespace

Graph compressedGraph(const Pattern& pattern, const std::vector<char>& label,
                      const std::vector<std::int32_t>& kept)
{
    if (kept.empty())
        return graphOf(pattern, Classes(pattern, label).take(), kept);
    std::vector<char> apart = label; // what is kept is like nothing else
    apart.resize(pattern.n, 0);
    for (std::int32_t i : kept)
        apart[i] = 2;
    return graphOf(pattern, Classes(pattern, apart).take(), kept);
}

Graph plainGraph(const Pattern& pattern, const std::vector<std::int32_t>& kept)
{
    std::vector<std::int32_t> vertexOf(pattern.n);
    std::iota(vertexOf.begin(), vertexOf.end(), 0);
    return graphOf(pattern, std::move(vertexOf), kept);
}
