// SPDX-License-Identifier: BSD-3-Clause
// Structures without supports: the verdict names the motions that nothing holds.
#include "problems.h"
#include "refine.h"
#include "triplets.h"
#include "unheld.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

Vectors randomVector(int n, std::uint64_t number)
{
    auto random = support::generator(number);
    Vectors x(n, 1);
    for (double& value : x.value)
        value = support::ordinary(random);
    return x;
}

bool contains(const std::string& text, const std::string& word)
{
    return text.find(word) != std::string::npos;
}

// Of a load that the structure carries there are many answers, of another there is none; and the unknowns
// named are such that holding them leaves nothing free.
void expectUnheld(const SparseMatrix& a, int motions, const std::string& words)
{
    for (bool symmetric : {true, false}) {
        const Vectors x = randomVector(a.n, 1);
        const problems::Outcome carried =
            problems::solved(a, problems::product(a, x), problems::How{symmetric});
        EXPECT_FALSE(carried.trusted);
        EXPECT_TRUE(contains(carried.verdict, "NOT TO BE TRUSTED")) << carried.verdict;
        EXPECT_TRUE(contains(carried.verdict, "one of many answers")) << carried.verdict;
        EXPECT_TRUE(contains(carried.verdict, words)) << carried.verdict;
        EXPECT_EQ(carried.motions, motions);
        EXPECT_GE(carried.bound, 0.1);
        EXPECT_LT(maxNorm(carried.x.value.data(), a.n), 1e4 * maxNorm(x.value.data(), a.n));

        const problems::Outcome moved = problems::solved(a, x, problems::How{symmetric});
        EXPECT_FALSE(moved.trusted);
        EXPECT_TRUE(contains(moved.verdict, "NOT SOLVED")) << moved.verdict;
        EXPECT_TRUE(contains(moved.verdict, words)) << moved.verdict;
        EXPECT_EQ(moved.motions, motions);

        ASSERT_EQ(carried.unheld.size(), static_cast<std::size_t>(motions));
        const SparseMatrix held = problems::held(a, carried.unheld);
        EXPECT_EQ(held.n, a.n - motions);
        const problems::Outcome solved =
            problems::solved(held, problems::product(held, problems::ones(held.n)));
        EXPECT_TRUE(solved.trusted) << solved.verdict;
        EXPECT_EQ(solved.motions, 0);
    }
}

std::vector<int> firstPoints(int count)
{
    std::vector<int> unknowns(3 * static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < unknowns.size(); ++i)
        unknowns[i] = static_cast<int>(i);
    return unknowns;
}

} // namespace

TEST(Unsupported, AGridMovesAsOne)
{
    expectUnheld(problems::grid(50, 1, 1), 1, "(1 unheld motion, unknown ");
    expectUnheld(problems::grid(20, 21, 1), 1, "(1 unheld motion, unknown ");
    expectUnheld(problems::grid(10, 11, 12), 1, "(1 unheld motion, unknown ");
    for (int side : {60, 90, 120}) // where rounding leaves all pivots positive
        expectUnheld(problems::grid(side, side, 1), 1, "(1 unheld motion, unknown ");
}

TEST(Unsupported, ABodyInSpaceHasSixMotions)
{
    for (const auto& [x, y, z] : {std::array{1, 1, 1}, {4, 3, 2}, {30, 5, 5}, {60, 2, 2}})
        expectUnheld(problems::lattice(x, y, z), 6, "(6 unheld motions, unknowns ");
}

TEST(Unsupported, ABodyHeldAtAPointTurns)
{
    expectUnheld(problems::held(problems::lattice(6, 3, 3), firstPoints(1)), 3, "(3 unheld motions");
}

TEST(Unsupported, ABodyHeldAlongAnEdgeIsAHinge)
{
    for (int length : {4, 5, 7, 8, 9, 10, 11, 12})
        expectUnheld(problems::held(problems::lattice(length, 3, 3), firstPoints(4)), 1,
                     "(1 unheld motion, ");
}

TEST(Unsupported, PiecesMoveEachForItself)
{
    const SparseMatrix one = problems::lattice(3, 2, 2);
    std::vector<Triplet> entries;
    for (int piece = 0; piece < 3; ++piece)
        for (int i = 0; i < one.n; ++i)
            for (auto p = one.start[i]; p < one.start[i + 1]; ++p)
                entries.push_back({piece * one.n + i, piece * one.n + one.column[p], one.value[p]});
    SparseMatrix all = fromTriplets(3 * one.n, entries);
    all.symmetric = true;
    expectUnheld(all, 18, "(18 unheld motions, e.g. unknowns ");
}

TEST(Unsupported, AHeldBodyIsSolvedHoweverSlender)
{
    for (int length : {3, 30, 300}) {
        const SparseMatrix a = problems::held(problems::lattice(length, 1, 1), firstPoints(4));
        const problems::Outcome o = problems::solved(a, problems::product(a, problems::ones(a.n)));
        EXPECT_TRUE(o.trusted) << length << ": " << o.verdict;
        EXPECT_EQ(o.motions, 0);
        EXPECT_LT(problems::relativeError(o.x, problems::ones(a.n)), o.bound);
    }
}

TEST(Unsupported, UnknownsAreCountedFromOne)
{
    // x2 is in no equation.
    const SparseMatrix a = problems::sparse(3, {2, 0, 1, 0, 0, 0, 1, 0, 2});
    const problems::Outcome o = problems::solved(a, problems::product(a, problems::ones(3)));
    EXPECT_TRUE(contains(o.verdict, "(1 unheld motion, unknown 2)")) << o.verdict;
    EXPECT_EQ(o.unheld, std::vector<int>{1});
}

TEST(Unsupported, ASingularUnsymmetricMatrixIsExplainedToo)
{
    // Rows and columns exchanged and scaled; the null vectors of A and of A^T differ.
    const SparseMatrix body = problems::grid(5, 6, 1);
    std::vector<Triplet> entries;
    for (int i = 0; i < body.n; ++i)
        for (auto p = body.start[i]; p < body.start[i + 1]; ++p)
            entries.push_back({(7 * i + 3) % body.n, body.column[p], std::ldexp(body.value[p], i % 5)});
    const SparseMatrix a = fromTriplets(body.n, entries);
    const Vectors x = randomVector(a.n, 2);
    const problems::Outcome carried = problems::solved(a, problems::product(a, x), problems::How{false});
    EXPECT_EQ(carried.motions, 1);
    EXPECT_TRUE(contains(carried.verdict, "one of many answers")) << carried.verdict;
    const problems::Outcome moved = problems::solved(a, x, problems::How{false});
    EXPECT_TRUE(contains(moved.verdict, "NOT SOLVED")) << moved.verdict;
}

TEST(Unsupported, SoftIsNotUnheld)
{
    const SparseMatrix a = problems::sparse(4, {1, 0, 0, 0, 0, 1e-9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2});
    const std::vector<TreatedPivot> treated = {{1, 0x1p-26}, {2, -0x1p-26}};
    const Apply solve = [](Vectors& x) {
        for (int j = 0; j < x.columns; ++j) {
            x.column(j)[1] /= 1e-9 + 0x1p-26;
            x.column(j)[2] /= -0x1p-26;
            x.column(j)[3] /= 2.0;
        }
    };
    const UnheldMotions motions = findUnheldMotions(a, treated, {solve, solve, true});
    EXPECT_EQ(motions.count, 1);
    EXPECT_EQ(motions.unknowns, std::vector<int>{2});
    Vectors b = problems::ones(4);
    EXPECT_NEAR(unreachable(motions, b), 0.5, 1e-12);
    b.value[2] = 0.0;
    EXPECT_EQ(unreachable(motions, b), 0.0);
    EXPECT_EQ(findUnheldMotions(a, {}, {solve, solve, true}).count, 0);
}
