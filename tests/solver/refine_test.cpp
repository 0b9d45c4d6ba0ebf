// SPDX-License-Identifier: BSD-3-Clause
#include "backward_error.h"
#include "problems.h"
#include "refine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// x := x/(1 + e) for a diagonal matrix of ones: refinement gains the factor e a step.
Apply offBy(double e)
{
    return [e](Vectors& x) {
        for (double& value : x.value)
            value /= 1.0 + e;
    };
}

const SparseMatrix identity = problems::sparse(3, {1, 0, 0, 0, 1, 0, 0, 0, 1});

} // namespace

TEST(BackwardError, IsThatOfEachEntry)
{
    // Equation 1: residual 1 beside 2*1 + 3*1 + 6; equation 2: residual 0.
    const SparseMatrix a = problems::sparse(2, {2, 0, 3, 1});
    const double b[] = {6, 1}, x[] = {1, 1};
    double r[2];
    const BackwardError error = backwardError(a, b, x, r);
    EXPECT_EQ(r[0], 1.0);
    EXPECT_EQ(r[1], 0.0);
    EXPECT_DOUBLE_EQ(error.omega1, 1.0 / 11.0);
    EXPECT_EQ(error.omega2, 0.0);
}

TEST(BackwardError, OfAnEquationThatXAndBHardlyTouchIsOfTheSecondClass)
{
    // Equation 2 has only the tiny x2 in it: nothing to compare its residual with but its row and the largest
    // x.
    const SparseMatrix a = problems::sparse(2, {1, 0, 0, 4});
    const double b[] = {1, 0}, x[] = {1, 1e-20}, weight[] = {1, 1e20};
    double r[2];
    Scales scales{std::vector<double>(2), std::vector<double>(2)};
    const BackwardError error = backwardError(a, b, x, r, nullptr, &scales);
    EXPECT_EQ(error.omega1, 0.0);
    EXPECT_NEAR(error.omega2, 4e-20 / 4.0, 1e-30);
    EXPECT_EQ(scales.first, (std::vector<double>{2.0, 0.0}));
    EXPECT_NEAR(scales.second[1], 4.0, 1e-15);
    // The same where x2 counts as much as x1: then its residual is all of it.
    EXPECT_EQ(backwardError(a, b, x, r, weight, &scales).omega1, 1.0);
}

TEST(BackwardError, OfWhatIsNotFiniteIsInfinite)
{
    for (double bad : {std::nan(""), HUGE_VAL}) {
        const double b[] = {1, 1, 1}, x[] = {1, bad, 1};
        double r[3];
        EXPECT_EQ(backwardError(identity, b, x, r).sum(), HUGE_VAL);
        EXPECT_EQ(backwardError(identity, x, b, r).sum(), HUGE_VAL);
    }
}

TEST(Refine, GoesOnWhileItHelps)
{
    const Vectors b = problems::ones(3);
    const Refined none = solveRefined(identity, b, offBy(0.1), {0, 0});
    EXPECT_EQ(none.steps, 0);
    EXPECT_NEAR(none.backward.sum(), 0.1 / 2.1, 1e-3);
    const Refined good = solveRefined(identity, b, offBy(0.1), {100, 0});
    EXPECT_LE(good.backward.sum(), 0x1p-52);
    EXPECT_GE(good.steps, 14);
    EXPECT_LE(good.steps, 18);
    const Refined bounded = solveRefined(identity, b, offBy(0.1), {3, 0});
    EXPECT_EQ(bounded.steps, 3);
}

TEST(Refine, KeepsTheBestOfEachColumn)
{
    // Corrections only spoil the second column, whose first answer is exact.
    int calls = 0;
    const Apply apply = [&](Vectors& x) {
        for (int j = 0; j < x.columns; ++j)
            for (int i = 0; i < 3; ++i)
                x.column(j)[i] *= calls == 0 && j == 1 ? 1.0 : 0.9;
        ++calls;
    };
    Vectors b(3, 3);
    b.value = {1, 2, 3, 4, 5, 6, 0, 0, 0};
    const Refined refined = solveRefined(identity, b, apply, {100, 0});
    EXPECT_LT(problems::relativeError(refined.x, b), 1e-15);
    for (int i = 3; i < 9; ++i)
        EXPECT_EQ(refined.x.value[i], b.value[i]);
    const Refined worse = solveRefined(identity, b, offBy(-0.7), {100, 0});
    EXPECT_EQ(worse.steps, 0);
}

// M = A + E with E of rank 2 and far from small: refinement diverges, three vectors span the solution.
TEST(Refine, GoesOnWithGmresWhereItStalls)
{
    auto random = support::generator(1);
    const int n = 40;
    const problems::Dense dense = problems::conditioned(n, 1e3, true, random);
    problems::Dense perturbed = dense;
    perturbed[0] += 2.0;
    perturbed[7 + 7 * n] -= 3.0;
    int solves = 0;
    const Apply apply = [&](Vectors& x) {
        ++solves;
        for (int j = 0; j < x.columns; ++j) {
            Vectors b(n, 1);
            std::copy_n(x.column(j), n, b.column(0));
            std::copy_n(problems::exactSolution(n, perturbed, b).column(0), n, x.column(j));
        }
    };
    const SparseMatrix a = problems::sparse(n, dense);
    const Vectors x = problems::ones(n), b = problems::product(a, x);
    const Refined plain = solveRefined(a, b, apply, {20, 0});
    EXPECT_GT(plain.backward.sum(), 1e-3);
    solves = 0;
    const Refined refined = solveRefined(a, b, apply, {20, 10});
    EXPECT_LT(refined.backward.sum(), 1e-14);
    EXPECT_LT(problems::relativeError(refined.x, x), 1e-11);
    EXPECT_LE(refined.steps, 30);
    EXPECT_EQ(refined.steps, solves - 1);
    solves = 0;
    EXPECT_EQ(solveRefined(a, b, apply, {0, 0}).steps, 0);
    EXPECT_EQ(solves, 1);

    // Rows in other units: the same steps.
    problems::Dense scaled = dense;
    Vectors right = b;
    for (int i = 0; i < n; ++i) {
        right.value[i] = std::ldexp(b.value[i], 37 * i % 101 - 50);
        for (int j = 0; j < n; ++j)
            scaled[i + n * j] = std::ldexp(dense[i + n * j], 37 * i % 101 - 50);
    }
    const Apply applyScaled = [&](Vectors& v) {
        for (int j = 0; j < v.columns; ++j)
            for (int i = 0; i < n; ++i)
                v.column(j)[i] = std::ldexp(v.column(j)[i], -(37 * i % 101 - 50));
        apply(v);
    };
    const Refined same = solveRefined(problems::sparse(n, scaled), right, applyScaled, {20, 10});
    EXPECT_EQ(same.x.value, refined.x.value);
    EXPECT_EQ(same.steps, refined.steps);
}

TEST(Refine, ForAnEstimateItStopsEarlyOrSaysThatItCannot)
{
    Vectors v = problems::ones(3);
    EXPECT_TRUE(solveRoughly(identity, v, offBy(0.3)));
    EXPECT_LT(problems::relativeError(v, problems::ones(3)), 0.01);
    v = problems::ones(3);
    EXPECT_FALSE(solveRoughly(identity, v, offBy(-0.7)));
    EXPECT_EQ(v.value, problems::ones(3).value);
    const SparseMatrix singular = problems::sparse(3, {1, 0, 0, 0, 1, 0, 0, 0, 0});
    v = problems::ones(3);
    EXPECT_FALSE(solveRoughly(singular, v, [](Vectors& x) { x.value[2] *= 0x1p26; }));
    v = problems::ones(3);
    v.value[1] = std::nan("");
    EXPECT_FALSE(solveRoughly(identity, v, offBy(0.1)));
}
