// SPDX-License-Identifier: BSD-3-Clause
// Whole factorisations and solutions, on trees of every shape. What is solved is held against the matrix by
// itself: b - A*x, row by row, in units of what rounding leaves.
#include "planned.h"
#include "random.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>
#include <utility>

using namespace support;

namespace {

using Edges = std::set<std::pair<int, int>>; // i > j

// The patterns, and what the assembly tree looks like.
Edges none(int) // a front for every unknown
{
    return {};
}
Edges chain(int n)
{
    Edges e;
    for (int i = 1; i < n; ++i)
        e.insert({i, i - 1});
    return e;
}
Edges dense(int n) // one front
{
    Edges e;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < i; ++j)
            e.insert({i, j});
    return e;
}
Edges star(int n) // all below one root
{
    Edges e;
    for (int i = 1; i < n; ++i)
        e.insert({i, 0});
    return e;
}
Edges forest(int n) // trees of chains and of dense blocks, and unknowns of their own
{
    Edges e;
    for (int i = 1; i < n; ++i) {
        const int tree = i / 13;
        if (tree % 3 == 0 && i % 13 != 0)
            e.insert({i, i - 1});
        for (int j = 13 * tree; tree % 3 == 1 && j < i; ++j)
            e.insert({i, j});
    }
    return e;
}
Edges scattered(int n)
{
    Edges e;
    auto random = generator(80);
    for (int k = 0; k < 2 * n; ++k) {
        const int i = static_cast<int>(random() % static_cast<unsigned>(n));
        const int j = static_cast<int>(random() % static_cast<unsigned>(n));
        if (i != j)
            e.insert({std::max(i, j), std::min(i, j)});
    }
    return e;
}
Edges grid(int n) // of two unknowns a node: large fronts at the top, many children
{
    Edges e;
    const int side = std::max(1, static_cast<int>(std::sqrt(n / 2)));
    const auto couple = [&](int a, int b) {
        for (int i = 2 * a; i < std::min(2 * a + 2, n); ++i)
            for (int j = 2 * b; j < std::min(2 * b + 2, n); ++j)
                if (i != j)
                    e.insert({std::max(i, j), std::min(i, j)});
    };
    for (int node = 0; 2 * node < n; ++node) {
        couple(node, node);
        if (node % side != 0)
            couple(node, node - 1);
        if (node >= side) {
            couple(node, node - side);
            if (node % side != 0)
                couple(node, node - side - 1);
        }
    }
    return e;
}

struct Kind
{
    const char* name;
    Edges (*edges)(int);
};
constexpr Kind Kinds[] = {{"none", none},     {"chain", chain},         {"dense", dense}, {"star", star},
                          {"forest", forest}, {"scattered", scattered}, {"grid", grid}};
constexpr int Sizes[] = {1, 2, 3, 10, 40, 137, 300};

// A diagonal of both signs that outweighs its rows; `unsymmetric` leaves out some entries of either half.
SparseMatrix matrixOf(const Edges& edges, int n, bool symmetric, std::mt19937_64& random)
{
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> weight(n, 0.0);
    std::vector<Triplet> entries;
    for (const auto& [i, j] : edges) {
        const double lower = uniform(random), upper = symmetric ? lower : uniform(random);
        const auto side = symmetric ? 0 : random() % 4;
        if (side != 1)
            entries.push_back({i, j, lower});
        if (side != 2)
            entries.push_back({j, i, upper});
        for (int k : {i, j})
            weight[k] += std::max(std::fabs(lower), std::fabs(upper));
    }
    for (int i = 0; i < n; ++i)
        entries.push_back(
            {i, i, (random() % 3 ? 1.0 : -1.0) * (weight[i] + 0.5 + std::fabs(uniform(random)))});
    SparseMatrix a = fromTriplets(n, entries);
    a.symmetric = symmetric;
    return a;
}

Vectors drawn(int n, int columns, std::mt19937_64& random)
{
    Vectors b(n, columns);
    for (double& x : b.value)
        x = ordinary(random);
    return b;
}

// Rows of b - (A + diag(shift))*x that rounding does not explain.
std::vector<int> wrongRows(const SparseMatrix& a, const std::vector<double>& shift, const Vectors& x,
                           const Vectors& b)
{
    double sizeX = 0.0;
    for (double v : x.value)
        sizeX = std::max(sizeX, std::isnan(v) ? HUGE_VAL : std::fabs(v));
    std::vector<int> wrong;
    for (int i = 0; i < a.n; ++i) {
        bool good = std::isfinite(sizeX);
        for (int j = 0; j < x.columns; ++j) {
            double residual = b.column(j)[i] - shift[i] * x.column(j)[i];
            double size = std::fabs(b.column(j)[i]) + std::fabs(shift[i]) * sizeX;
            for (auto p = a.start[i]; p < a.start[i + 1]; ++p) {
                residual -= a.value[p] * x.column(j)[a.column[p]];
                size += std::fabs(a.value[p]) * sizeX;
            }
            good = good && std::fabs(residual) <= 1e-13 * size;
        }
        if (!good)
            wrong.push_back(i);
    }
    return wrong;
}

std::vector<int> wrongRows(const SparseMatrix& a, const Vectors& x, const Vectors& b)
{
    return wrongRows(a, std::vector<double>(a.n, 0.0), x, b);
}

constexpr PivotRule Replace{1e-14, 0.0, 0};
const std::vector<int> NoRows;

class Factorisations : public ::testing::TestWithParam<bool> // symmetric
{
};

TEST_P(Factorisations, SolveForAnyNumberOfRightHandSides)
{
    auto random = generator(81);
    for (const Kind& kind : Kinds)
        for (int n : Sizes) {
            SCOPED_TRACE(::testing::Message() << kind.name << " of " << n);
            const SparseMatrix a = matrixOf(kind.edges(n), n, GetParam(), random);
            Planned planned(a);
            Factor& factor = planned.factor;
            factor.factorise(a.value.data(), Replace, nullptr);
            EXPECT_EQ(factor.treated(), 0);
            for (int columns = 1; columns <= 9; ++columns) {
                const Vectors b = drawn(n, columns, random);
                Vectors x = b;
                factor.solve(x);
                ASSERT_EQ(wrongRows(a, x, b), NoRows) << columns << " right-hand sides";
            }
            EXPECT_EQ(factor.flops(),
                      a.symmetric ? planned.plan.analysis.flops : 2.0 * planned.plan.analysis.flops);
            if (HasFailure())
                return;
        }
}

TEST_P(Factorisations, OfLargeFrontsSolve)
{
    auto random = generator(82);
    for (const Kind& kind : {Kind{"dense", dense}, Kind{"grid", grid}}) {
        const int n = kind.edges == dense ? 400 : 5000;
        const SparseMatrix a = matrixOf(kind.edges(n), n, GetParam(), random);
        Planned planned(a);
        Factor& factor = planned.factor;
        for (double shift : {0.0, 0x1p-26}) {
            factor.factorise(a.value.data(), {1e-14, shift, 0}, nullptr);
            const Vectors b = drawn(n, 2, random);
            Vectors x = b;
            factor.solve(x);
            EXPECT_EQ(wrongRows(a, x, b), NoRows) << kind.name;
        }
    }
}

TEST_P(Factorisations, CountTheSignsOfTheirPivots)
{
    // A matrix whose diagonal outweighs its rows has as many negative eigenvalues as negative diagonal
    // entries.
    auto random = generator(83);
    for (const Kind& kind : Kinds)
        for (int n : {1, 7, 60}) {
            const SparseMatrix a = matrixOf(kind.edges(n), n, GetParam(), random);
            int negative = 0;
            for (int i = 0; i < n; ++i)
                for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
                    negative += a.column[p] == i && a.value[p] < 0.0;
            Planned planned(a);
            Factor& factor = planned.factor;
            for (double shift : {0.0, 0x1p-26}) {
                factor.factorise(a.value.data(), {1e-14, shift, 0}, nullptr);
                EXPECT_EQ(factor.negative(), negative) << kind.name << " of " << n;
                EXPECT_EQ(factor.positive(), n - negative) << kind.name << " of " << n;
                EXPECT_EQ(factor.treated(), 0) << kind.name << " of " << n;
            }
        }
}

TEST_P(Factorisations, TakeNewValuesAndAnotherRule)
{
    auto random = generator(84);
    const Edges edges = grid(200);
    auto draws = random; // two matrices of one pattern
    const SparseMatrix a = matrixOf(edges, 200, GetParam(), random);
    SparseMatrix other = a;
    for (double& x : other.value)
        x *= 1.5;
    Planned first(a), second(a);
    Factor &used = first.factor, &fresh = second.factor;
    used.factorise(a.value.data(), {1e-14, 0x1p-26, 3}, nullptr);
    used.factorise(other.value.data(), Replace, nullptr);
    fresh.factorise(other.value.data(), Replace, nullptr);
    const Vectors b = drawn(200, 2, draws);
    Vectors x = b, y = b;
    used.solve(x);
    fresh.solve(y);
    EXPECT_EQ(x.value, y.value);
    EXPECT_EQ(wrongRows(other, x, b), NoRows);
}

TEST_P(Factorisations, TellHowFarTheyAre)
{
    auto random = generator(85);
    const SparseMatrix a = matrixOf(grid(300), 300, GetParam(), random);
    Planned planned(a);
    std::vector<double> shares;
    planned.factor.factorise(a.value.data(), Replace, [&](double share) { shares.push_back(share); });
    ASSERT_FALSE(shares.empty());
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_GT(shares.front(), 0.0);
    EXPECT_NEAR(shares.back(), 1.0, 1e-12);
}

// Unknowns with nothing but a small diagonal entry, or nothing at all, beside a grid.
struct Isolated
{
    SparseMatrix a;
    std::vector<double> diagonal; // of the first unknowns, those that stand alone
};

Isolated isolated(bool symmetric, double tolerance, std::mt19937_64& random)
{
    Isolated s;
    const double above = std::nextafter(tolerance, 1.0);
    s.diagonal = {0.0, tolerance, -tolerance, above, -above, tolerance / 2, -tolerance / 2};
    const int alone = static_cast<int>(s.diagonal.size());
    const SparseMatrix rest = matrixOf(grid(100), 100, symmetric, random);
    std::vector<Triplet> entries;
    for (int i = 1; i < alone; ++i)
        entries.push_back({i, i, s.diagonal[i]});
    for (int i = 0; i < rest.n; ++i)
        for (auto p = rest.start[i]; p < rest.start[i + 1]; ++p)
            entries.push_back({alone + i, alone + rest.column[p], rest.value[p]});
    s.a = fromTriplets(alone + rest.n, entries);
    s.a.symmetric = symmetric;
    return s;
}

TEST_P(Factorisations, ReplaceTinyPivotsWhichTakesTheirUnknownsOut)
{
    auto random = generator(86);
    const double tolerance = 0x1p-20;
    const Isolated s = isolated(GetParam(), tolerance, random);
    Planned planned(s.a);
    Factor& factor = planned.factor;
    factor.factorise(s.a.value.data(), {tolerance, 0.0, 0}, nullptr);
    EXPECT_EQ(factor.treated(), 5);
    EXPECT_EQ(factor.positive() + factor.negative(), s.a.n - 5);
    const Vectors b = drawn(s.a.n, 1, random);
    Vectors x = b;
    factor.solve(x);
    for (std::size_t i = 0; i < s.diagonal.size(); ++i) {
        const bool tiny = std::fabs(s.diagonal[i]) <= tolerance;
        const double expected = tiny ? b.value[i] * 1e-36 : b.value[i] / s.diagonal[i];
        EXPECT_NEAR(x.value[i], expected, 1e-15 * std::fabs(expected)) << s.diagonal[i];
    }
    Vectors ordinaryX = x;
    for (std::size_t i = 0; i < s.diagonal.size(); ++i)
        ordinaryX.value[i] = 0.0;
    for (int row : wrongRows(s.a, ordinaryX, b))
        EXPECT_LT(row, static_cast<int>(s.diagonal.size()));
}

TEST_P(Factorisations, ShiftTinyPivotsToTheSideOfTheirDiagonalEntry)
{
    auto random = generator(87);
    const double tolerance = 0x1p-20, shift = 0x1p-10;
    const Isolated s = isolated(GetParam(), tolerance, random);
    Planned planned(s.a);
    Factor& factor = planned.factor;
    factor.factorise(s.a.value.data(), {tolerance, shift, 0}, nullptr);
    EXPECT_EQ(factor.treated(), 5);
    std::vector<double> shifts(s.a.n, 0.0);
    for (std::size_t i = 0; i < s.diagonal.size(); ++i) {
        const double d = s.diagonal[i];
        if (std::fabs(d) <= tolerance) // that of saddle points, where it was zero and the matrix is symmetric
            shifts[i] = d < 0.0 || (d == 0.0 && GetParam()) ? -shift : shift;
    }
    const Vectors b = drawn(s.a.n, 1, random);
    Vectors x = b;
    factor.solve(x);
    for (std::size_t i = 0; i < s.diagonal.size(); ++i) {
        const double expected = b.value[i] / (s.diagonal[i] + shifts[i]);
        EXPECT_NEAR(x.value[i], expected, 1e-14 * std::fabs(expected)) << s.diagonal[i];
    }
    for (std::size_t i = 0; i < s.diagonal.size(); ++i)
        x.value[i] = 0.0;
    for (int row : wrongRows(s.a, x, b))
        EXPECT_LT(row, static_cast<int>(s.diagonal.size()));
}

TEST(SymmetricFactorisation, HoldsEveryFreePieceOfAStructureOnce)
{
    // Springs between the nodes of each piece and to nowhere else: one pivot of each piece vanishes.
    for (const Kind& kind : Kinds)
        for (int n : {1, 2, 13, 78, 200}) {
            SCOPED_TRACE(::testing::Message() << kind.name << " of " << n);
            const Edges edges = kind.edges(n);
            std::vector<int> piece(n);
            for (int i = 0; i < n; ++i)
                piece[i] = i;
            const std::function<int(int)> root = [&](int i) { return piece[i] == i ? i : root(piece[i]); };
            std::vector<Triplet> entries;
            for (const auto& [i, j] : edges) {
                piece[root(i)] = root(j);
                entries.insert(entries.end(), {{i, j, -1.0}, {j, i, -1.0}, {i, i, 1.0}, {j, j, 1.0}});
            }
            int pieces = 0;
            for (int i = 0; i < n; ++i)
                pieces += piece[i] == i;
            SparseMatrix a = fromTriplets(n, entries);
            a.symmetric = true;
            Planned planned(a);
            Factor& factor = planned.factor;
            factor.factorise(a.value.data(), {1e-10, 0.0, 0}, nullptr);
            EXPECT_EQ(factor.treated(), pieces);
            EXPECT_EQ(factor.positive(), n - pieces);
            auto random = generator(88);
            const Vectors b = drawn(n, 2, random);
            Vectors x = b;
            factor.solve(x);
            const std::vector<int> wrong =
                wrongRows(a, x, b); // where a node is held, the equation is not met
            EXPECT_LE(static_cast<int>(wrong.size()), pieces);
            std::set<int> held;
            for (int row : wrong) {
                EXPECT_TRUE(held.insert(root(row)).second) << "a piece held twice, at " << row;
                for (int j = 0; j < x.columns; ++j)
                    EXPECT_LT(std::fabs(x.column(j)[row]), 1e-30);
            }
            if (HasFailure())
                return;
        }
}

TEST(SymmetricFactorisation, ShiftsTheFirstOfTwoUnknownsThatOnlyHoldEachOther)
{
    const double shift = 0x1p-6;
    SparseMatrix a = fromTriplets(4, {{0, 1, 2.0}, {1, 0, 2.0}, {2, 3, -1.0}, {3, 2, -1.0}});
    a.symmetric = true;
    Planned planned(a);
    Factor& factor = planned.factor;
    factor.factorise(a.value.data(), {1e-14, shift, 0}, nullptr);
    EXPECT_EQ(factor.treated(), 2);
    EXPECT_EQ(factor.positive(), 2); // 0 - h*h/(-shift)
    EXPECT_EQ(factor.negative(), 0);
    auto random = generator(89);
    const Vectors b = drawn(4, 1, random);
    Vectors x = b;
    factor.solve(x);
    bool explained = false;
    for (int first : {0, 1})
        for (int second : {2, 3}) {
            std::vector<double> shifts(4, 0.0);
            shifts[first] = shifts[second] = -shift;
            explained = explained || wrongRows(a, shifts, x, b).empty();
        }
    EXPECT_TRUE(explained);
}

INSTANTIATE_TEST_SUITE_P(Solver, Factorisations, ::testing::Bool(),
                         [](const auto& symmetric) { return symmetric.param ? "symmetric" : "unsymmetric"; });

} // namespace
