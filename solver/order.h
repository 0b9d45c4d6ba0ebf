// SPDX-License-Identifier: BSD-3-Clause
// Orders of elimination that keep the factor sparse: order[k] is the vertex eliminated k-th. They depend on
// the graph alone.
#pragma once

#include "graph.h"

#include <cstdint>
#include <vector>

// Nested dissection by METIS. Its integers have 32 bits: false for a graph with more edges than they count.
bool metisTakes(const Graph& graph);
std::vector<std::int32_t> metisOrder(const Graph& graph);

// Approximate minimum degree by AMD, of the graph with a vertex for every unknown: AMD knows no weights. In
// the order returned each vertex of `graph` has the place of its first unknown.
std::vector<std::int32_t> amdOrder(const Pattern& pattern, const Graph& graph);
