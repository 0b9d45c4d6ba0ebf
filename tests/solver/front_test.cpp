// SPDX-License-Identifier: BSD-3-Clause
// The elimination of one front against plain elimination of the same dense matrix, pivot by pivot.
#include "front.h"
#include "random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace support;

namespace {

struct Dense
{
    int n = 0;
    std::vector<double> a;

    explicit Dense(int order) : n(order), a(static_cast<std::size_t>(order) * order, 0.0) {}
    double& operator()(int i, int j) { return a[i + static_cast<std::size_t>(n) * j]; }
    double operator()(int i, int j) const { return a[i + static_cast<std::size_t>(n) * j]; }
};

// A front of p pivots and m rows that stay; nothing stands where the Schur complement goes.
struct Case
{
    int p, m;
    bool symmetric;
    Dense f;
    std::vector<int> negative;

    Case(int pivots, int rest, bool sym)
        : p(pivots), m(rest), symmetric(sym), f(pivots + rest), negative(pivots, 0)
    {
    }
};

// Pivots of both signs that outweigh their rows and columns.
Case drawn(int p, int m, bool symmetric, std::mt19937_64& random)
{
    Case c(p, m, symmetric);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int j = 0; j < p; ++j)
        for (int i = j + 1; i < p + m; ++i) {
            c.f(i, j) = uniform(random);
            c.f(j, i) = symmetric ? c.f(i, j) : uniform(random);
        }
    for (int j = 0; j < p; ++j)
        c.f(j, j) = (random() % 2 ? 1 : -1) * (0.6 * (p + m) + 2.0 + uniform(random));
    for (int& flag : c.negative)
        flag = static_cast<int>(random() % 2);
    return c;
}

struct Expected
{
    Dense f;
    std::vector<double> d;
    std::vector<char> treated;
};

// Row k of the result holds D*U, column k holds L*D, what is left is the Schur complement.
Expected eliminated(const Case& c, const PivotRule& rule)
{
    Expected e{c.f, std::vector<double>(c.p), std::vector<char>(c.p, 0)};
    for (int k = 0; k < c.p; ++k) {
        double& pivot = e.f(k, k);
        if (!(std::fabs(pivot) > rule.tolerance)) {
            e.treated[k] = 1;
            pivot = rule.shift > 0.0 ? pivot + (c.negative[k] == 1 ? -rule.shift : rule.shift) : 1e36;
        }
        e.d[k] = pivot;
        for (int j = k + 1; j < e.f.n; ++j) {
            const double multiplier = e.f(k, j) / pivot;
            if (multiplier != 0.0)
                for (int i = k + 1; i < e.f.n; ++i)
                    e.f(i, j) -= e.f(i, k) * multiplier;
        }
    }
    return e;
}

void expect_as(const Expected& e, const Case& c, const PivotRule& rule)
{
    const int p = c.p, m = c.m, order = p + m;
    // What is not to be read is NaN: the other triangle of a symmetric front, and C, which is overwritten.
    std::vector<double> panel(static_cast<std::size_t>(order) * p), right(static_cast<std::size_t>(p) * m),
        schur(static_cast<std::size_t>(m) * m, NAN), d(p, NAN), dinv(p, NAN), correction(p, NAN);
    for (int j = 0; j < p; ++j)
        for (int i = 0; i < order; ++i)
            panel[i + static_cast<std::size_t>(order) * j] = c.symmetric && i < j ? NAN : c.f(i, j);
    for (int j = 0; j < m; ++j)
        for (int i = 0; i < p; ++i)
            right[i + static_cast<std::size_t>(p) * j] = c.f(i, p + j);
    const std::vector<double> tolerance(p, rule.tolerance / rule.shift), shift(p, rule.shift);
    const Pivots out{d.data(),          dinv.data(),      c.negative.data(),
                     correction.data(), tolerance.data(), shift.data()};
    if (c.symmetric)
        eliminateSymmetric(rule, p, m, panel.data(), schur.data(), out);
    else
        eliminateUnsymmetric(rule, p, m, panel.data(), right.data(), schur.data(), out);

    double size = 0.0;
    for (double x : c.f.a)
        size = std::max(size, std::fabs(x));
    for (double x : e.f.a)
        size = std::max(size, std::fabs(x) < 1e30 ? std::fabs(x) : 0.0);
    const double bound = 8.0 * order * 0x1p-53 * size;
    const auto near = [&](double expected, double actual) {
        return std::fabs(expected - actual) <= std::max(bound, 1e-13 * std::fabs(expected));
    };
    for (int k = 0; k < p; ++k) {
        ASSERT_TRUE(near(e.d[k], d[k])) << "pivot " << k << ": " << e.d[k] << ", got " << d[k];
        ASSERT_LE(std::fabs(d[k] * dinv[k] - 1.0), 0x1p-51) << "reciprocal of pivot " << k;
        if (rule.shift > 0.0)
            ASSERT_EQ(correction[k] != 0.0, e.treated[k] == 1) << "pivot " << k;
        for (int i = k; i < order; ++i)
            ASSERT_TRUE(near(e.f(i, k), panel[i + static_cast<std::size_t>(order) * k]))
                << "L*D at " << i << ", " << k;
        for (int j = k + 1; j < order && !c.symmetric; ++j) {
            const double u = j < p ? panel[k + static_cast<std::size_t>(order) * j]
                                   : right[k + static_cast<std::size_t>(p) * (j - p)];
            ASSERT_TRUE(near(e.f(k, j) / e.d[k], u)) << "U at " << k << ", " << j;
        }
    }
    for (int j = 0; j < m; ++j)
        for (int i = c.symmetric ? j : 0; i < m; ++i)
            ASSERT_TRUE(near(e.f(p + i, p + j), schur[i + static_cast<std::size_t>(m) * j]))
                << "Schur complement at " << i << ", " << j << ": " << e.f(p + i, p + j) << ", got "
                << schur[i + static_cast<std::size_t>(m) * j];
}

// Around the block sizes, with few and with many rows below, and beyond the width of a piece of a product.
constexpr int Shapes[][2] = {{1, 0},    {1, 1},     {1, 40},    {2, 3},    {5, 0},    {24, 25},
                             {31, 7},   {32, 96},   {33, 95},   {33, 99},  {40, 30},  {48, 0},
                             {49, 150}, {64, 20},   {65, 96},   {97, 200}, {128, 33}, {129, 97},
                             {200, 60}, {257, 100}, {300, 130}, {3, 1310}};

class Fronts : public ::testing::TestWithParam<bool>
{
};

TEST_P(Fronts, AreEliminatedLikeADenseMatrix)
{
    auto random = generator(31);
    for (const auto& [p, m] : Shapes) {
        const Case c = drawn(p, m, GetParam(), random);
        for (double shift : {0.0, 0x1p-20}) {
            const Expected e = eliminated(c, {1e-14, shift, 0});
            for (int nb : {0, 1, 7, 32, 48, 80, 500}) {
                SCOPED_TRACE(::testing::Message() << p << " pivots, " << m << " rows below, panels of " << nb
                                                  << ", shift " << shift);
                expect_as(e, c, {1e-14, shift, nb});
                if (HasFatalFailure())
                    return;
            }
        }
    }
}

TEST_P(Fronts, TreatTheirTinyPivotsByTheRule)
{
    auto random = generator(32);
    const double tolerance = 1e-3, above = std::nextafter(tolerance, 1.0);
    for (int round = 0; round < 60; ++round) {
        Case c =
            drawn(1 + static_cast<int>(random() % 70), static_cast<int>(random() % 40), GetParam(), random);
        const double values[] = {0.0, tolerance, -tolerance, above, -above, 0.5 * tolerance, -1e-20};
        for (int k = 0; k < c.p; ++k)
            if (random() % 3 == 0) { // a pivot that keeps its value
                for (int i = 0; i < c.f.n; ++i)
                    c.f(i, k) = c.f(k, i) = 0.0;
                c.f(k, k) = values[random() % 7];
            }
        if (round % 2) { // and one with a row and a column, small enough not to spoil the pivots behind
            for (int i = 1; i < c.f.n; ++i) {
                c.f(i, 0) *= 0x1p-4;
                c.f(0, i) *= 0x1p-4;
            }
            c.f(0, 0) = 0.0;
        }
        for (double shift : {0.0, 0x1p-4})
            for (int nb : {0, 5}) {
                SCOPED_TRACE(::testing::Message() << "round " << round << ", shift " << shift);
                const PivotRule rule{tolerance, shift, nb};
                expect_as(eliminated(c, rule), c, rule);
                if (HasFatalFailure())
                    return;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(Solver, Fronts, ::testing::Bool(),
                         [](const auto& symmetric) { return symmetric.param ? "symmetric" : "unsymmetric"; });

} // namespace
