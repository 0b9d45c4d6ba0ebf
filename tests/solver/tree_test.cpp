// SPDX-License-Identifier: BSD-3-Clause
// Graph, elimination tree and column counts beside an elimination done entry by entry.
#include "patterns.h"
#include "random.h"
#include "tree.h"

#include <gtest/gtest.h>

using namespace support;

namespace {

constexpr int rounds = 1000;

std::set<std::int32_t> closedNeighbourhood(const Edges& edges, std::int32_t i)
{
    std::set<std::int32_t> all(edges.column.begin() + edges.start[i],
                               edges.column.begin() + edges.start[i + 1]);
    all.insert(i);
    return all;
}

// The unknowns in the order of the vertices.
std::vector<std::int32_t> expanded(const Graph& graph, const std::vector<std::int32_t>& vertices)
{
    std::vector<std::int32_t> order;
    for (std::int32_t v : vertices)
        order.insert(order.end(), graph.member.begin() + graph.first[v],
                     graph.member.begin() + graph.first[v + 1]);
    return order;
}

TEST(Graph, PutsUnknownsOfEqualStructureTogether)
{
    std::mt19937_64 random = generator(1);
    for (int round = 0; round < rounds; ++round) {
        const Edges edges = anyPattern(random);
        std::vector<char> label(random() % 2 ? edges.n : 0);
        for (char& l : label)
            l = random() % 4 == 0;
        const Graph graph = compressedGraph(edges.pattern(), label);
        std::vector<std::int32_t> vertexOf(edges.n, -1);
        for (std::int32_t v = 0; v < graph.n; ++v)
            for (std::int32_t m = graph.first[v]; m < graph.first[v + 1]; ++m)
                vertexOf[graph.member[m]] = v;
        for (std::int32_t i = 0; i < edges.n; ++i)
            for (std::int32_t j = 0; j < edges.n; ++j) {
                const bool same = closedNeighbourhood(edges, i) == closedNeighbourhood(edges, j) &&
                                  (label.empty() || label[i] == label[j]);
                ASSERT_EQ(vertexOf[i] == vertexOf[j], same) << "unknowns " << i << ", " << j;
                const std::int32_t v = vertexOf[i], u = vertexOf[j];
                const auto first = graph.neighbour.begin() + graph.start[v],
                           last = graph.neighbour.begin() + graph.start[v + 1];
                ASSERT_EQ(std::count(first, last, u), v != u && edges.has(i, j));
            }
    }
}

TEST(Graph, HasOneVertexForTheThreeDisplacementsOfANode)
{
    const Edges edges(3 * 125, elasticity(5, 3));
    EXPECT_EQ(compressedGraph(edges.pattern(), {}).n, 125);
    EXPECT_EQ(plainGraph(edges.pattern()).n, 375);
}

TEST(Tree, ParentsAndCountsAreThoseOfTheElimination)
{
    std::mt19937_64 random = generator(2);
    for (int round = 0; round < rounds; ++round) {
        const Edges edges = anyPattern(random);
        const Graph graph = random() % 2 ? compressedGraph(edges.pattern(), {}) : plainGraph(edges.pattern());
        const Elimination e = eliminate(graph, anyOrder(graph.n, random));
        const std::vector<std::int32_t> unknowns = expanded(graph, e.order);
        const auto columns = columnsOf(edges, unknowns);
        std::vector<std::int32_t> place(edges.n); // of the vertex of an unknown
        for (std::int32_t k = 0; k < graph.n; ++k)
            for (std::int32_t m = graph.first[e.order[k]]; m < graph.first[e.order[k] + 1]; ++m)
                place[graph.member[m]] = k;
        std::int64_t entries = 0;
        for (const auto& column : columns)
            entries += 1 + static_cast<std::int64_t>(column.size());
        ASSERT_EQ(e.entries, entries);
        for (std::int32_t k = 0, first = 0; k < graph.n; first += graph.weight(e.order[k++])) {
            ASSERT_EQ(e.place[e.order[k]], k);
            ASSERT_EQ(e.count[k], 1 + static_cast<std::int32_t>(columns[first].size()));
            std::int32_t parent = graph.n;
            for (std::int32_t i : columns[first])
                if (place[i] != k)
                    parent = std::min(parent, place[i]);
            ASSERT_EQ(e.parent[k], parent == graph.n ? -1 : parent);
        }
    }
}

TEST(Tree, AnOrderIsKeptUpToItsPostorder)
{
    std::mt19937_64 random = generator(3);
    for (int round = 0; round < rounds; ++round) {
        const Edges edges = anyPattern(random);
        const std::vector<std::int32_t> order = anyOrder(edges.n, random);
        const Elimination e = eliminate(plainGraph(edges.pattern()), order);
        // the same columns for the same unknowns
        const auto asked = columnsOf(edges, order), done = columnsOf(edges, e.order);
        for (std::int32_t k = 0; k < edges.n; ++k)
            ASSERT_EQ(asked[k], done[e.place[order[k]]]);
        // subtrees stand together
        std::vector<std::int32_t> low(edges.n), size(edges.n, 1);
        std::iota(low.begin(), low.end(), 0);
        for (std::int32_t k = 0; k < edges.n; ++k) {
            ASSERT_EQ(k - low[k] + 1, size[k]);
            if (e.parent[k] >= 0) {
                ASSERT_GT(e.parent[k], k);
                low[e.parent[k]] = std::min(low[e.parent[k]], low[k]);
                size[e.parent[k]] += size[k];
            }
        }
    }
}

TEST(Tree, LongChainsAreClimbedWithoutRecursion)
{
    const std::int32_t n = 300000;
    const Edges edges(n, chain(n));
    std::vector<std::int32_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    const Elimination e = eliminate(plainGraph(edges.pattern()), order);
    EXPECT_EQ(e.entries, 2 * static_cast<std::int64_t>(n) - 1);
    EXPECT_EQ(e.order, order);
}

} // namespace
