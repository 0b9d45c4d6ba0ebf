// SPDX-License-Identifier: BSD-3-Clause
// The complex functions over a library that returns complex values in registers or through a hidden first
// argument: one program for each combination of the BLAS's and the LAPACK's convention.
#include "TOVBlaModule.h"
#include "stub.h"

#include <gtest/gtest.h>

namespace {

using Values = std::vector<std::uintptr_t>;

template <class... Arguments>
Values addresses(const Arguments&... arguments)
{
    return {reinterpret_cast<std::uintptr_t>(&arguments)...};
}

// Everything is loaded by now, and nothing has asked for a complex value.
const bool silent_load = stub::calls.empty();

TEST(ComplexResults, NothingIsCalledWhenTheLibraryIsLoaded)
{
    EXPECT_TRUE(silent_load);
}

TEST(ComplexResults, ZdotcOf1PlusIAnd1Is1MinusI)
{
    const int n = 1, step = 1;
    const blac_complex x(1, 1), y(1, 0);
    blac_complex result(99, 99);
    blac_zdotc_(&result, &n, &x, &step, &y, &step);
    EXPECT_EQ(result, blac_complex(1, -1));
}

TEST(ComplexResults, ZdotcHandsOnItsArgumentsAndUsesASlotOfItsOwn)
{
    const int n = 2, incx = 2, incy = 1;
    const blac_complex x[3] = {{1, 2}, {77, 77}, {3, 4}}, y[2] = {{5, 6}, {7, 8}};
    blac_complex result(99, 99);
    blac_zdotc_(&result, &n, x, &incx, y, &incy);
    EXPECT_EQ(result, blac_complex(17 + 53, -4 - 4));

    const stub::Call& made = stub::calls.back();
    EXPECT_EQ(made.name, "zdotc");
    Values values = made.values;
#if BLAS_HIDDEN
    EXPECT_NE(values[0], reinterpret_cast<std::uintptr_t>(&result));
    values.erase(values.begin());
#endif
    EXPECT_EQ(values, addresses(n, x[0], incx, y[0], incy));
}

TEST(ComplexResults, ZdotcOfNothingIsZero)
{
    const int n = 0, step = 1;
    const blac_complex x(1, 1);
    blac_complex result(99, 99);
    blac_zdotc_(&result, &n, &x, &step, &x, &step);
    EXPECT_EQ(result, blac_complex(0, 0));
}

TEST(ComplexResults, ZdotcWritesTheResultLast)
{
    const int n = 1, step = 1;
    blac_complex x(1, 1);
    const blac_complex y(3, 0);
    blac_zdotc_(&x, &n, &x, &step, &y, &step);
    EXPECT_EQ(x, blac_complex(3, -3));
}

TEST(ComplexResults, ZladivDividesInTheConventionOfTheLapackLibrary)
{
    const blac_complex x(-5, 10), y(1, 2);
    blac_complex result(99, 99);
    blac_zladiv_(&result, &x, &y);
    EXPECT_EQ(result, blac_complex(3, 4));

    const stub::Call& made = stub::calls.back();
    EXPECT_EQ(made.name, "zladiv");
    Values values = made.values;
#if LAPACK_HIDDEN
    EXPECT_NE(values[0], reinterpret_cast<std::uintptr_t>(&result));
    values.erase(values.begin());
#endif
    EXPECT_EQ(values, addresses(x, y));
}

TEST(ComplexResults, TheConventionIsTriedOnceInAProcess)
{
    const int n = 1, step = 1;
    const blac_complex x(1, 1);
    blac_complex result;
    blac_zdotc_(&result, &n, &x, &step, &x, &step);
    blac_zladiv_(&result, &x, &x);
    stub::calls.clear();
    for (int i = 0; i < 5; ++i) {
        blac_zdotc_(&result, &n, &x, &step, &x, &step);
        blac_zladiv_(&result, &x, &x);
    }
    EXPECT_EQ(stub::calls.size(), 10u);
}

TEST(ComplexResults, ZdotuPassesTheFiveArgumentsFirstAndReadsSinglePrecision)
{
    const int n = 2, incx = 2, incy = 1;
    const blac_complex x[3] = {}, y[2] = {};
    blac_complex result(99, 99);
    stub::calls.clear();
    blac_zdotu_(&result, &n, x, &incx, y, &incy);
    EXPECT_EQ(result, blac_complex(stub::SingleReading, 0));
    ASSERT_EQ(stub::calls.size(), 1u);
    EXPECT_EQ(stub::calls[0].values, addresses(n, x[0], incx, y[0], incy));
}

} // namespace
