// SPDX-License-Identifier: BSD-3-Clause
// The fronts of an analysis hold every entry of the factor and no row in vain, and hang together as the
// numerical factorisation takes them.
#include "analysis.h"
#include "order.h"
#include "patterns.h"
#include "random.h"
#include "tree.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>

using namespace support;

namespace {

constexpr int rounds = 1000;

AnalysisOptions anyOptions(const std::vector<std::int32_t>& order, std::mt19937_64& random)
{
    return {static_cast<Ordering>(random() % 4), order.data(), {}};
}

std::vector<char> anyLate(std::int32_t n, std::mt19937_64& random)
{
    std::vector<char> late(random() % 2 ? n : 0);
    for (char& l : late)
        l = random() % 4 == 0;
    return late;
}

void checkNumbers(const Analysis& a)
{
    ASSERT_EQ(a.permutation.size(), static_cast<std::size_t>(a.n));
    ASSERT_EQ(a.inverse.size(), static_cast<std::size_t>(a.n));
    for (int k = 0; k < a.n; ++k)
        ASSERT_EQ(a.inverse[a.permutation[k]], k);

    std::int64_t panel = 0, right = 0, lower = 0, rows = 0;
    int first = 0, largest = 0;
    double flops = 0.0;
    for (const Front& f : a.fronts) {
        ASSERT_EQ(f.first, first);
        ASSERT_GT(f.pivots, 0);
        ASSERT_EQ(f.rows, rows);
        ASSERT_EQ(f.panel, panel);
        ASSERT_EQ(f.right, right);
        ASSERT_EQ(f.depth, f.parent < 0 ? 0 : a.fronts[f.parent].depth + 1);
        first += f.pivots;
        rows += f.order;
        panel += static_cast<std::int64_t>(f.order) * f.pivots;
        right += static_cast<std::int64_t>(f.rest()) * f.pivots;
        for (int k = 0; k < f.pivots; ++k)
            lower += f.order - k;
        largest = std::max(largest, f.order);
        flops += f.flops();
    }
    EXPECT_EQ(first, a.n);
    EXPECT_EQ(static_cast<std::int64_t>(a.rows.size()), rows);
    EXPECT_EQ(a.panelEntries, panel);
    EXPECT_EQ(a.rightEntries, right);
    EXPECT_EQ(a.lowerEntries, lower);
    EXPECT_EQ(a.largestFront, largest);
    EXPECT_EQ(a.flops, flops);
}

// Every front's rows are its pivots and then those of the factor below any of them.
void checkRows(const Edges& edges, const Analysis& a)
{
    const auto columns = columnsOf(edges, a.permutation);
    for (const Front& f : a.fronts) {
        std::set<int> rows;
        for (int k = f.first; k < f.first + f.pivots; ++k) {
            rows.insert(k);
            for (std::int32_t i : columns[k])
                rows.insert(a.inverse[i]);
        }
        ASSERT_EQ(std::vector<int>(rows.begin(), rows.end()),
                  std::vector<int>(a.rowsOf(f), a.rowsOf(f) + f.order));
        if (f.rest() == 0)
            ASSERT_EQ(f.parent, -1);
        else {
            ASSERT_GE(f.parent, 0);
            const Front& parent = a.fronts[f.parent];
            ASSERT_TRUE(std::includes(a.rowsOf(parent), a.rowsOf(parent) + parent.order,
                                      a.rowsOf(f) + f.pivots, a.rowsOf(f) + f.order));
            ASSERT_LT(a.rowsOf(f)[f.pivots], parent.first + parent.pivots);
        }
    }
}

// What lies on each of two stacks at most, one for even depths and one for odd: those of a front's children
// are on top of the other stack, so that its own can be put down before they are taken away.
std::array<std::int64_t, 2> stacks(const Analysis& a)
{
    std::vector<int> waiting[2];
    std::array<std::int64_t, 2> used{}, peak{};
    std::vector<int> children(a.fronts.size(), 0);
    for (const Front& f : a.fronts)
        if (f.parent >= 0)
            ++children[f.parent];
    for (int f = 0; f < static_cast<int>(a.fronts.size()); ++f) {
        const Front& front = a.fronts[f];
        const int own = front.depth % 2;
        const std::int64_t size = static_cast<std::int64_t>(front.rest()) * front.rest();
        peak[own] = std::max(peak[own], used[own] + size);
        for (int c = 0; c < children[f]; ++c) {
            EXPECT_TRUE(!waiting[1 - own].empty() && a.fronts[waiting[1 - own].back()].parent == f);
            if (testing::Test::HasFailure())
                return peak;
            const Front& child = a.fronts[waiting[1 - own].back()];
            used[1 - own] -= static_cast<std::int64_t>(child.rest()) * child.rest();
            waiting[1 - own].pop_back();
        }
        if (front.parent >= 0) {
            used[own] += size;
            waiting[own].push_back(f);
        }
    }
    EXPECT_TRUE(waiting[0].empty() && waiting[1].empty());
    return peak;
}

// What the stacks would need with the children of every front in another sequence.
std::array<std::int64_t, 2> stacksShuffled(const Analysis& a, std::mt19937_64& random)
{
    std::vector<std::vector<int>> children(a.fronts.size() + 1);
    for (int f = 0; f < static_cast<int>(a.fronts.size()); ++f)
        children[a.fronts[f].parent < 0 ? a.fronts.size() : a.fronts[f].parent].push_back(f);
    std::array<std::int64_t, 2> used{}, peak{};
    const auto size = [&](int f) {
        return static_cast<std::int64_t>(a.fronts[f].rest()) * a.fronts[f].rest();
    };
    const std::function<void(std::size_t)> visit = [&](std::size_t f) {
        std::shuffle(children[f].begin(), children[f].end(), random);
        for (int c : children[f])
            visit(c);
        if (f == a.fronts.size())
            return;
        const int own = a.fronts[f].depth % 2;
        used[own] += size(static_cast<int>(f));
        peak[own] = std::max(peak[own], used[own]);
        for (int c : children[f])
            used[1 - own] -= size(c);
    };
    visit(a.fronts.size());
    return peak;
}

TEST(Analysis, FrontsHoldTheFactorAndNoRowInVain)
{
    std::mt19937_64 random = generator(11);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const Edges edges = anyPattern(random);
        const std::vector<std::int32_t> order = anyOrder(edges.n, random);
        const AnalysisOptions options = anyOptions(order, random);
        SCOPED_TRACE(testing::Message() << "round " << round << ", n = " << edges.n << ", ordering "
                                        << static_cast<int>(options.ordering));
        const Analysis a = analyse(edges.pattern(), anyLate(edges.n, random), options);
        ASSERT_EQ(a.n, edges.n);
        checkNumbers(a);
        if (HasFailure())
            return;
        checkRows(edges, a);
        stacks(a);
    }
}

TEST(Analysis, ALargePatternHangsTogether)
{
    const Edges edges(3 * 512, elasticity(8, 3));
    for (Ordering ordering : {Ordering::choose, Ordering::metis, Ordering::amd}) {
        const Analysis a = analyse(edges.pattern(), {}, {ordering, nullptr, {}});
        checkNumbers(a);
        stacks(a);
    }
}

TEST(Analysis, NoUnknownsGiveNoFronts)
{
    const Edges none(0, {});
    for (int ordering = 0; ordering < 4; ++ordering) {
        const Analysis a = analyse(none.pattern(), {}, {static_cast<Ordering>(ordering), nullptr, {}});
        EXPECT_TRUE(a.fronts.empty() && a.rows.empty() && a.permutation.empty());
        EXPECT_EQ(a.panelEntries, 0);
    }
}

TEST(Analysis, AGivenOrderGivesItsFactor)
{
    std::mt19937_64 random = generator(12);
    for (int round = 0; round < rounds; ++round) {
        const Edges edges = anyPattern(random);
        const std::vector<std::int32_t> order = anyOrder(edges.n, random);
        const Analysis a =
            analyse(edges.pattern(), std::vector<char>(edges.n, 1), {Ordering::given, order.data(), {}});
        ASSERT_EQ(a.ordering, Ordering::given);
        const auto asked = columnsOf(edges, order), done = columnsOf(edges, a.permutation);
        for (std::int32_t k = 0; k < edges.n; ++k)
            ASSERT_EQ(asked[k], done[a.inverse[order[k]]]);
    }
}

TEST(Analysis, AnOrderThatIsNoneIsRefused)
{
    const Edges edges(4, chain(4));
    const std::vector<std::vector<std::int32_t>> wrong = {{0, 1, 2, 2}, {0, 1, 2, 4}, {-1, 1, 2, 3}};
    for (const auto& order : wrong)
        EXPECT_THROW(analyse(edges.pattern(), {}, {Ordering::given, order.data(), {}}),
                     std::invalid_argument);
    EXPECT_THROW(analyse(edges.pattern(), {}, {Ordering::given, nullptr, {}}), std::invalid_argument);
}

TEST(Analysis, LateUnknownsComeAfterTheirNeighbours)
{
    std::mt19937_64 random = generator(13);
    for (int round = 0; round < rounds; ++round) {
        const Edges edges = anyPattern(random);
        const std::vector<char> late = anyLate(edges.n, random);
        const Analysis a = analyse(edges.pattern(), late, {static_cast<Ordering>(random() % 3), nullptr, {}});
        for (std::int32_t i = 0; i < edges.n && !late.empty(); ++i)
            for (std::int64_t p = edges.start[i]; p < edges.start[i + 1]; ++p)
                if (late[i] && !late[edges.column[p]])
                    ASSERT_GT(a.inverse[i], a.inverse[edges.column[p]]);
    }
}

TEST(Analysis, TheSparserOrderIsChosen)
{
    std::mt19937_64 random = generator(14);
    int chosen[2] = {0, 0};
    for (int round = 0; round < 500; ++round) {
        const Edges edges = anyPattern(random);
        const Analysis best = analyse(edges.pattern(), {});
        const Graph graph = compressedGraph(edges.pattern(), {});
        const std::int64_t metis = eliminate(graph, metisOrder(graph)).entries,
                           amd = eliminate(graph, amdOrder(edges.pattern(), graph)).entries;
        ASSERT_EQ(best.ordering, metis <= amd ? Ordering::metis : Ordering::amd);
        ++chosen[metis > amd];
        const Analysis same =
            analyse(edges.pattern(), {}, {metis <= amd ? Ordering::metis : Ordering::amd, nullptr, {}});
        ASSERT_EQ(best.permutation, same.permutation);
    }
    EXPECT_GT(chosen[0], 0);
    EXPECT_GT(chosen[1], 0);
}

TEST(Analysis, NoSequenceOfChildrenNeedsLessOfEitherStack)
{
    std::mt19937_64 random = generator(15);
    const auto compare = [&](const Edges& edges, int shuffles) {
        const Analysis a = analyse(edges.pattern(), {}, {Ordering::amd, nullptr, {}});
        const auto ours = stacks(a);
        for (int shuffle = 0; shuffle < shuffles; ++shuffle) {
            const auto other = stacksShuffled(a, random);
            ASSERT_LE(ours[0], other[0]);
            ASSERT_LE(ours[1], other[1]);
        }
    };
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
        const std::int32_t n = 200;
        EdgeSet edges;
        while (edges.size() < 240)
            edges.insert({static_cast<std::int32_t>(random() % n), static_cast<std::int32_t>(random() % n)});
        std::erase_if(edges, [](const auto& edge) { return edge.first >= edge.second; });
        compare(Edges(n, edges), 30);
    }
    compare(Edges(3 * 343, elasticity(7, 3)), 30);
}

// Fronts are few, and what they store for nothing is little.
TEST(Analysis, SmallFrontsAreTakenTogether)
{
    const std::int32_t n = 3000;
    const Edges line(n, chain(n));
    const Analysis a = analyse(line.pattern(), {});
    EXPECT_LT(a.fronts.size(), static_cast<std::size_t>(n) / 3);
    EXPECT_LE(a.lowerEntries, 5 * n);

    const Edges cube(3 * 1000, elasticity(10, 3));
    const Graph graph = compressedGraph(cube.pattern(), {});
    const Elimination e = eliminate(graph, metisOrder(graph));
    const Analysis b = analyse(cube.pattern(), {}, {Ordering::metis, nullptr, {}});
    EXPECT_LT(b.fronts.size(), 250u);
    EXPECT_GE(b.lowerEntries, e.entries);
    EXPECT_LE(b.lowerEntries, e.entries + e.entries / 20);
}

// The centre first makes one full triangle of a star: few entries given, more than 2^31 computed.
TEST(Analysis, FactorsBeyond32BitsAreCounted)
{
    const std::int32_t n = 70000;
    EdgeSet edges;
    for (std::int32_t i = 1; i < n; ++i) {
        edges.insert({0, i});
        edges.insert({n, n + i});
    }
    const Edges stars(2 * n, edges);
    std::vector<std::int32_t> order(2 * n);
    std::iota(order.begin(), order.end(), 0);
    const Analysis a = analyse(stars.pattern(), {}, {Ordering::given, order.data(), {}});
    ASSERT_EQ(a.fronts.size(), 2u);
    const std::int64_t large = n;
    EXPECT_EQ(a.lowerEntries, large * (large + 1));
    EXPECT_EQ(a.panelEntries, 2 * large * large);
    EXPECT_EQ(a.fronts[1].panel, large * large);
    EXPECT_EQ(a.fronts[1].order, n);
    EXPECT_EQ(a.fronts[1].rows, large);
    EXPECT_NEAR(a.flops / (2.0 / 3.0 * std::pow(large, 3)), 1.0, 1e-3);
}

} // namespace
