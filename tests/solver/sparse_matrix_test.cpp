// SPDX-License-Identifier: BSD-3-Clause
// The sparse matrix against a dense one with the same entries.
#include "random.h"
#include "sparse_matrix.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

using namespace support;

namespace {

using Entries = std::map<std::pair<int, int>, double>; // row, column

Entries entriesOf(const SparseMatrix& a)
{
    Entries entries;
    EXPECT_EQ(a.start[0], 0);
    EXPECT_EQ(static_cast<std::size_t>(a.start[a.n]), a.entries());
    for (int i = 0; i < a.n; ++i)
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p) {
            EXPECT_TRUE(p == a.start[i] || a.column[p - 1] < a.column[p]) << "columns ascend";
            entries[{i, a.column[p]}] = a.value[p];
        }
    return entries;
}

struct Drawn
{
    SparseMatrix a;
    Entries entries;
};

// Whole numbers, so that the order of a sum does not matter; some places are given several times.
Drawn drawn(int n, std::mt19937_64& random)
{
    Drawn d;
    std::vector<Triplet> triplets;
    for (int count = static_cast<int>(random() % static_cast<unsigned>(4 * n)); count > 0; --count) {
        const int i = static_cast<int>(random() % static_cast<unsigned>(n));
        const int j = static_cast<int>(random() % static_cast<unsigned>(n));
        const double x = static_cast<double>(random() % 201) - 100.0;
        triplets.push_back({i, j, x});
        d.entries[{i, j}] += x;
    }
    d.a = fromTriplets(n, triplets);
    return d;
}

TEST(SparseMatrixRoom, DoesWhatADenseMatrixDoes)
{
    auto random = generator(71);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const int n = 1 + round % 30;
        const auto [a, entries] = drawn(n, random);
        EXPECT_EQ(a.n, n);
        EXPECT_EQ(entriesOf(a), entries);

        const SparseMatrix t = transposed(a);
        Entries across, both;
        std::vector<double> rowSum(n, 0.0), y(2 * static_cast<std::size_t>(n), 0.0), x(y.size());
        for (double& value : x)
            value = static_cast<double>(random() % 21) - 10.0;
        for (const auto& [place, value] : entries) {
            const auto& [i, j] = place;
            across[{j, i}] = value;
            both[{i, j}] = both[{j, i}] = 1.0;
            rowSum[i] += std::fabs(value);
            y[i] += value * x[j];
            y[n + i] += value * x[n + j];
        }
        EXPECT_EQ(entriesOf(t), across);
        EXPECT_EQ(entriesOf(symmetrisedPattern(a, t)), both);
        EXPECT_EQ(normInf(a), *std::max_element(rowSum.begin(), rowSum.end()));
        std::vector<double> product(y.size(), NAN);
        multiply(a, x.data(), product.data(), 2);
        EXPECT_EQ(product, y);

        EXPECT_TRUE(equal(a, a));
        EXPECT_EQ(equal(a, t), entries == across);
        if (HasFailure())
            return;
    }
}

} // namespace
