// SPDX-License-Identifier: BSD-3-Clause
// The graph of a symmetric pattern, with unknowns of equal structure taken together.
#pragma once

#include "pattern.h"

#include <cstdint>
#include <vector>

// Vertex v stands for the unknowns member[first[v]] to member[first[v + 1] - 1], ascending. Its neighbours do
// not contain itself.
struct Graph
{
    std::int32_t n = 0;
    std::vector<std::int64_t> start; // n + 1
    std::vector<std::int32_t> neighbour;
    std::vector<std::int32_t> first; // n + 1
    std::vector<std::int32_t> member;

    std::int32_t kept = -1; // the vertex of the unknowns that are kept, whatever their neighbours

    std::int32_t weight(std::int32_t v) const { return first[v + 1] - first[v]; }
    std::int64_t degree(std::int32_t v) const { return start[v + 1] - start[v]; }
};

// One vertex for all unknowns that have the same neighbours, each other included, and the same label: in any
// good order they follow one another, and the three displacements of a mesh node make a graph of a third of
// the vertices and a ninth of the edges.
// Those in `kept` make up one vertex, with the neighbours of all.
Graph compressedGraph(const Pattern& pattern, const std::vector<char>& label,
                      const std::vector<std::int32_t>& kept = {});

// A vertex for every unknown, and one for those in `kept`.
Graph plainGraph(const Pattern& pattern, const std::vector<std::int32_t>& kept = {});
