// SPDX-License-Identifier: BSD-3-Clause
// Amestoy, Davis, Duff, "An approximate minimum degree ordering algorithm", SIAM J. Matrix Anal. Appl. 17
// (1996).
#include "order.h"

#include <amd.h>

#include <new>
#include <stdexcept>

namespace {

int run(int n, const int* start, const int* column, int* order)
{
    return amd_order(n, start, column, order, nullptr, nullptr);
}

int run(SuiteSparse_long n, const SuiteSparse_long* start, const SuiteSparse_long* column,
        SuiteSparse_long* order)
{
    return static_cast<int>(amd_l_order(n, start, column, order, nullptr, nullptr));
}

// The unknowns in AMD's order, in integers of its choice.
template <typename Index>
std::vector<Index> unknowns(const Pattern& pattern)
{
    const std::vector<Index> start(pattern.start, pattern.start + pattern.n + 1);
    const std::vector<Index> column(pattern.column, pattern.column + pattern.start[pattern.n]);
    std::vector<Index> order(static_cast<std::size_t>(pattern.n) + 1); // AMD refuses a null pointer
    const int status = run(static_cast<Index>(pattern.n), start.data(),
                           column.empty() ? order.data() : column.data(), order.data());
    if (status == AMD_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (status != AMD_OK && status != AMD_OK_BUT_JUMBLED)
        throw std::runtime_error("AMD found no order of elimination");
    order.pop_back();
    return order;
}

template <typename Index>
std::vector<std::int32_t> vertices(const std::vector<Index>& unknowns, const Graph& graph)
{
    std::vector<std::int32_t> vertexAt(unknowns.size()), order;
    for (std::int32_t v = 0; v < graph.n; ++v)
        for (std::int32_t m = graph.first[v]; m < graph.first[v + 1]; ++m)
            vertexAt[graph.member[m]] = v;
    order.reserve(graph.n);
    std::vector<char> placed(graph.n, 0);
    for (const Index i : unknowns)
        if (!placed[vertexAt[i]]) {
            placed[vertexAt[i]] = 1;
            order.push_back(vertexAt[i]);
        }
    return order;
}

} // namespace

std::vector<std::int32_t> amdOrder(const Pattern& pattern, const Graph& graph, double largest)
{
    // AMD works in 1.2 times the entries and some vectors.
    const double places = 1.2 * static_cast<double>(pattern.start[pattern.n]) + 10.0 * pattern.n;
    if (places <= largest)
        return vertices(unknowns<int>(pattern), graph);
    return vertices(unknowns<SuiteSparse_long>(pattern), graph);
}
