// SPDX-License-Identifier: BSD-3-Clause
// blac_daxpby_ over a library that has no daxpby_.
#include "TOVBlaModule.h"
#include "bits.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using support::bits;
using support::Guarded;

// x and y hold 2, 3, 5 ... and 1, 2, 3 ... where the BLAS convention puts them.
void check(int n, int incx, int incy, std::vector<double> expected)
{
    Guarded<double> x(7), y(7), after(7);
    for (int i = 0; i < 7; ++i) {
        x.set(i, std::vector<double>{2, 3, 5, 7, 11, 13, 17}[i]);
        y.set(i, 1 + i);
        after.set(i, expected[i]);
    }
    const double a = 10, b = -1;
    blac_daxpby_(&n, &a, x, &incx, &b, y, &incy);
    EXPECT_TRUE(support::same_memory(after, y)) << "incx " << incx << ", incy " << incy;
}

TEST(Daxpby, AddsMultiples)
{
    check(7, 1, 1, {19, 28, 47, 66, 105, 124, 163});
    check(4, 2, 2, {19, 2, 47, 4, 105, 6, 163});
}

TEST(Daxpby, NegativeIncrementsRunFromTheFarEnd)
{
    check(7, -1, -1, {19, 28, 47, 66, 105, 124, 163});
    check(4, -2, 1, {169, 108, 47, 16, 5, 6, 7});
    check(4, 1, -2, {69, 2, 47, 4, 25, 6, 13});
}

TEST(Daxpby, IncrementZeroRepeatsTheElement)
{
    check(3, 0, 1, {19, 18, 17, 4, 5, 6, 7});
    check(2, 1, 0, {11, 2, 3, 4, 5, 6, 7});
}

TEST(Daxpby, NonPositiveCountsLeaveYAlone)
{
    check(0, 1, 1, {1, 2, 3, 4, 5, 6, 7});
    check(-3, -1, -1, {1, 2, 3, 4, 5, 6, 7});
}

TEST(Daxpby, AFactorOfZeroKeepsNaN)
{
    const int n = 1, step = 1;
    const double x = 1, a = 1, b = 0;
    double y = std::numeric_limits<double>::quiet_NaN();
    blac_daxpby_(&n, &a, &x, &step, &b, &y, &step);
    EXPECT_TRUE(std::isnan(y));
}

TEST(Daxpby, EachOperationIsRoundedOnItsOwn)
{
    const int n = 1, step = 1;
    const double x = 1 + 0x1p-30, a = 1 - 0x1p-30, b = -1;
    double y = 1; // a·x is 1 - 2^-60 and rounds to 1
    blac_daxpby_(&n, &a, &x, &step, &b, &y, &step);
    EXPECT_EQ(bits(y), bits(0.0));
}

} // namespace
