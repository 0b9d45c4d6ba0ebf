// SPDX-License-Identifier: BSD-3-Clause
// The elimination tree of a graph in an order: the parent of a vertex is the first that is eliminated after
// it among those that its elimination touches.
#pragma once

#include "graph.h"

#include <cstdint>
#include <vector>

// But in `order` and `place`, vertices go by their places in the order.
struct Elimination
{
    std::vector<std::int32_t> order;  // the vertex at each place
    std::vector<std::int32_t> place;  // of each vertex
    std::vector<std::int32_t> parent; // -1: a root
    std::vector<std::int32_t>
        count;                // rows of a vertex's first column in the factor, its own unknowns included
    std::int64_t entries = 0; // of the factor on and below the diagonal
};

// Eliminates in the order given, or rather in a postorder of its tree, which gives the same factor but for
// the names of its rows and columns. All of it takes time nearly linear in the size of the graph.
Elimination eliminate(const Graph& graph, std::vector<std::int32_t> order);

// Children before parents, the vertices of a subtree one after the other, children in their given order.
std::vector<std::int32_t> postorder(const std::vector<std::int32_t>& parent);
