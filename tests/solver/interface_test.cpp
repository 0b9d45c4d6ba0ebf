// SPDX-License-Identifier: BSD-3-Clause
// The C interface as a caller meets it: what is accepted, refused, kept and given back.
#include "TOVBlaSolver.h"

#include <TOVBlaModule.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

Handle create()
{
    bla_solver* solver = nullptr;
    EXPECT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    return Handle(solver);
}

double get(const Handle& solver, const char* quantity)
{
    double value = -1.0;
    EXPECT_EQ(bla_solver_get(solver.get(), quantity, &value), BLA_SOLVER_OK) << quantity;
    return value;
}

// A dense matrix, and its compressed rows.
struct Matrix
{
    int n;
    std::vector<double> dense; // row by row
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> column;
    std::vector<double> value;

    Matrix(int order, std::vector<double> entries) : n(order), dense(std::move(entries)) { compress(); }
    double operator()(int i, int j) const { return dense[static_cast<std::size_t>(i) * n + j]; }

    void compress()
    {
        start.assign(1, 0);
        column.clear();
        value.clear();
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j)
                if ((*this)(i, j) != 0.0) {
                    column.push_back(j);
                    value.push_back((*this)(i, j));
                }
            start.push_back(static_cast<std::int64_t>(column.size()));
        }
    }
    std::vector<double> times(const std::vector<double>& x, bool transposed = false) const
    {
        std::vector<double> y(n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                y[i] += (transposed ? (*this)(j, i) : (*this)(i, j)) * x[j];
        return y;
    }
};

enum class Sign { definite, indefinite };

// Random, sparse, diagonally dominant.
Matrix randomMatrix(int n, bool symmetric, Sign sign, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    std::vector<double> a(static_cast<std::size_t>(n) * n, 0.0);
    for (int e = 0; e < 3 * n; ++e) {
        const int i = static_cast<int>(random() % n), j = static_cast<int>(random() % n);
        a[static_cast<std::size_t>(i) * n + j] = entry(random);
        if (symmetric)
            a[static_cast<std::size_t>(j) * n + i] = a[static_cast<std::size_t>(i) * n + j];
    }
    for (int i = 0; i < n; ++i) {
        double sum = 1.0;
        for (int j = 0; j < n; ++j)
            if (j != i)
                sum += std::fabs(a[static_cast<std::size_t>(i) * n + j]) +
                       std::fabs(a[static_cast<std::size_t>(j) * n + i]);
        a[static_cast<std::size_t>(i) * n + i] = sign == Sign::indefinite && i % 3 == 1 ? -sum : sum;
    }
    return Matrix(n, a);
}

std::vector<double> ramp(int n)
{
    std::vector<double> x(n);
    for (int i = 0; i < n; ++i)
        x[i] = 1.0 + i % 7;
    return x;
}

int analyse(const Handle& solver, int kind, const Matrix& a)
{
    return bla_solver_analyse(solver.get(), kind, a.n, a.start.data(), a.column.data());
}

void prepare(const Handle& solver, int kind, const Matrix& a)
{
    ASSERT_EQ(analyse(solver, kind, a), BLA_SOLVER_OK) << bla_solver_message(solver.get());
    ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK)
        << bla_solver_message(solver.get());
}

std::vector<double> solved(const Handle& solver, std::vector<double> b, int transposed = 0)
{
    EXPECT_EQ(bla_solver_solve(solver.get(), transposed, 1, b.data(), static_cast<std::int64_t>(b.size())),
              BLA_SOLVER_OK)
        << bla_solver_message(solver.get());
    return b;
}

double difference(const std::vector<double>& x, const std::vector<double>& y)
{
    double worst = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i)
        worst = std::max(worst, std::fabs(x[i] - y[i]));
    return worst;
}

const int kinds[] = {BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_SYMMETRIC_UPPER, BLA_SOLVER_GENERAL};

} // namespace

TEST(Interface, SolvesWhateverTheKind)
{
    for (int n : {1, 2, 3, 17, 60})
        for (Sign sign : {Sign::definite, Sign::indefinite}) {
            const Matrix a = randomMatrix(n, true, sign, 3 * n);
            const std::vector<double> x = ramp(n), b = a.times(x);
            for (int kind : kinds) {
                const Handle solver = create();
                prepare(solver, kind, a);
                EXPECT_LT(difference(solved(solver, b), x), 1e-12) << n << " " << kind;
                EXPECT_EQ(get(solver, "n"), n);
                EXPECT_EQ(get(solver, "entries"), static_cast<double>(a.column.size()));
                EXPECT_EQ(get(solver, "replaced_pivots") + get(solver, "shifted_pivots"), 0);
                if (kind != BLA_SOLVER_GENERAL)
                    EXPECT_EQ(get(solver, "negative_pivots"), sign == Sign::indefinite ? (n + 1) / 3 : 0);
            }
        }
}

TEST(Interface, SolvesWithTheTransposedMatrix)
{
    const Matrix a = randomMatrix(40, false, Sign::indefinite, 5);
    const std::vector<double> x = ramp(40);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_GENERAL, a);
    EXPECT_LT(difference(solved(solver, a.times(x, true), 1), x), 1e-12);
    EXPECT_LT(difference(solved(solver, a.times(x, false), 0), x), 1e-12);
    EXPECT_GT(difference(solved(solver, a.times(x, true), 0), x), 1e-3);
}

TEST(Interface, IgnoresTheOtherTriangle)
{
    const Matrix a = randomMatrix(30, true, Sign::definite, 6);
    const std::vector<double> x = ramp(30), b = a.times(x);
    for (int kind : {BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_SYMMETRIC_UPPER}) {
        Matrix spoilt = a;
        for (int i = 0; i < a.n; ++i)
            for (std::int64_t e = a.start[i]; e < a.start[i + 1]; ++e)
                if (kind == BLA_SOLVER_SYMMETRIC_LOWER ? a.column[e] > i : a.column[e] < i)
                    spoilt.value[e] = std::numeric_limits<double>::quiet_NaN();
        const Handle solver = create();
        prepare(solver, kind, spoilt);
        EXPECT_LT(difference(solved(solver, b), x), 1e-12);
    }
}

TEST(Interface, TakesEntriesInAnyOrderAndAddsDuplicates)
{
    const Matrix a = randomMatrix(25, true, Sign::indefinite, 7);
    const std::vector<double> x = ramp(25), b = a.times(x);
    std::mt19937 random(8);
    for (int kind : kinds) {
        // Every entry in two or three exact parts, rows shuffled, and something before the first row.
        std::vector<std::int64_t> start{5};
        std::vector<std::int32_t> column(5, -77);
        std::vector<double> value(5, std::numeric_limits<double>::quiet_NaN());
        for (int i = 0; i < a.n; ++i) {
            std::vector<std::pair<std::int32_t, double>> row;
            for (std::int64_t e = a.start[i]; e < a.start[i + 1]; ++e) {
                row.push_back({a.column[e], 0.5 * a.value[e]});
                row.push_back({a.column[e], 0.25 * a.value[e]});
                row.push_back({a.column[e], 0.25 * a.value[e]});
            }
            std::shuffle(row.begin(), row.end(), random);
            for (const auto& [j, v] : row) {
                column.push_back(j);
                value.push_back(v);
            }
            start.push_back(static_cast<std::int64_t>(column.size()));
        }
        const Handle solver = create();
        ASSERT_EQ(bla_solver_analyse(solver.get(), kind, a.n, start.data(), column.data()), BLA_SOLVER_OK);
        ASSERT_EQ(bla_solver_factorise(solver.get(), value.data()), BLA_SOLVER_OK);
        EXPECT_LT(difference(solved(solver, b), x), 1e-12) << kind;
        EXPECT_EQ(get(solver, "entries"), static_cast<double>(a.column.size()));
    }
}

TEST(Interface, NewValuesNeedNoNewAnalysis)
{
    Matrix a = randomMatrix(50, true, Sign::definite, 9);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    const double analysis = get(solver, "seconds_analyse");
    for (double factor : {2.0, -3.0, 1e-200, 1e200}) {
        Matrix scaled = a;
        for (double& v : scaled.dense)
            v *= factor;
        scaled.compress();
        ASSERT_EQ(bla_solver_factorise(solver.get(), scaled.value.data()), BLA_SOLVER_OK);
        const std::vector<double> x = ramp(50);
        EXPECT_LT(difference(solved(solver, scaled.times(x)), x), 1e-11) << factor;
    }
    EXPECT_EQ(get(solver, "seconds_analyse"), analysis);
}

TEST(Interface, LeavesTheGapsOfBlocksAlone)
{
    const int n = 12, columns = 5;
    const std::int64_t ldb = 15, ldx = 14;
    const Matrix a = randomMatrix(n, false, Sign::definite, 10);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_GENERAL, a);
    const double canary = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> b(ldb * columns, canary), x(ldx * columns, canary);
    for (int j = 0; j < columns; ++j) {
        std::vector<double> known = ramp(n);
        for (double& v : known)
            v += j;
        const std::vector<double> right = a.times(known);
        std::copy(right.begin(), right.end(), b.begin() + j * ldb);
        std::copy(right.begin(), right.end(), x.begin() + j * ldx);
    }
    const std::vector<double> given = b;
    ASSERT_EQ(bla_solver_solve(solver.get(), 0, columns, x.data(), ldx), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_refine(solver.get(), a.value.data(), columns, b.data(), ldb, x.data(), ldx),
              BLA_SOLVER_OK);
    for (int j = 0; j < columns; ++j) {
        for (int i = 0; i < n; ++i)
            EXPECT_NEAR(x[i + j * ldx], 1.0 + i % 7 + j, 1e-12);
        for (int i = n; i < ldx; ++i)
            EXPECT_TRUE(std::isnan(x[i + j * ldx]));
    }
    for (std::size_t i = 0; i < b.size(); ++i)
        EXPECT_TRUE(b[i] == given[i] || (std::isnan(b[i]) && std::isnan(given[i])));
    EXPECT_LT(get(solver, "error_estimate"), 1e-12);
    EXPECT_LT(get(solver, "residual"), 1e-15);
}

TEST(Interface, AnEmptyMatrixIsSolved)
{
    for (int kind : kinds) {
        const Handle solver = create();
        const std::int64_t start = 0;
        ASSERT_EQ(bla_solver_analyse(solver.get(), kind, 0, &start, nullptr), BLA_SOLVER_OK)
            << bla_solver_message(solver.get());
        ASSERT_EQ(bla_solver_factorise(solver.get(), nullptr), BLA_SOLVER_OK)
            << bla_solver_message(solver.get());
        EXPECT_EQ(bla_solver_solve(solver.get(), 0, 1, nullptr, 1), BLA_SOLVER_OK);
        EXPECT_EQ(bla_solver_refine(solver.get(), nullptr, 1, nullptr, 1, nullptr, 1), BLA_SOLVER_OK);
        EXPECT_EQ(get(solver, "fronts"), 0);
        EXPECT_EQ(get(solver, "factor_entries"), 0);
        EXPECT_EQ(get(solver, "error_estimate"), 0);
    }
}

TEST(Interface, NoRightHandSidesAreNothingToDo)
{
    const Matrix a = randomMatrix(5, true, Sign::definite, 11);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_SYMMETRIC_UPPER, a);
    EXPECT_EQ(bla_solver_solve(solver.get(), 1, 0, nullptr, 5), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_refine(solver.get(), a.value.data(), 0, nullptr, 5, nullptr, 5), BLA_SOLVER_OK);
}

TEST(Interface, PivotsAreThoseOfTheMatrixAsGiven)
{
    // Powers of ten apart, so that scaling has something to do; the product of the pivots is the determinant.
    const Matrix a(3, {4e8, 2e3, 0, 2e3, 1e-1, 3e-4, 0, 3e-4, -5e-6});
    const double determinant = 4e8 * (1e-1 * -5e-6 - 3e-4 * 3e-4) - 2e3 * (2e3 * -5e-6);
    for (const std::vector<std::int32_t>& order :
         {std::vector<std::int32_t>{0, 1, 2}, {2, 1, 0}, {1, 0, 2}, {1, 2, 0}}) {
        const Handle solver = create();
        ASSERT_EQ(bla_solver_set_order(solver.get(), 3, order.data()), BLA_SOLVER_OK);
        prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
        std::vector<double> d(3);
        ASSERT_EQ(bla_solver_pivots(solver.get(), d.data()), BLA_SOLVER_OK);
        EXPECT_NEAR(d[0] * d[1] * d[2] / determinant, 1.0, 1e-12);
        EXPECT_EQ(get(solver, "ordering_used"), 3);
    }
    const Handle general = create();
    prepare(general, BLA_SOLVER_GENERAL, a);
    double d[3];
    EXPECT_EQ(bla_solver_pivots(general.get(), d), BLA_SOLVER_BAD_ARGUMENT);
}

TEST(Interface, AGivenOrderDecidesTheFill)
{
    // An arrow: with the hub first everything fills up, with the hub last nothing does.
    const int n = 40;
    std::vector<double> dense(n * n, 0.0);
    for (int i = 0; i < n; ++i) {
        dense[i] = dense[i * n] = 1.0;
        dense[i * n + i] = i == 0 ? 2.0 * n : 2.0;
    }
    const Matrix a(n, dense);
    std::vector<std::int32_t> order(n);
    for (int i = 0; i < n; ++i)
        order[i] = i;
    const Handle solver = create();
    ASSERT_EQ(bla_solver_set_order(solver.get(), n, order.data()), BLA_SOLVER_OK);
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    EXPECT_EQ(get(solver, "factor_entries"), n * (n + 1) / 2);
    std::reverse(order.begin(), order.end());
    ASSERT_EQ(bla_solver_set_order(solver.get(), n, order.data()), BLA_SOLVER_OK);
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    EXPECT_LT(get(solver, "factor_entries"), 6 * n); // some zeros may be stored for larger fronts
    ASSERT_EQ(bla_solver_set_order(solver.get(), 0, nullptr), BLA_SOLVER_OK);
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    EXPECT_NE(get(solver, "ordering_used"), 3);
    EXPECT_EQ(get(solver, "ordering"), 0);
}

TEST(Interface, ReplacedPivotsAreListed)
{
    // Two free chains of three and a supported one: one motion of each free chain is not held.
    std::vector<double> dense(81, 0.0);
    for (int chain = 0; chain < 3; ++chain)
        for (int e = 0; e < 2; ++e) {
            const int i = 3 * chain + e, j = i + 1;
            dense[i * 9 + i] += 1;
            dense[j * 9 + j] += 1;
            dense[i * 9 + j] = dense[j * 9 + i] = -1;
        }
    dense[0] += 1;
    const Matrix a(9, dense);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    ASSERT_EQ(get(solver, "replaced_pivots"), 2);
    std::int32_t unknowns[2];
    ASSERT_EQ(bla_solver_replaced(solver.get(), unknowns), BLA_SOLVER_OK);
    EXPECT_EQ(unknowns[0] / 3, 1);
    EXPECT_EQ(unknowns[1] / 3, 2);
    std::vector<double> b(9, 1.0), x = solved(solver, b);
    ASSERT_EQ(bla_solver_refine(solver.get(), a.value.data(), 1, b.data(), 9, x.data(), 9), BLA_SOLVER_OK);
    EXPECT_GT(get(solver, "error_estimate"), 0.1);
}

TEST(Interface, KeptUnknownsGiveTheSchurComplement)
{
    for (bool symmetric : {true, false})
        for (int count : {1, 4, 20}) {
            const int n = 20;
            const Matrix a = randomMatrix(n, symmetric, Sign::indefinite, 12);
            std::vector<std::int32_t> kept(n);
            for (int i = 0; i < n; ++i)
                kept[i] = (7 * i + 3) % n;
            kept.resize(count);
            const Handle solver = create();
            ASSERT_EQ(bla_solver_set_schur(solver.get(), count, kept.data()), BLA_SOLVER_OK);
            prepare(solver, symmetric ? BLA_SOLVER_SYMMETRIC_LOWER : BLA_SOLVER_GENERAL, a);
            const std::int64_t ldc = count + 2;
            std::vector<double> c(ldc * count, -1.0);
            ASSERT_EQ(bla_solver_schur(solver.get(), c.data(), ldc), BLA_SOLVER_OK)
                << bla_solver_message(solver.get());

            // Dense: eliminate the others one by one.
            std::vector<double> s = a.dense;
            for (int k = 0; k < n; ++k) {
                if (std::find(kept.begin(), kept.end(), k) != kept.end())
                    continue;
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j < n; ++j)
                        if (i != k && j != k)
                            s[i * n + j] -= s[i * n + k] * s[k * n + j] / s[k * n + k];
                for (int i = 0; i < n; ++i)
                    if (i != k)
                        s[i * n + k] = s[k * n + i] = 0.0;
            }
            for (int j = 0; j < count; ++j) {
                for (int i = 0; i < count; ++i)
                    EXPECT_NEAR(c[i + j * ldc], s[kept[i] * n + kept[j]], 1e-12) << symmetric << count;
                for (int i = count; i < ldc; ++i)
                    EXPECT_EQ(c[i + j * ldc], -1.0);
            }
            const std::vector<double> x = ramp(n);
            EXPECT_LT(difference(solved(solver, a.times(x)), x), 1e-12);
        }
}

TEST(Interface, SchurComplementsOfLooseStructuresAreExact)
{
    // A free chain condensed to its ends is one spring: singular, and no pivot of the others is.
    const Matrix a(4, {1, -1, 0, 0, -1, 2, -1, 0, 0, -1, 2, -1, 0, 0, -1, 1});
    const std::int32_t kept[] = {3, 0};
    const Handle solver = create();
    ASSERT_EQ(bla_solver_set_schur(solver.get(), 2, kept), BLA_SOLVER_OK);
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    double c[4];
    ASSERT_EQ(bla_solver_schur(solver.get(), c, 2), BLA_SOLVER_OK);
    const double third = 1.0 / 3.0;
    EXPECT_NEAR(c[0], third, 1e-15);
    EXPECT_NEAR(c[1], -third, 1e-15);
    EXPECT_NEAR(c[2], -third, 1e-15);
    EXPECT_NEAR(c[3], third, 1e-15);
}

TEST(Interface, RefusesWhatMakesNoSense)
{
    const Matrix a = randomMatrix(6, true, Sign::definite, 13);
    const Handle solver = create();
    bla_solver* const s = solver.get();
    const std::int64_t* const start = a.start.data();
    const std::int32_t* const column = a.column.data();
    double x[6] = {}, value = 0.0;

    const auto refused = [&](int status, int expected, const char* says) {
        EXPECT_EQ(status, expected) << says;
        EXPECT_NE(std::string(bla_solver_message(s)).find(says), std::string::npos) << bla_solver_message(s);
    };
    EXPECT_EQ(bla_solver_create(nullptr), BLA_SOLVER_BAD_ARGUMENT);
    bla_solver_destroy(nullptr);
    EXPECT_EQ(bla_solver_solve(nullptr, 0, 1, x, 6), BLA_SOLVER_BAD_ARGUMENT);
    EXPECT_STRNE(bla_solver_message(nullptr), "");
    EXPECT_STREQ(bla_solver_message(s), "");

    refused(bla_solver_set(s, "thread", 1), BLA_SOLVER_BAD_ARGUMENT, "threads");
    refused(bla_solver_set(s, nullptr, 1), BLA_SOLVER_BAD_ARGUMENT, "name");
    refused(bla_solver_set(s, "tolerance", -1), BLA_SOLVER_BAD_ARGUMENT, "tolerance");
    refused(bla_solver_set(s, "tolerance", std::nan("")), BLA_SOLVER_BAD_ARGUMENT, "tolerance");
    refused(bla_solver_set(s, "panel_width", 1.5), BLA_SOLVER_BAD_ARGUMENT, "panel_width");
    refused(bla_solver_set(s, "ordering", 4), BLA_SOLVER_BAD_ARGUMENT, "ordering");
    refused(bla_solver_get(s, "fill", &value), BLA_SOLVER_BAD_ARGUMENT, "factor_entries");
    refused(bla_solver_get(s, "n", nullptr), BLA_SOLVER_BAD_ARGUMENT, "place");

    refused(bla_solver_get(s, "n", &value), BLA_SOLVER_NOT_READY, "analys");
    refused(bla_solver_factorise(s, x), BLA_SOLVER_NOT_READY, "analys");
    refused(bla_solver_analyse(s, 3, 6, start, column), BLA_SOLVER_BAD_ARGUMENT, "kind");
    refused(bla_solver_analyse(s, 0, -1, start, column), BLA_SOLVER_BAD_ARGUMENT, "negative");
    refused(bla_solver_analyse(s, 0, 6, nullptr, column), BLA_SOLVER_BAD_ARGUMENT, "pointers");
    refused(bla_solver_analyse(s, 0, 6, start, nullptr), BLA_SOLVER_BAD_ARGUMENT, "columns");
    refused(bla_solver_analyse(s, 2, 5, start, column), BLA_SOLVER_BAD_MATRIX, "outside");
    std::vector<std::int64_t> descending = a.start;
    std::swap(descending[2], descending[3]);
    refused(bla_solver_analyse(s, 0, 6, descending.data(), column), BLA_SOLVER_BAD_MATRIX, "descend");
    const std::int32_t twice[] = {0, 1, 2, 3, 4, 4}, outside[] = {0, 6};
    refused(bla_solver_set_order(s, 6, twice), BLA_SOLVER_BAD_ARGUMENT, "order[5]");
    refused(bla_solver_set_order(s, 6, nullptr), BLA_SOLVER_BAD_ARGUMENT, "missing");
    ASSERT_EQ(bla_solver_set_schur(s, 2, outside), BLA_SOLVER_OK); // n is not known yet
    refused(bla_solver_analyse(s, 0, 6, start, column), BLA_SOLVER_BAD_ARGUMENT, "6");
    ASSERT_EQ(bla_solver_set_schur(s, 0, nullptr), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_set(s, "ordering", 3), BLA_SOLVER_OK);
    refused(bla_solver_analyse(s, 0, 6, start, column), BLA_SOLVER_BAD_ARGUMENT, "order");
    ASSERT_EQ(bla_solver_set(s, "ordering", 0), BLA_SOLVER_OK);

    ASSERT_EQ(analyse(solver, 0, a), BLA_SOLVER_OK);
    EXPECT_STREQ(bla_solver_message(s), "");
    refused(bla_solver_solve(s, 0, 1, x, 6), BLA_SOLVER_NOT_READY, "factor");
    refused(bla_solver_get(s, "replaced_pivots", &value), BLA_SOLVER_NOT_READY, "factor");
    refused(bla_solver_factorise(s, nullptr), BLA_SOLVER_BAD_ARGUMENT, "values");
    ASSERT_EQ(bla_solver_factorise(s, a.value.data()), BLA_SOLVER_OK);
    refused(bla_solver_get(s, "error_estimate", &value), BLA_SOLVER_NOT_READY, "refine");
    refused(bla_solver_solve(s, 2, 1, x, 6), BLA_SOLVER_BAD_ARGUMENT, "transposed");
    refused(bla_solver_solve(s, 0, -1, x, 6), BLA_SOLVER_BAD_ARGUMENT, "negative");
    refused(bla_solver_solve(s, 0, 1, x, 5), BLA_SOLVER_BAD_ARGUMENT, "leading");
    refused(bla_solver_solve(s, 0, 1, nullptr, 6), BLA_SOLVER_BAD_ARGUMENT, "b is missing");
    refused(bla_solver_refine(s, a.value.data(), 1, x, 6, nullptr, 6), BLA_SOLVER_BAD_ARGUMENT,
            "x is missing");
    refused(bla_solver_refine(s, nullptr, 1, x, 6, x, 6), BLA_SOLVER_BAD_ARGUMENT, "values");
    refused(bla_solver_pivots(s, nullptr), BLA_SOLVER_BAD_ARGUMENT, "missing");
    refused(bla_solver_schur(s, x, 6), BLA_SOLVER_NOT_READY, "kept");
}

TEST(Interface, FailuresLeaveTheHandleAsItWas)
{
    for (int kind : kinds) {
        const Matrix a = randomMatrix(30, true, Sign::indefinite, 14);
        const std::vector<double> b = ramp(30);
        const Handle solver = create();
        prepare(solver, kind, a);
        const std::vector<double> x = solved(solver, b);
        const auto intact = [&] { EXPECT_EQ(solved(solver, b), x) << kind; };

        Matrix bad = a;
        bad.value.back() = std::numeric_limits<double>::infinity();
        EXPECT_EQ(bla_solver_factorise(solver.get(), bad.value.data()), BLA_SOLVER_BAD_MATRIX);
        intact();
        bad.column.back() = 30;
        EXPECT_EQ(analyse(solver, kind, bad), BLA_SOLVER_BAD_MATRIX);
        intact();
        ASSERT_EQ(bla_solver_set(solver.get(), "memory_limit", 1), BLA_SOLVER_OK);
        EXPECT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OUT_OF_MEMORY);
        intact();
        ASSERT_EQ(bla_solver_set(solver.get(), "memory_limit", 0), BLA_SOLVER_OK);
        EXPECT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
        intact();
    }
}

namespace {

// Lets `left` calls pass, then cancels.
struct Countdown
{
    long left, calls = 0;
    std::vector<std::string> phases;
    double last = 0.0;

    static int monitor(void* context, const char* phase, double share)
    {
        Countdown& self = *static_cast<Countdown*>(context);
        ++self.calls;
        EXPECT_TRUE(share >= 0.0 && share <= 1.0) << share;
        if (self.phases.empty() || self.phases.back() != phase)
            self.phases.push_back(phase);
        else
            EXPECT_GE(share, self.last);
        self.last = share;
        return self.left-- <= 0;
    }
};

} // namespace

TEST(Interface, AnyCallCanBeCancelledAnywhere)
{
    for (int kind : {BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_GENERAL}) {
        const Matrix a = randomMatrix(80, true, Sign::indefinite, 15);
        const std::vector<double> b = ramp(80);
        const Handle solver = create();
        prepare(solver, kind, a);
        const std::vector<double> expected = solved(solver, b);
        Matrix other = a;
        for (double& v : other.value)
            v *= 3.0;

        long cancelled = 0;
        for (long allowed = 0;; ++allowed) {
            Countdown countdown{allowed, 0, {}, 0.0};
            bla_solver_set_monitor(solver.get(), Countdown::monitor, &countdown);
            std::vector<double> x = b;
            int status = analyse(solver, kind, a);
            const bool analysed = status == BLA_SOLVER_OK;
            if (analysed)
                status = bla_solver_factorise(solver.get(), other.value.data());
            const bool factorised = status == BLA_SOLVER_OK;
            if (factorised)
                status = bla_solver_solve(solver.get(), 0, 1, x.data(), 80);
            if (status == BLA_SOLVER_OK)
                status = bla_solver_refine(solver.get(), other.value.data(), 1, b.data(), 80, x.data(), 80);
            EXPECT_EQ(*bla_solver_message(solver.get()) == '\0', status == BLA_SOLVER_OK);
            bla_solver_set_monitor(solver.get(), nullptr, nullptr);
            if (status == BLA_SOLVER_OK) {
                EXPECT_EQ(countdown.phases,
                          (std::vector<std::string>{"analysing", "factorising", "solving", "refining"}));
                break;
            }
            ASSERT_EQ(status, BLA_SOLVER_CANCELLED);
            ++cancelled;
            if (!analysed) // the analysis and the factor of before are still there
                EXPECT_EQ(solved(solver, b), expected);
            if (!factorised)
                ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
            prepare(solver, kind, a);
            EXPECT_EQ(solved(solver, b), expected);
        }
        EXPECT_GE(cancelled, 4);
    }
}

TEST(Interface, ACancelledFactorisationKeepsTheFactor)
{
    const Matrix a = randomMatrix(60, true, Sign::definite, 16);
    const std::vector<double> b = ramp(60);
    const Handle solver = create();
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    const std::vector<double> expected = solved(solver, b);
    Matrix other = a;
    for (double& v : other.value)
        v *= 3.0;
    for (long allowed : {0L, 1L, 2L}) {
        Countdown countdown{allowed, 0, {}, 0.0};
        bla_solver_set_monitor(solver.get(), Countdown::monitor, &countdown);
        EXPECT_EQ(bla_solver_factorise(solver.get(), other.value.data()), BLA_SOLVER_CANCELLED);
        bla_solver_set_monitor(solver.get(), nullptr, nullptr);
        EXPECT_EQ(solved(solver, b), expected);
    }
}

TEST(Interface, OptionsAreReadBack)
{
    const Handle solver = create();
    const std::pair<const char*, double> options[] = {
        {"threads", 2},  {"tolerance", 1e-9}, {"shift", 1e-7},       {"refinements", 3},
        {"ordering", 2}, {"panel_width", 48}, {"memory_limit", 1e9}, {"record", 1}};
    for (const auto& [name, value] : options) {
        ASSERT_EQ(bla_solver_set(solver.get(), name, value), BLA_SOLVER_OK) << name;
        EXPECT_EQ(get(solver, name), value);
    }
}

TEST(Interface, ShiftsAsAsked)
{
    const Matrix a(3, {1, 1, 0, 1, 1, 1, 0, 1, 3}); // the second pivot vanishes
    const std::int32_t order[] = {0, 1, 2};
    const Handle solver = create();
    ASSERT_EQ(bla_solver_set_order(solver.get(), 3, order), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_set(solver.get(), "shift", 1e-6), BLA_SOLVER_OK);
    prepare(solver, BLA_SOLVER_SYMMETRIC_LOWER, a);
    EXPECT_EQ(get(solver, "shifted_pivots"), 1);
    const std::vector<double> x{1, 2, 3}, b = a.times(x);
    std::vector<double> y = solved(solver, b);
    ASSERT_EQ(bla_solver_refine(solver.get(), a.value.data(), 1, b.data(), 3, y.data(), 3), BLA_SOLVER_OK);
    EXPECT_LT(difference(y, x), 1e-13);
    EXPECT_LT(get(solver, "error_estimate"), 1e-12);
    EXPECT_GT(get(solver, "refinement_steps"), 0);
}

TEST(Interface, NoUnknownAndOneGoThroughEveryCall)
{
    for (int n : {0, 1})
        for (int kind : kinds)
            for (int kept : {0, n})
                for (double value : {-2.5, 0.0}) {
                    SCOPED_TRACE(std::to_string(n) + " " + std::to_string(kind) + " " + std::to_string(kept) +
                                 " " + std::to_string(value));
                    const Handle handle = create();
                    bla_solver* const s = handle.get();
                    const std::int64_t start[] = {0, 1};
                    const std::int32_t zero = 0;
                    Countdown countdown{1000, 0, {}, 0.0};
                    double x = 5.0, y = 5.0, d = 0.0, c = 0.0;
                    std::int32_t listed = -1;
                    ASSERT_EQ(bla_solver_set_monitor(s, Countdown::monitor, &countdown), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_set_order(s, n, &zero), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_set_schur(s, kept, &zero), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_analyse(s, kind, n, start, &zero), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_factorise(s, &value), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_solve(s, 1, 1, &x, 1), BLA_SOLVER_OK);
                    ASSERT_EQ(bla_solver_refine(s, &value, 1, &y, 1, &x, 1), BLA_SOLVER_OK);
                    EXPECT_EQ(bla_solver_pivots(s, &d),
                              kind == BLA_SOLVER_GENERAL ? BLA_SOLVER_BAD_ARGUMENT : BLA_SOLVER_OK);
                    EXPECT_EQ(bla_solver_replaced(s, &listed), BLA_SOLVER_OK);
                    EXPECT_EQ(bla_solver_unheld(s, &listed), BLA_SOLVER_OK);
                    EXPECT_EQ(bla_solver_schur(s, &c, 1), kept > 0 ? BLA_SOLVER_OK : BLA_SOLVER_NOT_READY);
                    for (const char* quantity : {"n", "entries", "fronts", "largest_front", "factor_entries"})
                        EXPECT_EQ(get(handle, quantity), n) << quantity;
                    for (const char* quantity : {"flops",           "memory",          "ordering_used",
                                                 "seconds_analyse", "positive_pivots", "negative_pivots",
                                                 "replaced_pivots", "shifted_pivots",  "unheld_motions",
                                                 "structural_rank", "threads_used",    "seconds_factorise",
                                                 "tasks",           "task_edges",      "seconds_solve",
                                                 "residual",        "backward_error",  "error_estimate",
                                                 "condition",       "trusted",         "refinement_steps",
                                                 "seconds_refine"})
                        EXPECT_GE(get(handle, quantity), 0.0) << quantity;
                    const bool regular = n == 0 || value != 0.0;
                    EXPECT_EQ(get(handle, "trusted"), regular);
                    EXPECT_EQ(std::string(bla_solver_verdict(s)).substr(0, 4), regular ? "solv" : "NOT ");
                    EXPECT_EQ(get(handle, "structural_rank"), regular ? n : 0);
                    EXPECT_EQ(get(handle, "negative_pivots"), n == 1 && regular);
                    EXPECT_EQ(get(handle, "replaced_pivots"), !regular);
                    EXPECT_EQ(x, n == 0 ? 5.0 : regular ? -2.0 : x);
                    if (n == 1 && regular && kind != BLA_SOLVER_GENERAL)
                        EXPECT_EQ(d, -2.5);
                    if (kept > 0)
                        EXPECT_EQ(c, value);
                }
}

namespace {

// What stays of A(k,k) - A(k,e)*A(e,e)^-1*A(e,k), with exchanges of rows among e; by rows.
std::vector<double> condensed(const Matrix& a, const std::vector<std::int32_t>& kept)
{
    std::vector<int> place; // e, then k
    for (int i = 0; i < a.n; ++i)
        if (std::find(kept.begin(), kept.end(), i) == kept.end())
            place.push_back(i);
    const int eliminated = static_cast<int>(place.size()), n = a.n;
    place.insert(place.end(), kept.begin(), kept.end());
    std::vector<std::vector<double>> m(n, std::vector<double>(n));
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            m[i][j] = a(place[i], place[j]);
    for (int k = 0; k < eliminated; ++k) {
        const auto largest =
            std::max_element(m.begin() + k, m.begin() + eliminated,
                             [&](const auto& x, const auto& y) { return std::fabs(x[k]) < std::fabs(y[k]); });
        std::swap(m[k], *largest);
        for (int i = k + 1; i < n; ++i)
            for (int j = n - 1; j >= k; --j)
                m[i][j] -= m[i][k] / m[k][k] * m[k][j];
    }
    std::vector<double> s;
    for (int i = eliminated; i < n; ++i)
        s.insert(s.end(), m[i].begin() + eliminated, m[i].end());
    return s;
}

} // namespace

TEST(Interface, KeptRowsAreNotExchanged)
{
    // Large entries stand beside the diagonal, the largest ones between what is kept and what is not.
    const int n = 14;
    const std::vector<std::int32_t> kept{11, 2, 6};
    for (double size : {1.0, 1e-25}) { // of the kept columns
        std::mt19937 random(3);
        std::uniform_real_distribution<double> entry(-1.0, 1.0);
        std::vector<double> dense(n * n);
        for (double& v : dense)
            v = 0.01 * entry(random);
        for (int i = 0; i < n; ++i)
            dense[i * n + (i + 3) % n] = 10.0 + entry(random);
        for (int k : kept)
            dense[k * n + (k + 1) % n] = dense[(k + 1) % n * n + k] = 1e5;
        for (int i = 0; i < n; ++i)
            for (int k : kept)
                dense[i * n + k] *= size;
        const Matrix a(n, dense);
        Matrix plain = a; // the numbers that came before ask for other exchanges
        for (int i = 0; i < n; ++i)
            plain.value[i * n + i] += 1e3;
        const std::vector<double> expected = condensed(a, kept);
        for (bool before : {false, true}) {
            const Handle solver = create();
            ASSERT_EQ(bla_solver_set_schur(solver.get(), 3, kept.data()), BLA_SOLVER_OK);
            ASSERT_EQ(analyse(solver, BLA_SOLVER_GENERAL, a), BLA_SOLVER_OK);
            if (before)
                ASSERT_EQ(bla_solver_factorise(solver.get(), plain.value.data()), BLA_SOLVER_OK);
            ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
            EXPECT_EQ(get(solver, "replaced_pivots"), 0);
            double c[9], largest = 0.0;
            ASSERT_EQ(bla_solver_schur(solver.get(), c, 3), BLA_SOLVER_OK);
            for (double v : expected)
                largest = std::max(largest, std::fabs(v));
            for (int i = 0; i < 3; ++i)
                for (int j = 0; j < 3; ++j)
                    EXPECT_NEAR(c[i + 3 * j], expected[3 * i + j], 1e-9 * largest) << size << before;
            EXPECT_EQ(get(solver, "structural_rank"), n);
            if (size != 1.0) // the solution has no digit there
                continue;
            const std::vector<double> x = ramp(n), b = a.times(x);
            std::vector<double> y = solved(solver, b);
            ASSERT_EQ(bla_solver_refine(solver.get(), a.value.data(), 1, b.data(), n, y.data(), n),
                      BLA_SOLVER_OK);
            EXPECT_LT(difference(y, x), 1e-9);
            EXPECT_EQ(get(solver, "trusted"), 1);
        }
    }
}

TEST(Interface, TheNumberOfBlasThreadsIsPutBack)
{
    const Matrix a = randomMatrix(20, false, Sign::indefinite, 17);
    std::vector<double> b = ramp(20), x = b;
    const Handle solver = create();
    const int before = blaC_get_num_threads();
    ASSERT_EQ(bla_solver_set(solver.get(), "threads", before == 1 ? 2 : 1), BLA_SOLVER_OK);
    ASSERT_EQ(analyse(solver, BLA_SOLVER_GENERAL, a), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OK);
    EXPECT_EQ(blaC_get_num_threads(), before);
    ASSERT_EQ(bla_solver_solve(solver.get(), 0, 1, x.data(), 20), BLA_SOLVER_OK);
    EXPECT_EQ(blaC_get_num_threads(), before);
    ASSERT_EQ(bla_solver_refine(solver.get(), a.value.data(), 1, b.data(), 20, x.data(), 20), BLA_SOLVER_OK);
    EXPECT_EQ(blaC_get_num_threads(), before);
    ASSERT_EQ(bla_solver_set(solver.get(), "memory_limit", 1), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(solver.get(), a.value.data()), BLA_SOLVER_OUT_OF_MEMORY);
    EXPECT_EQ(blaC_get_num_threads(), before);
}

TEST(Interface, AnswersForOtherValuesAreBoundedOrNotTrusted)
{
    // A factor of something else altogether, by which nothing is found.
    const Matrix factorised(2, {0x1.4p93, 0x1p51, 0x1.4p55, 0.0}), asked(2, {1, -3, 1, 0});
    const double exact[] = {-1, -5.0 / 3};
    for (double refinements : {0.0, 1.0, 10.0}) {
        const Handle solver = create();
        const std::int64_t start[] = {0, 2, 4};
        const std::int32_t column[] = {0, 1, 0, 1};
        ASSERT_EQ(bla_solver_set(solver.get(), "refinements", refinements), BLA_SOLVER_OK);
        ASSERT_EQ(bla_solver_analyse(solver.get(), BLA_SOLVER_GENERAL, 2, start, column), BLA_SOLVER_OK);
        ASSERT_EQ(bla_solver_factorise(solver.get(), factorised.dense.data()), BLA_SOLVER_OK);
        double b[] = {4, -1}, x[] = {4, -1};
        ASSERT_EQ(bla_solver_refine(solver.get(), asked.dense.data(), 1, b, 2, x, 2), BLA_SOLVER_OK);
        const double error = std::max(std::fabs(x[0] - exact[0]), std::fabs(x[1] - exact[1])) / (5.0 / 3);
        EXPECT_LE(error, get(solver, "error_estimate"))
            << refinements << " " << get(solver, "backward_error");
    }
}
