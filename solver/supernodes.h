// SPDX-License-Identifier: BSD-3-Clause
// Which vertices are eliminated together in one dense front, and how the fronts hang together.
#pragma once

#include "tree.h"

#include <cstdint>
#include <vector>

struct Supernode
{
    std::int32_t parent; // -1: none
    std::int32_t pivots; // unknowns eliminated here
    std::int32_t order;  // rows of the front, pivots included
    std::int32_t end; // its vertices are those from the end of the one before to here, in Supernodes::order
};

struct Supernodes
{
    std::vector<Supernode> list;      // children before parents, subtrees one after the other
    std::vector<std::int32_t> vertex; // of the graph, in the final order of elimination
};

// Vertices of nested columns share a front, and so do a front and its parent where the zeros that this stores
// cost less than another front. Children stand in the order that needs the least memory for waiting
// contributions.
Supernodes supernodes(const Graph& graph, const Elimination& elimination);
