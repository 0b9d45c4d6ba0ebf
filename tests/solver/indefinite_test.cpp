// SPDX-License-Identifier: BSD-3-Clause
// Elimination without exchanges of rows on matrices that ask for them.
#include "problems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

void expectSolved(int n, double smallest, double largest, std::uint64_t number)
{
    auto random = support::generator(number);
    const SparseMatrix a = problems::indefinite(n, smallest, largest, random);
    const Vectors x = problems::ones(a.n);
    const problems::Outcome o = problems::solved(a, problems::product(a, x));
    const double error = problems::relativeError(o.x, x);
    EXPECT_TRUE(o.trusted) << o.verdict << ", diagonal from " << smallest << ", number " << number;
    EXPECT_LT(error, 10.0 * o.bound);
}

} // namespace

// Accepted, such pivots would multiply rounding errors by 1e13; they are judged against the shift instead.
TEST(Indefinite, DiagonalsNextToNothingAreShifted)
{
    for (int k = 0; k < 40; ++k)
        expectSolved(200, 1e-13, 1e-12, 100 + k);
}

TEST(Indefinite, DiagonalsOfEverySmallSize)
{
    for (int k = 0; k < 40; ++k)
        for (double size = 1e-16; size < 1e-3; size *= 10.0)
            expectSolved(200, size, 10.0 * size, 1000 + k);
}

// Constraints that nearly repeat each other, of any condition: what is called solved is, and what can be
// solved is.
TEST(Indefinite, SaddlePoints)
{
    auto random = support::generator(7);
    int solvable = 0, trusted = 0;
    for (int k = 0; k < 600; ++k) {
        const int n = 6 + static_cast<int>(random() % 25), free = n - n / 3;
        problems::Dense a = problems::conditioned(n, std::pow(10.0, k % 12), true, random);
        for (int i = free; i < n; ++i)
            std::fill_n(a.begin() + free + n * i, n - free, 0.0);
        const double distance = std::pow(10.0, -(k % 17));
        for (int j = 0; j < free; ++j)
            a[j + n * (n - 1)] = a[n - 1 + n * j] = a[n - 2 + n * j] + distance * support::ordinary(random);
        const SparseMatrix s = problems::sparse(n, a);
        const Vectors b = problems::product(s, problems::ones(n));
        const problems::Outcome o = problems::solved(s, b);
        const Vectors exact = problems::exactSolution(n, a, b);
        if (o.trusted)
            EXPECT_LT(problems::relativeError(o.x, exact), 10.0 * o.bound) << o.verdict;
        if (problems::relativeError(exact, problems::ones(n)) < 1e-6) {
            ++solvable;
            trusted += o.trusted;
        }
    }
    EXPECT_GT(solvable, 200);
    EXPECT_GE(trusted, solvable * 99 / 100);
}
