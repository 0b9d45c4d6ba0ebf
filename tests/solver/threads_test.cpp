// SPDX-License-Identifier: BSD-3-Clause
// The number of threads changes nothing: pivots, factor and solution have the same bits.
#include "bits.h"
#include "planned.h"
#include "problems.h"
#include "scaling.h"

#include <gtest/gtest.h>

#include <set>

using namespace support;

namespace {

// A block of springs held at a face, scaled; shifted so far that it is indefinite, or made unsymmetric, if
// wanted. Some diagonal entries are next to nothing, where pivots are to be treated.
SparseMatrix block(int points, bool symmetric, bool tiny)
{
    std::vector<int> face;
    for (int i = 0; i < 3 * points * points; ++i)
        face.push_back(i);
    SparseMatrix a = problems::held(problems::lattice(points - 1, points - 1, points - 1), face);
    a.symmetric = true;
    a = equilibrateSymmetric(a).matrix;
    auto random = generator(7);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
            if (a.column[p] == i && tiny)
                a.value[p] = i % 97 == 5 ? 1e-15 : a.value[p] - 0.3;
            if (!symmetric)
                a.value[p] *= 1.0 + ordinary(random) / 64.0;
        }
    a.symmetric = symmetric;
    return a;
}

struct Result
{
    std::vector<double> pivots, solution;
    std::vector<int> treated;
};

Result factorised(const SparseMatrix& a, int threads, const PivotRule& rule)
{
    Planned planned(a, threads);
    planned.factor.factorise(a.value.data(), rule, {});
    Vectors x = problems::product(a, problems::ones(a.n));
    planned.factor.solve(x);
    Result result{planned.factor.pivots(), x.value, {}};
    for (const TreatedPivot& pivot : planned.factor.treatedPivots())
        result.treated.push_back(pivot.unknown);
    return result;
}

void expectSameBits(const std::vector<double>& x, const std::vector<double>& y)
{
    ASSERT_EQ(x.size(), y.size());
    for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_EQ(bits(x[i]), bits(y[i])) << "at " << i;
}

class Threads : public testing::TestWithParam<std::tuple<bool, bool, double>>
{
};

TEST_P(Threads, ChangeNoBit)
{
    const auto [symmetric, tiny, shift] = GetParam();
    const SparseMatrix a = block(12, symmetric, tiny);
    const PivotRule rule{shift > 0.0 ? shift / 2 : 1e-14, shift, 0};
    const Plan plan(a, Wishes(), patternDemands(a));
    int most = 0;
    for (const Front& front : plan.analysis.fronts)
        most = std::max(most, tilingOf(front).pivotTiles());
    ASSERT_GE(plan.schedule->branches.size(), 16u);
    ASSERT_GE(most, 2);
    const Result one = factorised(a, 1, rule);
    EXPECT_EQ(one.treated.empty(), !tiny);
    for (int threads : {2, 3, 8, 2, 3, 8}) {
        SCOPED_TRACE(std::to_string(threads) + " threads");
        const Result many = factorised(a, threads, rule);
        expectSameBits(one.pivots, many.pivots);
        expectSameBits(one.solution, many.solution);
        EXPECT_EQ(one.treated, many.treated);
    }
}

INSTANTIATE_TEST_SUITE_P(Solver, Threads,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Values(0.0, 0x1p-26)));

} // namespace
