// SPDX-License-Identifier: BSD-3-Clause
#include "supernodes.h"

#include <algorithm>
#include <numeric>
#include <queue>

namespace {

// Fronts while they are put together; vertices by their places in the elimination.
struct Group
{
    std::int32_t parent, pivots, order;
    double zeros;
};

// Fundamental: a vertex joins its only child if its column is the child's without the child.
std::vector<Group> fundamental(const Graph& graph, const Elimination& e, std::vector<std::int32_t>& groupOf)
{
    std::vector<std::int32_t> children(graph.n, 0);
    for (std::int32_t parent : e.parent)
        if (parent >= 0)
            ++children[parent];
    std::vector<Group> groups;
    groupOf.resize(graph.n);
    for (std::int32_t j = 0; j < graph.n; ++j) {
        const bool joins = j > 0 && e.order[j] != graph.kept && e.parent[j - 1] == j && children[j] == 1 &&
                           e.count[j - 1] == e.count[j] + graph.weight(e.order[j - 1]);
        if (!joins)
            groups.push_back({-1, 0, e.count[j], 0.0});
        groupOf[j] = static_cast<std::int32_t>(groups.size()) - 1;
        groups.back().pivots += graph.weight(e.order[j]);
        groups.back().parent = e.parent[j]; // of the last vertex, in the end
    }
    for (Group& group : groups)
        if (group.parent >= 0)
            group.parent = groupOf[group.parent];
    return groups;
}

double entries(double pivots, double order)
{
    return pivots * (order - (pivots - 1.0) / 2.0);
}

// A child in its parent's front: the child's columns get the parent's rows.
Group merged(const Group& child, const Group& parent)
{
    Group both{parent.parent, parent.pivots + child.pivots, parent.order + child.pivots, 0.0};
    both.zeros = child.zeros + parent.zeros + static_cast<double>(child.pivots) * (both.order - child.order);
    return both;
}

// Children of every group that lives on, one list after the other, in ascending order; last the list of
// roots.
struct Children
{
    std::vector<std::int32_t> start, child;

    Children(const std::vector<Group>& groups, const std::vector<std::int32_t>& into)
        : start(groups.size() + 2, 0)
    {
        const auto n = static_cast<std::int32_t>(groups.size());
        const auto list = [&](std::int32_t g) { return groups[g].parent < 0 ? n : groups[g].parent; };
        for (std::int32_t g = 0; g < n; ++g)
            start[list(g) + 1] += into[g] == g;
        std::partial_sum(start.begin(), start.end(), start.begin());
        child.resize(start.back());
        std::vector<std::int32_t> next(start.begin(), start.end() - 1);
        for (std::int32_t g = 0; g < n; ++g)
            if (into[g] == g)
                child[next[list(g)]++] = g;
    }
    const std::int32_t* begin(std::size_t list) const { return child.data() + start[list]; }
    const std::int32_t* end(std::size_t list) const { return child.data() + start[list + 1]; }
    std::size_t roots() const { return start.size() - 2; }
};

// A front costs time beside its arithmetic, the more of its time the smaller it is.
bool worthwhile(const Group& both)
{
    const double share = both.zeros / entries(both.pivots, both.order);
    return share == 0.0 || both.pivots <= 4 || (both.pivots <= 12 && share < 0.6) ||
           (both.pivots <= 48 && share < 0.05) || share < 0.02;
}

// From the roots down each group takes in those of its children that share the most rows with it, and theirs.
// Entry g of the result is the group that g ended in. The group `kept` takes in nothing.
std::vector<std::int32_t> amalgamate(std::vector<Group>& groups, std::int32_t kept)
{
    std::vector<std::int32_t> into(groups.size());
    std::iota(into.begin(), into.end(), 0);
    const Children children(groups, into);
    const auto later = [&](std::int32_t a, std::int32_t b) {
        const std::int32_t restA = groups[a].order - groups[a].pivots,
                           restB = groups[b].order - groups[b].pivots;
        return restA != restB ? restA < restB : a > b;
    };
    for (auto g = static_cast<std::int32_t>(groups.size()) - 1; g >= 0; --g) {
        if (into[g] != g)
            continue;
        std::priority_queue<std::int32_t, std::vector<std::int32_t>, decltype(later)> candidates(
            children.begin(g), children.end(g), later);
        while (!candidates.empty()) {
            const std::int32_t child = candidates.top();
            candidates.pop();
            const Group both = merged(groups[child], groups[g]);
            groups[child].parent = g;
            if (g == kept || !worthwhile(both))
                continue;
            groups[g] = both;
            into[child] = g;
            for (const std::int32_t* next = children.begin(child); next != children.end(child); ++next)
                candidates.push(*next);
        }
    }
    return into;
}

// Contributions wait on one stack for even depths and one for odd ones. A subtree needs `same` on the stack
// of its root and `other` on the other one, and leaves `left` on the first. The least is needed when the
// child that gives most back comes first (Liu, "On the storage requirement in the out-of-core multifrontal
// method", ACM Trans. Math. Softw. 12 (1986), for one stack; the argument holds for each of two).
void sortChildren(const std::vector<Group>& groups, Children& children)
{
    struct Need
    {
        double same = 0.0, other = 0.0, left = 0.0;
    };
    std::vector<Need> need(groups.size());
    for (std::size_t g = 0; g < groups.size(); ++g) {
        const auto first = children.child.begin() + children.start[g],
                   last = children.child.begin() + children.start[g + 1];
        std::stable_sort(first, last, [&](std::int32_t a, std::int32_t b) {
            return need[a].same - need[a].left > need[b].same - need[b].left;
        });
        const double rest = groups[g].order - groups[g].pivots;
        need[g].left = need[g].same = rest * rest;
        double waiting = 0.0;
        for (auto c = first; c != last; ++c) {
            need[g].same = std::max(need[g].same, need[*c].other);
            need[g].other = std::max(need[g].other, waiting + need[*c].same);
            waiting += need[*c].left;
        }
    }
}

// Groups in postorder, children as listed: the mirror image of parents first, last children first.
std::vector<std::int32_t> postorderOf(const Children& children)
{
    std::vector<std::int32_t> sequence, open;
    const auto openAll = [&](std::size_t list) {
        open.insert(open.end(), children.begin(list), children.end(list));
    };
    openAll(children.roots());
    while (!open.empty()) {
        sequence.push_back(open.back());
        open.pop_back();
        openAll(sequence.back());
    }
    std::reverse(sequence.begin(), sequence.end());
    return sequence;
}

} // namespace

Supernodes supernodes(const Graph& graph, const Elimination& elimination)
{
    std::vector<std::int32_t> groupOf;
    std::vector<Group> groups = fundamental(graph, elimination, groupOf);
    const std::vector<std::int32_t> into =
        amalgamate(groups, graph.kept < 0 ? -1 : groupOf[elimination.place[graph.kept]]);
    Children children(groups, into);
    sortChildren(groups, children);

    Supernodes result;
    std::vector<std::int32_t> number(groups.size()); // of the group in the result
    for (std::int32_t g : postorderOf(children)) {
        number[g] = static_cast<std::int32_t>(result.list.size());
        result.list.push_back({groups[g].parent, groups[g].pivots, groups[g].order, 0});
    }
    for (Supernode& node : result.list)
        if (node.parent >= 0)
            node.parent = number[node.parent];

    std::vector<std::int32_t> next(result.list.size() + 1, 0);
    for (std::int32_t g : groupOf)
        ++next[number[into[g]] + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    result.vertex.resize(graph.n);
    for (std::int32_t j = 0; j < graph.n; ++j)
        result.vertex[next[number[into[groupOf[j]]]]++] = elimination.order[j];
    for (std::size_t f = 0; f < result.list.size(); ++f)
        result.list[f].end = next[f];
    return result;
}
