// SPDX-License-Identifier: BSD-3-Clause
// The assembly of a child's contribution against a sum entry by entry, bit for bit.
#include "assembly.h"
#include "random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace support;

namespace {

struct Parent
{
    int pivots, rest;
    bool symmetric;
    std::vector<double> panel, right, schur;

    Parent(int p, int m, bool sym, std::mt19937_64& random)
        : pivots(p), rest(m), symmetric(sym), panel(static_cast<std::size_t>(p + m) * p),
          right(sym ? 0 : static_cast<std::size_t>(p) * m + 1), schur(static_cast<std::size_t>(m) * m + 1)
    {
        for (auto* part : {&panel, &right, &schur})
            for (double& x : *part)
                x = ordinary(random);
    }

    FrontStorage storage()
    {
        return {pivots, rest, panel.data(), symmetric ? nullptr : right.data(), schur.data()};
    }

    // Adds one entry of the front, if it lies in what `part` names.
    void add(Part part, int i, int j, double x)
    {
        if (symmetric && i < j)
            return;
        const bool eliminated = i < pivots || j < pivots;
        if (eliminated != (part == Part::factor))
            return;
        if (j < pivots)
            panel[i + static_cast<std::size_t>(pivots + rest) * j] += x;
        else if (i < pivots)
            right[i + static_cast<std::size_t>(pivots) * (j - pivots)] += x;
        else
            schur[i - pivots + static_cast<std::size_t>(rest) * (j - pivots)] += x;
    }
};

// `count` of the parent's rows, in runs of about `length`, ascending.
std::vector<int> drawn_rows(int order, int count, int length, std::mt19937_64& random)
{
    std::vector<char> taken(order, 0);
    for (int chosen = 0; chosen < count;) {
        const int start = static_cast<int>(random() % static_cast<unsigned>(order));
        const int run = 1 + static_cast<int>(random() % static_cast<unsigned>(length));
        for (int i = start; i < std::min(start + run, order) && chosen < count; ++i)
            if (!taken[i]) {
                taken[i] = 1;
                ++chosen;
            }
    }
    std::vector<int> at;
    for (int i = 0; i < order; ++i)
        if (taken[i])
            at.push_back(i);
    return at;
}

// A child of one pivot, whose rows lie in the parent at `at`, and the parent.
Assembly familyOf(int pivots, int order, const std::vector<int>& at)
{
    const int count = static_cast<int>(at.size());
    Analysis analysis;
    analysis.n = 1 + order;
    analysis.permutation.resize(analysis.n);
    std::iota(analysis.permutation.begin(), analysis.permutation.end(), 0);
    analysis.inverse = analysis.permutation;
    analysis.rows.push_back(0);
    for (int i : at)
        analysis.rows.push_back(1 + i);
    for (int i = 0; i < order; ++i)
        analysis.rows.push_back(1 + i);
    analysis.fronts = {Front{0, 1, 1 + count, 1, 1, 0, 0, 0},
                       Front{1, pivots, order, -1, 0, 1 + count, 0, 0}};
    SparseMatrix empty;
    empty.n = analysis.n;
    empty.symmetric = true;
    empty.start.assign(analysis.n + 1, 0);
    return Assembly(analysis, empty);
}

TEST(ExtendAdd, AddsEveryEntryOfTheChildOnceAndNothingElse)
{
    auto random = generator(41);
    for (int round = 0; round < 1500; ++round) {
        const int p = 1 + static_cast<int>(random() % 60), m = static_cast<int>(random() % 60);
        const bool symmetric = round % 2;
        const int order = p + m, count = 1 + static_cast<int>(random() % static_cast<unsigned>(order));
        const std::vector<int> at = drawn_rows(order, count, 1 + round % 40, random);

        const Assembly assembly = familyOf(p, order, at);
        std::vector<double> child(static_cast<std::size_t>(count) * count);
        for (double& x : child)
            x = ordinary(random);

        Parent parent(p, m, symmetric, random), expected = parent;
        for (Part part : {Part::factor, Part::schur}) {
            SCOPED_TRACE(::testing::Message() << "round " << round << ", " << p << " pivots, " << m
                                              << " rows below, child of " << count);
            for (int j = 0; j < count; ++j)
                for (int i = 0; i < count; ++i)
                    expected.add(part, at[i], at[j], child[i + static_cast<std::size_t>(count) * j]);
            assembly.addContribution(0, part, 0, order, parent.storage(), child.data());
            ASSERT_EQ(parent.panel, expected.panel);
            ASSERT_EQ(parent.right, expected.right);
            ASSERT_EQ(parent.schur, expected.schur);
        }
    }
}

} // namespace
