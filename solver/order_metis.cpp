// SPDX-License-Identifier: BSD-3-Clause
// Karypis, Kumar, "A fast and high quality multilevel scheme for partitioning irregular graphs", SIAM J. Sci.
// Comput. 20 (1998).
#include "order.h"
#include "process_state.h"

#include <metis.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>

namespace {

// What METIS gets to see: it divides by numbers of edges and is slow where a vertex touches nearly all
// others. Vertices without a neighbour come first in the order, those with very many last, as in AMD.
struct Core
{
    std::vector<std::int32_t> before, vertex, after;
    std::vector<idx_t> start, neighbour, weight;
};

Core coreOf(const Graph& graph)
{
    Core core;
    const double many = std::max(16.0, 10.0 * std::sqrt(static_cast<double>(graph.n)));
    const auto dense = [&](std::int32_t v) { return static_cast<double>(graph.degree(v)) > many; };
    std::vector<idx_t> number(graph.n, -1);
    for (std::int32_t v = 0; v < graph.n; ++v) {
        const auto neighbours = graph.neighbour.begin();
        if (dense(v))
            core.after.push_back(v);
        else if (std::all_of(neighbours + graph.start[v], neighbours + graph.start[v + 1], dense))
            core.before.push_back(v);
        else {
            number[v] = static_cast<idx_t>(core.vertex.size());
            core.vertex.push_back(v);
        }
    }
    core.start.push_back(0);
    for (std::int32_t v : core.vertex) {
        for (std::int64_t p = graph.start[v]; p < graph.start[v + 1]; ++p)
            if (number[graph.neighbour[p]] >= 0)
                core.neighbour.push_back(number[graph.neighbour[p]]);
        core.start.push_back(static_cast<idx_t>(core.neighbour.size()));
        core.weight.push_back(graph.weight(v));
    }
    return core;
}

} // namespace

bool metisTakes(std::int64_t edges)
{
    return edges <= std::numeric_limits<idx_t>::max();
}

std::vector<std::int32_t> metisOrder(const Graph& graph)
{
    Core core = coreOf(graph);
    idx_t n = static_cast<idx_t>(core.vertex.size());
    std::vector<idx_t> order(n), place(n);
    if (n > 0) {
        idx_t options[METIS_NOPTIONS];
        METIS_SetDefaultOptions(options);
        // The graph comes compressed. Where that made it much smaller there is time for better separators.
        options[METIS_OPTION_COMPRESS] = 0;
        options[METIS_OPTION_NSEPS] = 1.5 * graph.n < static_cast<double>(graph.member.size()) ? 2 : 1;
        const ProcessState kept;
        const int status = METIS_NodeND(&n, core.start.data(), core.neighbour.data(), core.weight.data(),
                                        options, order.data(), place.data());
        if (status == METIS_ERROR_MEMORY)
            throw std::bad_alloc();
        if (status != METIS_OK)
            throw std::runtime_error("METIS found no order of elimination");
    }
    std::vector<std::int32_t> result = std::move(core.before);
    for (idx_t k : order)
        result.push_back(core.vertex[k]);
    result.insert(result.end(), core.after.begin(), core.after.end());
    return result;
}
