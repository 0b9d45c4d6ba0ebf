// SPDX-License-Identifier: BSD-3-Clause
// Matchings of small matrices against all permutations; of larger ones by the scaling that proves them best.
#include "matching.h"
#include "random.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace support;

namespace {

struct Best
{
    int size = 0;              // nonzero pairs, the most there are
    double logarithm = -1e300; // of the largest product, where all are nonzero
};

Best among_all_permutations(int n, const std::vector<double>& dense)
{
    Best best;
    std::vector<int> row(n);
    std::iota(row.begin(), row.end(), 0);
    do {
        int size = 0;
        double logarithm = 0.0;
        for (int j = 0; j < n; ++j) {
            const double x = std::fabs(dense[row[j] + n * j]);
            size += x > 0.0;
            logarithm += x > 0.0 ? std::log2(x) : 0.0;
        }
        best.size = std::max(best.size, size);
        if (size == n)
            best.logarithm = std::max(best.logarithm, logarithm);
    } while (std::next_permutation(row.begin(), row.end()));
    return best;
}

double magnitude(std::mt19937_64& random)
{
    return (random() % 2 ? 1.0 : -1.0) * std::exp2(static_cast<double>(random() % 2001) / 50.0 - 20.0);
}

SparseMatrix drawn(int n, double density, bool explicitZeros, std::mt19937_64& random)
{
    std::vector<Triplet> entries;
    std::bernoulli_distribution present(density);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            if (present(random))
                entries.push_back({i, j, explicitZeros && random() % 4 == 0 ? 0.0 : magnitude(random)});
    return fromTriplets(n, entries);
}

// Every row is matched once, and the factors bound all entries by 1, the matched ones being 1.
void expect_optimal(const SparseMatrix& a, const Matching& m)
{
    std::vector<int> columnOf(a.n, -1);
    for (int j = 0; j < a.n; ++j) {
        ASSERT_GE(m.rowOf[j], 0);
        ASSERT_LT(m.rowOf[j], a.n);
        ASSERT_EQ(columnOf[m.rowOf[j]], -1) << "row " << m.rowOf[j] << " is taken twice";
        columnOf[m.rowOf[j]] = j;
    }
    int pairs = 0;
    for (int i = 0; i < a.n; ++i)
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p) {
            if (a.value[p] == 0.0)
                continue;
            const int j = a.column[p];
            const double scaled = std::log2(std::fabs(a.value[p])) + m.rowLogarithm[i] + m.columnLogarithm[j];
            ASSERT_LE(scaled, 1e-9) << "entry " << i << ", " << j << " exceeds 1";
            if (columnOf[i] == j) {
                ++pairs;
                if (m.size == a.n)
                    ASSERT_GE(scaled, -1e-9) << "matched entry " << i << ", " << j << " is below 1";
            }
        }
    ASSERT_EQ(pairs, m.size);
}

TEST(Matching, IsTheBestOfAllPermutations)
{
    auto random = generator(51);
    int regular = 0, singular = 0;
    for (int round = 0; round < 1200; ++round) {
        SCOPED_TRACE(round);
        const int n = 1 + round % 7;
        const SparseMatrix a =
            drawn(n, 0.2 + 0.2 * static_cast<double>(random() % 5), round % 3 == 0, random);
        std::vector<double> dense(static_cast<std::size_t>(n) * n, 0.0);
        for (int i = 0; i < n; ++i)
            for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
                dense[i + n * a.column[p]] = a.value[p];
        const Best best = among_all_permutations(n, dense);
        const Matching m = matchLargest(a);
        ASSERT_EQ(m.size, best.size);
        expect_optimal(a, m);
        if (HasFatalFailure())
            return;
        ++(best.size == n ? regular : singular);
        if (best.size < n)
            continue;
        double logarithm = 0.0;
        for (int j = 0; j < n; ++j)
            logarithm += std::log2(std::fabs(dense[m.rowOf[j] + n * j]));
        ASSERT_NEAR(logarithm, best.logarithm, 1e-9);
    }
    EXPECT_GT(regular, 200);
    EXPECT_GT(singular, 200);
}

TEST(Matching, OfLargeMatricesComesWithTheFactorsThatProveIt)
{
    auto random = generator(52);
    for (int n : {50, 200, 400})
        for (double degree : {1.5, 4.0, 12.0}) {
            SCOPED_TRACE(::testing::Message() << n << " rows of " << degree);
            SparseMatrix a = drawn(n, degree / n, false, random);
            expect_optimal(a, matchLargest(a));
            std::vector<Triplet> entries; // and with a permutation in it that makes it regular
            for (int i = 0; i < n; ++i) {
                entries.push_back({i, (7 * i + 3) % n, magnitude(random)});
                for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
                    if (a.column[p] != (7 * i + 3) % n)
                        entries.push_back({i, a.column[p], a.value[p]});
            }
            a = fromTriplets(n, entries);
            const Matching m = matchLargest(a);
            expect_optimal(a, m);
            if (n % 7)
                EXPECT_EQ(m.size, n);
            if (HasFailure())
                return;
        }
}

} // namespace
