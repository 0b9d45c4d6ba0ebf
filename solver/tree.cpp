// SPDX-License-Identifier: BSD-3-Clause
#include "tree.h"

#include <algorithm>

namespace {

std::vector<std::int32_t> inverseOf(const std::vector<std::int32_t>& order)
{
    std::vector<std::int32_t> place(order.size());
    for (std::size_t k = 0; k < order.size(); ++k)
        place[order[k]] = static_cast<std::int32_t>(k);
    return place;
}

// Liu, "The role of elimination trees in sparse factorization", SIAM J. Matrix Anal. Appl. 11 (1990): row k
// of the factor is a subtree with the root k. Paths that were climbed are shortened.
std::vector<std::int32_t> eliminationTree(const Graph& graph, const Elimination& e)
{
    std::vector<std::int32_t> parent(graph.n, -1), ancestor(graph.n, -1);
    for (std::int32_t k = 0; k < graph.n; ++k)
        for (std::int64_t p = graph.start[e.order[k]]; p < graph.start[e.order[k] + 1]; ++p)
            for (std::int32_t i = e.place[graph.neighbour[p]]; i >= 0 && i < k;) {
                const std::int32_t next = ancestor[i];
                ancestor[i] = k;
                if (next < 0)
                    parent[i] = k;
                i = next;
            }
    return parent;
}

void renumber(Elimination& e, const std::vector<std::int32_t>& sequence)
{
    const std::vector<std::int32_t> newPlace = inverseOf(sequence);
    std::vector<std::int32_t> order(sequence.size()), parent(sequence.size());
    for (std::size_t k = 0; k < sequence.size(); ++k) {
        const std::int32_t old = sequence[k];
        order[k] = e.order[old];
        parent[k] = e.parent[old] < 0 ? -1 : newPlace[e.parent[old]];
    }
    e.order = std::move(order);
    e.parent = std::move(parent);
    e.place = inverseOf(e.order);
}

// Gilbert, Ng, Peyton, "An efficient algorithm to compute row and column counts for sparse Cholesky
// factorization", SIAM J. Matrix Anal. Appl. 15 (1994): row i is the subtree that joins its leaves to i. It
// adds its weight at every leaf, takes it away where the paths from two leaves, next to each other in the
// postorder, meet, and above i; summed over subtrees that leaves one weight in each vertex of the row.
class Counts
{
public:
    Counts(const Graph& graph, const Elimination& e)
        : e_(e), count_(graph.n, 0), lastLeaf_(graph.n, -1), set_(graph.n), low_(graph.n)
    {
        std::vector<char> hasChild(graph.n, 0);
        for (std::int32_t j = 0; j < graph.n; ++j) {
            low_[j] = set_[j] = j;
            if (e.parent[j] >= 0)
                hasChild[e.parent[j]] = 1;
        }
        for (std::int32_t j = 0; j < graph.n; ++j)
            if (e.parent[j] >= 0)
                low_[e.parent[j]] = std::min(low_[e.parent[j]], low_[j]);

        for (std::int32_t j = 0; j < graph.n; ++j) {
            const std::int32_t v = e.order[j], parent = e.parent[j];
            if (!hasChild[j])
                count_[j] += graph.weight(v);
            if (parent >= 0)
                count_[parent] -= graph.weight(v);
            for (std::int64_t p = graph.start[v]; p < graph.start[v + 1]; ++p)
                if (e.place[graph.neighbour[p]] > j)
                    enter(e.place[graph.neighbour[p]], j, graph.weight(graph.neighbour[p]));
            if (parent >= 0)
                set_[j] = parent;
        }
        for (std::int32_t j = 0; j < graph.n; ++j)
            if (e.parent[j] >= 0)
                count_[e.parent[j]] += count_[j];
    }

    std::vector<std::int32_t> take() { return std::move(count_); }

private:
    // An entry in row i and column j. It is a leaf of the row's subtree if none before it lies below j.
    void enter(std::int32_t i, std::int32_t j, std::int32_t weight)
    {
        const std::int32_t last = lastLeaf_[i];
        if (last >= low_[j])
            return;
        lastLeaf_[i] = j;
        count_[j] += weight;
        if (last >= 0)
            count_[meeting(last)] -= weight;
    }

    // Of the paths upwards from an earlier vertex and from the current one: sets hold finished subtrees and
    // are named after the vertex that is still open.
    std::int32_t meeting(std::int32_t i)
    {
        std::int32_t top = i;
        while (set_[top] != top)
            top = set_[top];
        while (i != top) {
            const std::int32_t next = set_[i];
            set_[i] = top;
            i = next;
        }
        return top;
    }

    const Elimination& e_;
    std::vector<std::int32_t> count_;    // first the differences, then their sums over subtrees
    std::vector<std::int32_t> lastLeaf_; // of each row
    std::vector<std::int32_t> set_;
    std::vector<std::int32_t> low_; // the first vertex of each subtree
};

} // namespace

std::vector<std::int32_t> postorder(const std::vector<std::int32_t>& parent)
{
    const auto n = static_cast<std::int32_t>(parent.size());
    std::vector<std::int32_t> firstChild(n, -1), sibling(n, -1), sequence;
    std::int32_t firstRoot = -1;
    for (std::int32_t j = n - 1; j >= 0; --j) {
        std::int32_t& list = parent[j] < 0 ? firstRoot : firstChild[parent[j]];
        sibling[j] = list;
        list = j;
    }
    sequence.reserve(n);
    for (std::int32_t j = firstRoot; j >= 0;) {
        while (firstChild[j] >= 0) { // down to the first leaf; a vertex without open children is one
            const std::int32_t child = firstChild[j];
            firstChild[j] = -1;
            j = child;
        }
        sequence.push_back(j);
        j = sibling[j] >= 0 ? sibling[j] : parent[j];
    }
    return sequence;
}

Elimination eliminate(const Graph& graph, std::vector<std::int32_t> order)
{
    Elimination e;
    e.order = std::move(order);
    e.place = inverseOf(e.order);
    e.parent = eliminationTree(graph, e);
    renumber(e, postorder(e.parent));
    e.count = Counts(graph, e).take();
    for (std::int32_t j = 0; j < graph.n; ++j) {
        const std::int64_t own = graph.weight(e.order[j]);
        e.entries += own * e.count[j] - own * (own - 1) / 2;
    }
    return e;
}
