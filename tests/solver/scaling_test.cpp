// SPDX-License-Identifier: BSD-3-Clause
// Equilibration: powers of two, exactly applied, that bring the entries to the order of one.
#include "random.h"
#include "rows.h"
#include "scaling.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace support;

namespace {

double magnitude(std::mt19937_64& random)
{
    const double x = 1.0 + std::uniform_real_distribution<double>(0.0, 1.0)(random);
    return std::ldexp(random() % 2 ? x : -x, static_cast<int>(random() % 61) - 30);
}

// Rows and columns of very different size, some of them empty, some entries explicit zeros.
SparseMatrix drawn(int n, bool symmetric, std::mt19937_64& random)
{
    std::vector<Triplet> entries;
    std::vector<double> size(n);
    for (double& s : size)
        s = magnitude(random);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < (symmetric ? i + 1 : n); ++j) {
            if (i % 11 == 5 || j % 11 == 5 || (i != j && random() % 4 != 0))
                continue;
            const double x = random() % 9 == 0 ? 0.0 : magnitude(random) * size[i] * size[j];
            entries.push_back({i, j, x});
            if (symmetric && i != j)
                entries.push_back({j, i, x});
        }
    SparseMatrix a = fromTriplets(n, entries);
    a.symmetric = symmetric;
    return a;
}

bool power_of_two(double x)
{
    int exponent;
    return std::frexp(x, &exponent) == 0.5;
}

// matrix = diag(row) * Q * A * diag(column), rounded nowhere
void expect_scaled(const SparseMatrix& a, const Equilibrated& e)
{
    ASSERT_EQ(e.matrix.n, a.n);
    for (int i = 0; i < a.n; ++i) {
        ASSERT_TRUE(power_of_two(e.row[i])) << e.row[i];
        ASSERT_TRUE(power_of_two(e.column[i])) << e.column[i];
        const int old = e.rowOf[i];
        ASSERT_EQ(e.matrix.start[i + 1] - e.matrix.start[i], a.start[old + 1] - a.start[old]);
        auto q = a.start[old];
        for (auto p = e.matrix.start[i]; p < e.matrix.start[i + 1]; ++p, ++q) {
            const int j = e.matrix.column[p];
            ASSERT_EQ(j, a.column[q]);
            ASSERT_EQ(e.matrix.value[p], a.value[q] * e.row[i] * e.column[j]);
        }
    }
}

TEST(Scaling, OfASymmetricMatrixKeepsItSymmetricAndMakesEveryRowsLargestAboutOne)
{
    auto random = generator(61);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const SparseMatrix a = drawn(1 + round % 40, true, random);
        const Equilibrated e = equilibrateSymmetric(a);
        expect_scaled(a, e);
        EXPECT_EQ(e.row, e.column);
        EXPECT_TRUE(equal(transposed(e.matrix), e.matrix));
        EXPECT_TRUE(e.matrix.symmetric);
        int rank = 0;
        for (int i = 0; i < a.n; ++i) {
            EXPECT_EQ(e.rowOf[i], i);
            double largest = 0.0;
            for (auto p = e.matrix.start[i]; p < e.matrix.start[i + 1]; ++p)
                largest = std::max(largest, std::fabs(e.matrix.value[p]));
            if (largest == 0.0) {
                EXPECT_EQ(e.row[i], 1.0);
                continue;
            }
            ++rank;
            EXPECT_LE(largest, 2.0);
            EXPECT_GE(largest, 0.25);
        }
        EXPECT_EQ(e.structuralRank, rank);
        if (HasFailure())
            return;
    }
}

TEST(Scaling, OfAnUnsymmetricMatrixPutsOnesOnTheDiagonalAndNothingLargerElsewhere)
{
    auto random = generator(62);
    int regular = 0;
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const SparseMatrix a = drawn(1 + round % 40, false, random);
        const Equilibrated e = equilibrateUnsymmetric(a);
        expect_scaled(a, e);
        EXPECT_FALSE(e.matrix.symmetric);
        int diagonal = 0;
        for (int i = 0; i < a.n; ++i)
            for (auto p = e.matrix.start[i]; p < e.matrix.start[i + 1]; ++p) {
                const double x = std::fabs(e.matrix.value[p]);
                EXPECT_LE(x, 2.0); // two factors are rounded to powers of two, by a half each
                if (e.matrix.column[p] == i && x > 0.0) {
                    ++diagonal;
                    if (e.structuralRank == a.n)
                        EXPECT_GE(x, 0.5);
                }
            }
        EXPECT_EQ(diagonal, e.structuralRank);
        regular += e.structuralRank == a.n;
        if (HasFailure())
            return;
    }
    EXPECT_GT(regular, 10);
}

TEST(Scaling, CarriesRightHandSidesIn)
{
    auto random = generator(63);
    const SparseMatrix a = drawn(30, false, random);
    const Equilibrated e = equilibrateUnsymmetric(a);
    Vectors b(a.n, 3);
    for (double& x : b.value)
        x = ordinary(random);
    Vectors entered = b;
    e.enter(entered);
    for (int j = 0; j < b.columns; ++j)
        for (int i = 0; i < a.n; ++i)
            EXPECT_EQ(entered.column(j)[i], b.column(j)[e.rowOf[i]] * e.row[i]);
}

// The entries of a symmetric matrix at and below its diagonal, some given in two parts.
struct Given
{
    std::vector<std::int64_t> start{0};
    std::vector<int> column;
    std::vector<double> value;

    explicit Given(const SparseMatrix& a)
    {
        for (int i = 0; i < a.n; ++i) {
            for (auto p = a.start[i]; p < a.start[i + 1] && a.column[p] <= i; ++p)
                for (int part = 0; part < 1 + (p % 3 == 0); ++part) {
                    column.push_back(a.column[p]);
                    value.push_back(a.value[p] / (1 + (p % 3 == 0)));
                }
            start.push_back(static_cast<std::int64_t>(column.size()));
        }
    }
};

TEST(ScalingByTheDiagonal, IsThatOfTheWholeMatrix)
{
    std::mt19937_64 random = generator(5);
    for (int n : {1, 2, 9, 40}) {
        std::vector<Triplet> entries;
        std::vector<double> size(n);
        for (double& s : size)
            s = magnitude(random);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) {
                const double x = (i == j ? 1.5 : random() % 3 == 0 ? -0.4 : 0.0) * size[i] * size[j];
                if (x != 0.0)
                    entries.push_back({i, j, x});
                if (x != 0.0 && i != j)
                    entries.push_back({j, i, x});
            }
        SparseMatrix a = fromTriplets(n, entries);
        a.symmetric = true;
        const Given given(a);
        const Rows rows(Kind::symmetricLower, n, given.start.data(), given.column.data());
        const std::vector<double> diagonal = rows.diagonal(given.value.data());
        const std::vector<double> scale = diagonalScales(diagonal);
        ASSERT_EQ(static_cast<int>(scale.size()), n);
        std::vector<double> scaled(a.entries());
        ASSERT_TRUE(rows.scaledLower(given.value.data(), scale, scaled.data(), 2));
        for (int i = 0; i < n; ++i) {
            EXPECT_TRUE(power_of_two(scale[i]));
            for (auto p = a.start[i]; p < a.start[i + 1] && a.column[p] <= i; ++p) {
                const int j = a.column[p];
                EXPECT_EQ(scaled[p], a.value[p] * scale[i] * scale[j]);
                if (i == j) {
                    EXPECT_EQ(diagonal[i], a.value[p]);
                    EXPECT_GE(std::fabs(scaled[p]), 0.5);
                    EXPECT_LT(std::fabs(scaled[p]), 2.0);
                }
            }
        }
        for (double bad : {HUGE_VAL, std::nan(""), 8.0 * size[n - 1] * size[0], 1e300})
            for (std::size_t e = 0; e < given.value.size(); ++e) {
                if (given.column[e] != 0 || static_cast<std::int64_t>(e) < given.start[n - 1])
                    continue; // the last row's first entry
                std::vector<double> value = given.value;
                value[e] = bad;
                EXPECT_FALSE(rows.scaledLower(value.data(), scale, scaled.data(), 2)) << bad;
            }
    }
}

TEST(ScalingByTheDiagonal, LooksAtAllRowsOfALargeMatrix)
{
    const int n = 30000;
    std::vector<std::int64_t> start{0};
    std::vector<int> column;
    std::vector<double> value;
    for (int i = 0; i < n; ++i) {
        if (i > 0) {
            column.push_back(i - 1);
            value.push_back(-4.0);
        }
        column.push_back(i);
        value.push_back(8.0);
        start.push_back(static_cast<std::int64_t>(column.size()));
    }
    const Rows rows(Kind::symmetricLower, n, start.data(), column.data());
    const std::vector<double> scale = diagonalScales(rows.diagonal(value.data()));
    ASSERT_EQ(scale, std::vector<double>(n, 0.25));
    for (int threads : {1, 2}) {
        std::vector<double> scaled(rows.pattern().entries(), 0.0);
        ASSERT_TRUE(rows.scaledLower(value.data(), scale, scaled.data(), threads));
        for (int i = 0; i < n; ++i)
            for (auto p = rows.pattern().start[i]; p < rows.pattern().start[i + 1]; ++p)
                if (const int j = rows.pattern().column[p]; j <= i)
                    ASSERT_EQ(scaled[p], i == j ? 0.5 : -0.25) << "row " << i;
        for (int row : {1, n / 2, n - 1}) {
            std::vector<double> bad = value;
            bad[start[row]] = 1e300;
            EXPECT_FALSE(rows.scaledLower(bad.data(), scale, scaled.data(), threads)) << "row " << row;
        }
    }
}

TEST(ScalingByTheDiagonal, NeedsADiagonalWithinReach)
{
    EXPECT_TRUE(diagonalScales({1.0, 0.0}).empty());
    EXPECT_TRUE(diagonalScales({1.0, HUGE_VAL}).empty());
    EXPECT_TRUE(diagonalScales({std::nan("")}).empty());
    EXPECT_TRUE(diagonalScales({5e-324}).empty());
    EXPECT_EQ(diagonalScales({1.0, -4.0, 0.25, 3e-300}),
              (std::vector<double>{1.0, 0.5, 2.0, std::ldexp(1.0, 497)}));
}

TEST(ScalingByTheDiagonal, HalvesAnyExponentRoundedDown)
{
    for (int e = -1074; e <= 1023; ++e)
        for (double d : {std::ldexp(1.0, e), -std::nextafter(std::ldexp(2.0, std::min(e, 1022)), 0.0)}) {
            int exponent;
            std::frexp(d, &exponent);
            const int half = static_cast<int>(std::floor(0.5 * exponent));
            EXPECT_EQ(diagonalScales({d}), half < -511 || half > 511
                                               ? std::vector<double>{}
                                               : std::vector<double>{std::ldexp(1.0, -half)})
                << d;
        }
}

} // namespace
