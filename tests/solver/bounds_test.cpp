// SPDX-License-Identifier: BSD-3-Clause
// The bound on the error beside the error itself.
#include "problems.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct Tally
{
    int systems = 0, above = 0, called = 0; // error above the bound, called solved
    double worst = 0.0;                     // error beside the bound
    std::vector<double> pessimism;          // bound beside the error

    void add(const Outcome& o, double error)
    {
        ++systems;
        called += o.trusted;
        const double bound = o.bound.forward();
        above += error > bound;
        worst = std::max(worst, error / bound);
        if (std::isfinite(bound) && error > 0.0)
            pessimism.push_back(bound / error);
    }
    double median()
    {
        std::nth_element(pessimism.begin(), pessimism.begin() + pessimism.size() / 2, pessimism.end());
        return pessimism.at(pessimism.size() / 2);
    }
};

Tally manySystems(bool symmetric, int count, std::uint64_t number)
{
    auto random = support::generator(number);
    Tally tally;
    for (int k = 0; k < count; ++k) {
        const int n = 3 + static_cast<int>(random() % 18);
        const double condition = std::pow(10.0, 6.0 + 9.0 * k / count);
        const problems::Dense a = problems::conditioned(n, condition, symmetric, random);
        Vectors x(n, 1);
        for (double& value : x.value)
            value = support::ordinary(random);
        const SparseMatrix s = problems::sparse(n, a);
        const Vectors b = problems::product(s, x);
        const Outcome o = problems::solved(s, b, problems::options(symmetric));
        const double error = problems::relativeError(o.answer.x, problems::exactSolution(n, a, b));
        tally.add(o, error);
        if (o.trusted)
            EXPECT_LT(error, 0.1) << "condition " << condition << ", " << o.verdict;
    }
    std::printf("%d systems, %d called solved, error above the bound in %d, at worst %.2g, median pessimism %.2g\n", tally.systems, tally.called, tally.above, tally.worst,
                tally.median());
    return tally;
}

} // namespace

TEST(Bounds, HoldForPositiveDefiniteSystemsOfAnyCondition)
{
    Tally t = manySystems(true, 1500, 1);
    EXPECT_LT(t.worst, 10.0);
}

TEST(Bounds, HoldForUnsymmetricSystemsOfAnyCondition)
{
    Tally t = manySystems(false, 1500, 2);
    EXPECT_LT(t.worst, 10.0);
}
