// SPDX-License-Identifier: BSD-3-Clause
#include "analysis.h"

#include "order.h"
#include "storage.h"
#include "supernodes.h"
#include "task_graph.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace {

constexpr std::int32_t bothOrders = 30000;  // up to here two orders cost less than the better one saves
constexpr std::int32_t worthThreads = 1000; // from here on starting them costs less than they save

// The order, with every late vertex moved behind the last of its neighbours that are not late, and what is
// kept behind all.
std::vector<std::int32_t> postponed(const Graph& graph, std::vector<std::int32_t> order,
                                    const std::vector<char>& late)
{
    const auto isLate = [&](std::int32_t v) { return !late.empty() && late[graph.member[graph.first[v]]]; };
    std::vector<std::int32_t> place(graph.n), key(graph.n);
    for (std::int32_t k = 0; k < graph.n; ++k)
        place[order[k]] = k;
    for (std::int32_t v = 0; v < graph.n; ++v) {
        key[v] = place[v];
        if (isLate(v))
            for (std::int64_t p = graph.start[v]; p < graph.start[v + 1]; ++p)
                if (!isLate(graph.neighbour[p]))
                    key[v] = std::max(key[v], place[graph.neighbour[p]]);
    }
    if (graph.kept >= 0)
        key[graph.kept] = graph.n;
    std::stable_sort(order.begin(), order.end(), [&](std::int32_t x, std::int32_t y) {
        return key[x] != key[y] ? key[x] < key[y] : isLate(x) < isLate(y);
    });
    return order;
}

std::vector<std::int32_t> checkedOrder(std::int32_t n, const std::int32_t* order)
{
    std::vector<char> seen(n, 0);
    for (std::int32_t k = 0; k < n; ++k)
        if (!order || order[k] < 0 || order[k] >= n || seen[order[k]]++)
            throw std::invalid_argument("the order of elimination must name every unknown once");
    return std::vector<std::int32_t>(order, order + n);
}

// Of vertices, from one of unknowns.
std::vector<std::int32_t> givenOrder(const Graph& graph, const std::vector<std::int32_t>& order)
{
    std::vector<std::int32_t> vertexOf(order.size()), result;
    for (std::int32_t v = 0; v < graph.n; ++v)
        for (std::int32_t k = graph.first[v]; k < graph.first[v + 1]; ++k)
            vertexOf[graph.member[k]] = v;
    for (std::int32_t i : order)
        if (vertexOf[i] != graph.kept)
            result.push_back(vertexOf[i]);
    if (graph.kept >= 0)
        result.push_back(graph.kept);
    return result;
}

struct Chosen
{
    Graph graph;
    Elimination elimination;
    Ordering ordering;
};

Chosen choose(const Pattern& pattern, const std::vector<char>& late, const AnalysisOptions& options)
{
    if (options.ordering == Ordering::given) {
        Graph graph = plainGraph(pattern, options.kept);
        Elimination elimination = eliminate(graph, givenOrder(graph, checkedOrder(pattern.n, options.order)));
        return {std::move(graph), std::move(elimination), Ordering::given};
    }
    Chosen best{compressedGraph(pattern, late, options.kept), {}, Ordering::choose};
    const bool metis = options.ordering != Ordering::amd && metisTakes(best.graph.start.back());
    const bool amd = !metis || (options.ordering == Ordering::choose && pattern.n <= bothOrders);
    std::vector<std::pair<Ordering, Elimination>> candidates;
    if (metis)
        candidates.emplace_back(Ordering::metis, Elimination());
    if (amd)
        candidates.emplace_back(Ordering::amd, Elimination());
    const int threads = pattern.n < worthThreads ? 1 : options.threads;
    TaskGraph(static_cast<int>(candidates.size()), {}).execute(threads, [&](int c) {
        auto& [ordering, elimination] = candidates[c];
        std::vector<std::int32_t> order =
            ordering == Ordering::metis ? metisOrder(best.graph) : amdOrder(pattern, best.graph);
        elimination = eliminate(best.graph, postponed(best.graph, std::move(order), late));
    });
    const auto sparsest =
        std::min_element(candidates.begin(), candidates.end(),
                         [](const auto& x, const auto& y) { return x.second.entries < y.second.entries; });
    std::tie(best.ordering, best.elimination) = std::move(*sparsest);
    return best;
}

void numberUnknowns(const Graph& graph, const std::vector<std::int32_t>& vertices, Analysis& result)
{
    result.permutation.reserve(result.n);
    for (std::int32_t v : vertices)
        result.permutation.insert(result.permutation.end(), graph.member.begin() + graph.first[v],
                                  graph.member.begin() + graph.first[v + 1]);
    result.inverse.resize(result.n);
    for (int k = 0; k < result.n; ++k)
        result.inverse[result.permutation[k]] = k;
}

void layOut(const Supernodes& nodes, Analysis& result)
{
    int first = 0;
    std::int64_t rows = 0;
    for (const Supernode& node : nodes.list) {
        Front front{};
        front.first = first;
        front.pivots = node.pivots;
        front.order = node.order;
        front.parent = node.parent;
        front.rows = rows;
        front.panel = result.panelEntries;
        front.right = result.rightEntries;
        const std::int64_t pivots = front.pivots, rest = front.rest();
        first += front.pivots;
        rows += front.order;
        result.panelEntries += pivots * front.order;
        result.rightEntries += pivots * rest;
        result.lowerEntries += pivots * (pivots + 1) / 2 + pivots * rest;
        result.largestFront = std::max(result.largestFront, front.order);
        result.flops += front.flops();
        result.fronts.push_back(front);
    }
    for (auto front = result.fronts.rbegin(); front != result.fronts.rend(); ++front)
        front->depth = front->parent < 0 ? 0 : result.fronts[front->parent].depth + 1;
}

// A row is in the front of its own pivot and in all on the ways there from the fronts where its entries are
// pivots. Rows come in ascending order, so that each front's list does.
void listRows(const Graph& graph, const Supernodes& nodes, Analysis& result)
{
    const auto count = static_cast<std::int32_t>(nodes.list.size());
    result.rows.resize(count == 0 ? 0 : result.fronts.back().rows + result.fronts.back().order);
    std::vector<std::int32_t> frontOf(graph.n), last(count, -1);
    std::vector<std::int64_t> next(count);
    for (std::int32_t f = 0, k = 0; f < count; ++f) {
        next[f] = result.fronts[f].rows;
        for (; k < nodes.list[f].end; ++k)
            frontOf[nodes.vertex[k]] = f;
    }
    int row = 0;
    for (std::int32_t v : nodes.vertex) {
        const std::int32_t weight = graph.weight(v);
        const auto enter = [&](std::int32_t f) {
            last[f] = v;
            for (int i = 0; i < weight; ++i)
                result.rows[next[f]++] = row + i;
        };
        enter(frontOf[v]);
        for (std::int64_t p = graph.start[v]; p < graph.start[v + 1]; ++p)
            for (std::int32_t f = frontOf[graph.neighbour[p]]; f < frontOf[v] && last[f] != v;
                 f = nodes.list[f].parent)
                enter(f);
        row += weight;
    }
}

} // namespace

// A pivot with m rows below it: m multipliers, and m(m + 1)/2 entries updated by a product and a difference.
double Front::flops() const
{
    double sum = 0.0;
    for (double m = rest(); m < order; ++m)
        sum += m * (m + 2);
    return sum;
}

double Analysis::bytes() const
{
    return storageOf(permutation) + storageOf(inverse) + storageOf(fronts) + storageOf(rows);
}

Analysis analyse(const Pattern& pattern, const std::vector<char>& late, const AnalysisOptions& options)
{
    const Chosen chosen = choose(pattern, late, options);
    const Supernodes nodes = supernodes(chosen.graph, chosen.elimination);
    Analysis result;
    result.n = pattern.n;
    result.ordering = chosen.ordering;
    numberUnknowns(chosen.graph, nodes.vertex, result);
    layOut(nodes, result);
    listRows(chosen.graph, nodes, result);
    if (chosen.graph.kept >= 0) // the last that is eliminated
        result.kept = static_cast<int>(result.fronts.size()) - 1;
    return result;
}
