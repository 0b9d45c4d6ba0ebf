// SPDX-License-Identifier: BSD-3-Clause
// Symmetric patterns to analyse, and what elimination makes of them, entry by entry.
#pragma once

#include "pattern.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Owns the arrays of a pattern.
struct Edges
{
    std::int32_t n;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> column;

    Edges(std::int32_t order, const std::set<std::pair<std::int32_t, std::int32_t>>& edges,
          bool diagonal = false)
        : n(order), start(static_cast<std::size_t>(order) + 1, 0)
    {
        std::vector<std::vector<std::int32_t>> rows(n);
        for (const auto& [i, j] : edges)
            if (i != j) {
                rows[i].push_back(j);
                rows[j].push_back(i);
            }
        for (std::int32_t i = 0; i < n; ++i) {
            if (diagonal)
                rows[i].push_back(i);
            column.insert(column.end(), rows[i].begin(), rows[i].end());
            start[i + 1] = static_cast<std::int64_t>(column.size());
        }
    }
    Pattern pattern() const { return {n, start.data(), column.data()}; }
    bool has(std::int32_t i, std::int32_t j) const
    {
        return std::find(column.begin() + start[i], column.begin() + start[i + 1], j) !=
               column.begin() + start[i + 1];
    }
};

using EdgeSet = std::set<std::pair<std::int32_t, std::int32_t>>;

inline EdgeSet chain(std::int32_t n)
{
    EdgeSet edges;
    for (std::int32_t i = 1; i < n; ++i)
        edges.insert({i - 1, i});
    return edges;
}

inline EdgeSet star(std::int32_t n, std::int32_t centre)
{
    EdgeSet edges;
    for (std::int32_t i = 0; i < n; ++i)
        if (i != centre)
            edges.insert({std::min(i, centre), std::max(i, centre)});
    return edges;
}

// Nodes of a grid of m in each of three directions, all neighbours of a cell, `width` unknowns a node.
inline EdgeSet elasticity(std::int32_t m, std::int32_t width)
{
    EdgeSet edges;
    const auto node = [m](std::int32_t x, std::int32_t y, std::int32_t z) { return (x * m + y) * m + z; };
    for (std::int32_t x = 0; x < m; ++x)
        for (std::int32_t y = 0; y < m; ++y)
            for (std::int32_t z = 0; z < m; ++z)
                for (std::int32_t other = 0; other < 27; ++other) {
                    const std::int32_t u = x + other / 9 - 1, v = y + other / 3 % 3 - 1,
                                       w = z + other % 3 - 1;
                    if (u < 0 || v < 0 || w < 0 || u >= m || v >= m || w >= m)
                        continue;
                    for (std::int32_t a = 0; a < width; ++a)
                        for (std::int32_t b = 0; b < width; ++b) {
                            const std::int32_t i = width * node(x, y, z) + a, j = width * node(u, v, w) + b;
                            if (i < j)
                                edges.insert({i, j});
                        }
                }
    return edges;
}

// One of many kinds: random of any density, forest, dense, none at all, arrow, chain, parts that do not
// touch, several unknowns a node; at most 60 unknowns in an order of their own.
inline Edges anyPattern(std::mt19937_64& random)
{
    std::int32_t n = 1 + static_cast<std::int32_t>(random() % 60);
    EdgeSet edges;
    const auto below = [&](std::int32_t bound) { return static_cast<std::int32_t>(random() % bound); };
    const auto scatter = [&](std::int32_t count, std::int32_t low, std::int32_t high) {
        for (std::int32_t e = 0; e < count && high > low; ++e) {
            const std::int32_t i = low + below(high - low), j = low + below(high - low);
            if (i != j)
                edges.insert({std::min(i, j), std::max(i, j)});
        }
    };
    switch (random() % 9) {
    case 0:
        scatter(n / 2, 0, n);
        break;
    case 1:
        scatter(3 * n, 0, n);
        break;
    case 2:
        scatter(below(n * n), 0, n);
        break;
    case 3: // a forest
        for (std::int32_t i = 1; i < n; ++i)
            if (random() % 8)
                edges.insert({below(i), i});
        break;
    case 4: // dense
        for (std::int32_t i = 0; i < n; ++i)
            for (std::int32_t j = 0; j < i; ++j)
                edges.insert({j, i});
        break;
    case 5:
        edges = random() % 2 ? star(n, below(n)) : EdgeSet();
        break;
    case 6:
        edges = chain(n);
        break;
    case 7: // two parts
        scatter(n, 0, n / 2);
        scatter(n, n / 2, n);
        break;
    case 8: // three unknowns a node
        n = std::max(n / 3, 1);
        scatter(2 * n, 0, n);
        EdgeSet nodes = std::exchange(edges, {});
        for (std::int32_t i = 0; i < n; ++i)
            nodes.insert({i, i});
        for (const auto& [i, j] : nodes)
            for (std::int32_t a = 0; a < 9; ++a)
                if (i != j || a / 3 < a % 3)
                    edges.insert({3 * i + a / 3, 3 * j + a % 3});
        n *= 3;
        break;
    }
    std::vector<std::int32_t> name(n);
    std::iota(name.begin(), name.end(), 0);
    std::shuffle(name.begin(), name.end(), random);
    EdgeSet named;
    for (const auto& [i, j] : edges)
        named.insert({name[i], name[j]});
    return Edges(n, named, random() % 2);
}

inline std::vector<std::int32_t> anyOrder(std::int32_t n, std::mt19937_64& random)
{
    std::vector<std::int32_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    return order;
}

// The factor's columns in an order of elimination, one unknown after the other: entry k holds the unknowns
// below the diagonal of the column of unknown order[k].
template <typename Order>
std::vector<std::set<std::int32_t>> columnsOf(const Edges& edges, const Order& order)
{
    std::vector<std::set<std::int32_t>> neighbours(edges.n), columns(edges.n);
    for (std::int32_t i = 0; i < edges.n; ++i)
        for (std::int64_t p = edges.start[i]; p < edges.start[i + 1]; ++p)
            if (edges.column[p] != i)
                neighbours[i].insert(edges.column[p]);
    for (std::int32_t k = 0; k < edges.n; ++k) {
        const std::set<std::int32_t> column = columns[k] = neighbours[order[k]];
        for (std::int32_t i : column) {
            neighbours[i].insert(column.begin(), column.end());
            neighbours[i].erase(i);
            neighbours[i].erase(order[k]);
        }
    }
    return columns;
}
