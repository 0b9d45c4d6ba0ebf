// SPDX-License-Identifier: BSD-3-Clause
// Orders of elimination that keep the factor sparse: order[k] is the vertex eliminated k-th. They depend on
// the graph alone.
#pragma once

#include "graph.h"

#include <cstdint>
#include <limits>
#include <vector>

// Nested dissection by METIS, whose integers have 32 bits.
bool metisTakes(std::int64_t edges);
std::vector<std::int32_t> metisOrder(const Graph& graph);

// Approximate minimum degree by AMD, of the graph with a vertex for every unknown: AMD knows no weights. In
// the order returned each vertex of `graph` has the place of its first unknown. What takes numbers above
// `largest` is done in 64 bits.
std::vector<std::int32_t> amdOrder(const Pattern& pattern, const Graph& graph,
                                   double largest = std::numeric_limits<int>::max());
