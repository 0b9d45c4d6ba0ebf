// SPDX-License-Identifier: BSD-3-Clause
// Factors of more than 2^31 entries: analysed, announced, and refused where memory_limit does not allow them.
#include "TOVBlaSolver.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

// The lower half of a symmetric matrix, row by row.
struct Lower
{
    std::int32_t n = 0;
    std::vector<std::int64_t> start{0};
    std::vector<std::int32_t> column;

    void endRow()
    {
        column.push_back(n++);
        start.push_back(static_cast<std::int64_t>(column.size()));
    }
};

Lower grid(int nx, int ny, int nz)
{
    Lower a;
    for (int i = 0; i < nx; ++i)
        for (int j = 0; j < ny; ++j)
            for (int k = 0; k < nz; ++k) {
                if (i > 0)
                    a.column.push_back(a.n - ny * nz);
                if (j > 0)
                    a.column.push_back(a.n - nz);
                if (k > 0)
                    a.column.push_back(a.n - 1);
                a.endRow();
            }
    return a;
}

struct Sizes
{
    double entries, flops, memory, largestFront, fronts;
};

constexpr double beyond = 2147483648.0;

// What the analysis says, which must not contradict itself, and that nothing happens within `memory_limit`.
Sizes analysed(const Lower& a, int kind, const std::vector<std::int32_t>& order)
{
    bla_solver* solver = nullptr;
    EXPECT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    const Handle owner(solver);
    const auto get = [&](const char* quantity) {
        double value = -1.0;
        EXPECT_EQ(bla_solver_get(solver, quantity, &value), BLA_SOLVER_OK) << quantity;
        return value;
    };
    if (!order.empty())
        EXPECT_EQ(bla_solver_set_order(solver, a.n, order.data()), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_analyse(solver, kind, a.n, a.start.data(), a.column.data()), BLA_SOLVER_OK)
        << bla_solver_message(solver);
    const Sizes sizes{get("factor_entries"), get("flops"), get("memory"), get("largest_front"),
                      get("fronts")};
    EXPECT_GT(sizes.entries, beyond);
    EXPECT_GT(sizes.memory, 8.0 * sizes.entries);
    EXPECT_LT(sizes.memory, 8.0 * 3.0 * sizes.entries);
    EXPECT_GE(sizes.flops, sizes.entries * sizes.entries / a.n / 2.0); // were all columns of equal length
    EXPECT_LE(sizes.largestFront, a.n);
    EXPECT_LE(sizes.fronts, a.n);

    std::vector<double> value(a.column.size(), -1.0);
    for (std::int32_t i = 0; i < a.n; ++i)
        value[a.start[i + 1] - 1] = 7.0;
    EXPECT_EQ(bla_solver_set(solver, "memory_limit", 8.0 * beyond), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_factorise(solver, value.data()), BLA_SOLVER_OUT_OF_MEMORY);
    EXPECT_NE(std::string(bla_solver_message(solver)).find("memory_limit"), std::string::npos);
    double d;
    EXPECT_EQ(bla_solver_pivots(solver, &d), BLA_SOLVER_NOT_READY);
    EXPECT_EQ(get("factor_entries"), sizes.entries); // the analysis is still there
    return sizes;
}

} // namespace

// The hub of a star is eliminated first, which joins all others: sizes are known.
TEST(Large, ADenseFactorIsCounted)
{
    Lower a;
    a.endRow();
    for (int i = 1; i < 66000; ++i) {
        a.column.push_back(0);
        a.endRow();
    }
    std::vector<std::int32_t> order(a.n);
    std::iota(order.begin(), order.end(), 0);
    const double n = a.n, lower = n * (n + 1) / 2;
    const Sizes symmetric = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, order);
    EXPECT_EQ(symmetric.entries, lower);
    EXPECT_EQ(symmetric.largestFront, n);
    double flops = 0.0;
    for (double m = 0; m < n; ++m)
        flops += m * (m + 2);
    EXPECT_NEAR(symmetric.flops / flops, 1.0, 1e-12);
    EXPECT_NEAR(symmetric.memory / (8.0 * n * n), 1.0, 0.01);
    const Sizes general = analysed(a, BLA_SOLVER_GENERAL, order);
    EXPECT_EQ(general.entries, n * n);
    EXPECT_NEAR(general.flops / symmetric.flops, 2.0, 1e-12);
    EXPECT_NEAR(general.memory / (8.0 * n * n), 1.0, 0.01);
}

// Plane by plane a grid has a band of the width of a plane.
TEST(Large, AGridInItsOwnOrder)
{
    const int nx = 140, ny = 64, nz = 64;
    const Lower a = grid(nx, ny, nz);
    std::vector<std::int32_t> order(a.n);
    std::iota(order.begin(), order.end(), 0);
    const Sizes sizes = analysed(a, BLA_SOLVER_SYMMETRIC_LOWER, order);
    const double band = 1.0 * a.n * (ny * nz + 1);
    EXPECT_GT(sizes.entries, 0.95 * band);
    EXPECT_LT(sizes.entries, 1.1 * band); // some zeros may be stored for larger fronts
}

// A minute and 2 GB: a long check.
TEST(Large, ACube)
{
    const int side = 140;
    const Sizes sizes = analysed(grid(side, side, side), BLA_SOLVER_SYMMETRIC_LOWER, {});
    EXPECT_LT(sizes.largestFront, 3.0 * side * side);
    EXPECT_LT(sizes.entries, 2e10);
}
