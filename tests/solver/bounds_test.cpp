// SPDX-License-Identifier: BSD-3-Clause
// The bound on the error beside the error itself, on systems of every condition.
#include "bounds.h"
#include "problems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

struct Tally
{
    int trusted = 0, above = 0;    // called solved; error above the bound
    double worst = 0.0;            // error beside the bound, at most
    std::vector<double> pessimism; // bound beside the error

    void add(const problems::Outcome& o, double error)
    {
        const double bound = o.bound;
        trusted += o.trusted;
        above += error > bound;
        worst = std::max(worst, error / bound);
        if (std::isfinite(bound) && error > 0.0)
            pessimism.push_back(bound / error);
        if (o.trusted)
            EXPECT_LT(error, 0.1) << o.verdict;
    }
    double medianPessimism()
    {
        std::nth_element(pessimism.begin(), pessimism.begin() + pessimism.size() / 2, pessimism.end());
        return pessimism.at(pessimism.size() / 2);
    }
};

constexpr int systems = 1500;

// Of conditions from 1e6 to 1e15; the errors are those against solutions in a longer format.
Tally solveMany(bool symmetric, int refinements, std::uint64_t number)
{
    auto random = support::generator(number);
    Tally tally;
    for (int k = 0; k < systems; ++k) {
        const int n = 3 + static_cast<int>(random() % 18);
        const problems::Dense a =
            problems::conditioned(n, std::pow(10.0, 6.0 + 9.0 * k / systems), symmetric, random);
        Vectors x(n, 1);
        for (double& value : x.value)
            value = support::ordinary(random);
        const SparseMatrix s = problems::sparse(n, a);
        const Vectors b = problems::product(s, x);
        const problems::Outcome o = problems::solved(s, b, {symmetric, refinements});
        tally.add(o, problems::relativeError(o.x, problems::exactSolution(n, a, b)));
    }
    std::printf("%d of %d called solved; error above the bound: %d, at worst %.2g times; median bound/error: "
                "%.2g\n",
                tally.trusted, systems, tally.above, tally.worst, tally.medianPessimism());
    return tally;
}

void expectHonest(Tally tally)
{
    EXPECT_LE(tally.worst, 10.0);
    EXPECT_LE(tally.above, systems / 100);
    EXPECT_LT(tally.medianPessimism(), 100.0);
    EXPECT_GT(tally.trusted, systems * 9 / 10);
}

} // namespace

TEST(Bounds, HoldForPositiveDefiniteSystems)
{
    expectHonest(solveMany(true, 10, 1));
}

TEST(Bounds, HoldForUnsymmetricSystems)
{
    expectHonest(solveMany(false, 10, 2));
}

TEST(Bounds, AreThereWithoutRefinement)
{
    expectHonest(solveMany(true, 0, 3));
    expectHonest(solveMany(false, 0, 4));
}

// Pivots of 1e-15 are replaced while the unknowns beside them pass 1e13 on.
TEST(Bounds, TreatedPivotsHideNothing)
{
    auto random = support::generator(5);
    int trusted = 0, treated = 0;
    for (int k = 0; k < 2000; ++k) {
        const int n = 3 + static_cast<int>(random() % 4);
        const problems::Dense a = problems::nearlySingular(n, std::pow(10.0, -12.0 - k % 6), random);
        const SparseMatrix s = problems::sparse(n, a);
        const Vectors b = problems::product(s, problems::ones(n));
        for (bool symmetric : {true, false}) {
            const problems::Outcome o = problems::solved(s, b, problems::How{symmetric});
            const double error = problems::relativeError(o.x, problems::exactSolution(n, a, b));
            treated += o.replaced + o.shifted > 0;
            trusted += o.trusted;
            if (o.trusted) {
                EXPECT_LT(error, 0.1) << "seed's system " << k << ": " << o.verdict;
                EXPECT_LT(error, 10.0 * o.bound);
            }
        }
    }
    EXPECT_GT(treated, 400);
    EXPECT_GT(trusted, 400);
}

// Singular to working precision. The residual is small, and so is that of a random right-hand side beside the
// huge solution that M gives to it.
TEST(Bounds, ThreeUnknownsOneOfWhichIsReplacedAreNotTrusted)
{
    const double systems3[][6] = {{1, -907.07763728279883, 12754.880076311343, 822789.84005854477,
                                   -11569666.483445963, 162686965.76110518},
                                  {1, -1039478.5953713282, -438470.38933063671, 1080515750235.2628,
                                   455780584412.96381, 192256282320.94073},
                                  {1, -7171631.3077697484, -297928.61914251919, 51432295614583.234,
                                   2136634212523.1001, 88761462104.181213}};
    for (const auto& [a, b, c, d, e, f] : systems3)
        for (bool symmetric : {true, false}) {
            const SparseMatrix s = problems::sparse(3, {a, b, c, b, d, e, c, e, f});
            const Vectors x = problems::ones(3);
            const problems::Outcome o =
                problems::solved(s, problems::product(s, x), problems::How{symmetric});
            EXPECT_FALSE(o.trusted) << o.verdict;
            EXPECT_GE(o.bound, 0.1);
        }
}

TEST(Bounds, AreTheLargestOverTheColumns)
{
    auto random = support::generator(6);
    const int n = 12;
    const problems::Dense dense = problems::conditioned(n, 1e8, true, random);
    const SparseMatrix a = problems::sparse(n, dense);
    Vectors b(n, 5), one(n, 1);
    for (int j = 0; j < 5; ++j)
        for (int i = 0; i < n; ++i)
            b.column(j)[i] = j == 2 ? 0.0 : std::ldexp(support::ordinary(random), 100 * j);
    const double all = problems::solved(a, b).bound;
    double largest = 0.0;
    for (int j = 0; j < 5; ++j) {
        std::copy(b.column(j), b.column(j) + n, one.value.begin());
        const problems::Outcome o = problems::solved(a, one);
        largest = std::max(largest, o.bound);
        if (j == 2) {
            EXPECT_EQ(o.bound, 0.0);
            EXPECT_TRUE(o.trusted);
        }
    }
    EXPECT_GE(all, 0.3 * largest);
    EXPECT_LE(all, 30.0 * largest);
}

TEST(Bounds, OfADiagonalMatrixAreThoseOfRounding)
{
    const SparseMatrix a = problems::sparse(3, {1e300, 0, 0, 0, 3e-300, 0, 0, 0, 7});
    const problems::Outcome o = problems::solved(a, problems::product(a, problems::ones(3)));
    EXPECT_TRUE(o.trusted);
    EXPECT_LE(o.bound, 0x1p-50);
    EXPECT_GT(o.bound, 0.0);
}

TEST(Bounds, NotANumberIsNotSolved)
{
    for (double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        for (bool symmetric : {true, false}) {
            problems::Dense dense = {4, 1, 2, 1, 5, 1, 2, 1, 6};
            SparseMatrix a = problems::sparse(3, dense);
            Vectors b = problems::ones(3);
            b.value[1] = bad;
            EXPECT_FALSE(problems::solved(a, b, problems::How{symmetric}).trusted);
            b.value[1] = 1.0;
            a.value[4] = bad;
            EXPECT_FALSE(problems::solved(a, b, problems::How{symmetric}).trusted);
        }
}

TEST(Bounds, OneKnownSolutionFoundAgainIsNotEnough)
{
    const SparseMatrix a = problems::sparse(2, {1, 0, 0, 1});
    for (int right : {0, 1, 2, 3}) { // how many solutions with I are
        int calls = 0;
        const Apply solve = [&](Vectors& x) {
            if (calls++ >= right)
                std::fill(x.value.begin(), x.value.end(), 0.0);
        };
        EXPECT_EQ(recover(a, solve, {}).good(), right == 3) << right;
    }
}

// The conditions of the identity add up to 2. With this M^-T, of which the first equation sees nothing, they
// would be some 1e-30, of "solutions" that leave the residual as it was.
TEST(Bounds, ConditionsBelowOneAreThoseOfNoSolutions)
{
    SparseMatrix a = problems::sparse(2, {1, 0, 0, 1});
    a.symmetric = false;
    const Vectors x = problems::ones(2);
    Factorised m{[](Vectors&) {}, [](Vectors&) {}, true};
    EXPECT_LE(boundError(a, x, x, {1, 1}, m).forward(), 0x1p-50);
    m.solveTransposed = [](Vectors& v) { v.value = {0.0, 1e-30 * v.value[0]}; };
    EXPECT_EQ(boundError(a, x, x, {1, 1}, m).forward(), HUGE_VAL);
}

// || |A^-1|*s || of a matrix whose inverse is known: A = L*L^T with ones below, A^-1 tridiagonal.
TEST(Bounds, TheNormOfTheInverseIsEstimatedFromSolutions)
{
    constexpr int n = 50;
    std::vector<double> s(n), weight(n);
    for (int i = 0; i < n; ++i)
        s[i] = 1.0 + i % 3, weight[i] = 1.0 + i % 5;
    const auto inverse = [](Vectors& x) { // X := tridiag(-1, 2, -1)*X
        const Vectors v = x;
        for (int i = 0; i < n; ++i)
            x.value[i] =
                2.0 * v.value[i] - (i > 0 ? v.value[i - 1] : 0.0) - (i + 1 < n ? v.value[i + 1] : 0.0);
        return true;
    };
    double norm = 0.0;
    for (int i = 0; i < n; ++i)
        norm = std::max(norm,
                        weight[i] * (2.0 * s[i] + (i > 0 ? s[i - 1] : 0.0) + (i + 1 < n ? s[i + 1] : 0.0)));
    const double estimate = weightedInverseNorm(weight, s, {inverse, inverse});
    EXPECT_LE(estimate, norm * (1.0 + 1e-14));
    EXPECT_GE(estimate, norm / 3.0);
    const auto fails = [](Vectors&) { return false; };
    EXPECT_EQ(weightedInverseNorm(weight, s, {inverse, fails}), HUGE_VAL);
}
