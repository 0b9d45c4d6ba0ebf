// SPDX-License-Identifier: BSD-3-Clause
// Elimination without exchanges of rows on matrices that ask for them.
#include "problems.h"

#include <gtest/gtest.h>

namespace {

void expectSolved(int n, double smallest, double largest, std::uint64_t number)
{
    auto random = support::generator(number);
    const SparseMatrix a = problems::indefinite(n, smallest, largest, random);
    const Vectors x = problems::ones(a.n);
    const problems::Outcome o = problems::solved(a, problems::product(a, x));
    const double error = problems::relativeError(o.x, x);
    EXPECT_TRUE(o.trusted) << o.verdict << ", diagonal from " << smallest << ", number " << number << " "
                           << o.shifted << " " << o.bound << " " << o.residual << " err " << error;
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
