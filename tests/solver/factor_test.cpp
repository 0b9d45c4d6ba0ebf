// SPDX-License-Identifier: BSD-3-Clause
#include "blas_threads.h"
#include "planned.h"
#include "problems.h"
#include "scaling.h"
#include "triplets.h"

#include <TOVBlaModule.h>
#include <gtest/gtest.h>

#include <optional>

namespace {

SparseMatrix unsymmetric(int n, std::uint64_t number)
{
    auto random = support::generator(number);
    std::vector<Triplet> entries;
    for (int i = 0; i < n; ++i) {
        entries.push_back({i, i, 4.0 + support::ordinary(random) / 16.0});
        for (int k = 0; k < 3; ++k)
            entries.push_back({i, static_cast<int>(random() % n), support::ordinary(random) / 16.0});
    }
    return fromTriplets(n, entries);
}

} // namespace

TEST(Factor, SolvesWithTheTransposeToo)
{
    for (int n : {1, 2, 7, 60, 500})
        for (int columns : {1, 3}) {
            const SparseMatrix a = unsymmetric(n, n), at = transposed(a);
            Planned planned(a);
            Factor& factor = planned.factor;
            factor.factorise(a.value.data(), {1e-14, 0.0, 0}, {});
            auto random = support::generator(n + columns);
            Vectors x(n, columns);
            for (double& value : x.value)
                value = support::ordinary(random);
            Vectors b = problems::product(a, x), bt = problems::product(at, x);
            factor.solve(b);
            EXPECT_LT(problems::relativeError(b, x), 1e-13);
            factor.solve(bt, true);
            EXPECT_LT(problems::relativeError(bt, x), 1e-13);
        }
}

TEST(Factor, TellsWhichPivotsWereTreatedAndHow)
{
    // Unknowns 0, 2 and 4 by themselves, 2 and 4 with next to nothing.
    SparseMatrix a = problems::sparse(
        5, {3, 0, 0, 0, 0, 0, 2, 0, 1, 0, 0, 0, 1e-15, 0, 0, 0, 1, 0, -2, 0, 0, 0, 0, 0, -1e-15});
    for (bool symmetric : {true, false}) {
        a.symmetric = symmetric;
        Planned planned(a);
        Factor& factor = planned.factor;
        const auto treated = [&](int unknown) {
            for (const TreatedPivot& pivot : factor.treatedPivots())
                if (pivot.unknown == unknown)
                    return pivot.shift;
            return 0.0;
        };
        factor.factorise(a.value.data(), {1e-14, 0.0, 0}, {});
        EXPECT_EQ(factor.treated(), 2);
        EXPECT_EQ(treated(2), 1e36);
        EXPECT_EQ(treated(4), 1e36);
        EXPECT_EQ(factor.positive(), 2);
        EXPECT_EQ(factor.negative(), 1);
        factor.factorise(a.value.data(), {1e-14, 0.25, 0}, {});
        EXPECT_EQ(factor.treated(), 2);
        EXPECT_EQ(treated(2), 0.25);
        EXPECT_EQ(treated(4), -0.25);
        Vectors b = problems::ones(5);
        factor.solve(b);
        EXPECT_NEAR(b.value[2], 4.0, 1e-13);
        EXPECT_NEAR(b.value[4], -4.0, 1e-13);
    }
}

TEST(Scaling, EntersAndLeaves)
{
    auto random = support::generator(9);
    std::vector<Triplet> entries;
    constexpr int n = 40;
    for (int i = 0; i < n; ++i) {
        const int row = (i + 5) % n;
        entries.push_back(
            {row, i, std::ldexp(1.0 + 0.1 * support::ordinary(random), i % 13 + 4 * (row % 5))});
        entries.push_back({i, i, std::ldexp(support::ordinary(random), -10)});
    }
    const SparseMatrix a = fromTriplets(n, entries), at = transposed(a);
    const Equilibrated e = equilibrateUnsymmetric(a);
    Planned planned(e.matrix);
    Factor& factor = planned.factor;
    factor.factorise(e.matrix.value.data(), {1e-14, 0.0, 0}, {});
    const Border rows{e.rowOf.data(), e.row.data()}, byColumn{nullptr, e.column.data()};
    for (int columns : {1, 2, 3, 9})
        for (bool transpose : {false, true}) {
            Vectors x(n, columns);
            for (double& value : x.value)
                value = support::ordinary(random);
            Vectors y = problems::product(transpose ? at : a, x);
            factor.solve({y.value.data(), n, columns}, transpose ? byColumn : rows,
                         transpose ? rows : byColumn, transpose, 1);
            EXPECT_LT(problems::relativeError(y, x), 1e-12) << columns << ' ' << transpose;
        }
}

TEST(OneBlasThread, IsLeftWhenTheLastWhoWantsItHasEnded)
{
    const int before = blaC_get_num_threads();
    blaC_set_num_threads(2);
    const int set = blaC_get_num_threads(); // that the library beneath can have
    std::optional<OneBlasThread> first(std::in_place), second(std::in_place);
    EXPECT_EQ(blaC_get_num_threads(), 1);
    first.reset();
    EXPECT_EQ(blaC_get_num_threads(), 1);
    second.reset();
    EXPECT_EQ(blaC_get_num_threads(), set);
    blaC_set_num_threads(before);
}
