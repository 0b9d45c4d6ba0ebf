// SPDX-License-Identifier: BSD-3-Clause
// Pivots, factor and solution have the same bits for any number of threads, and in any sequence of the tasks
// that their dependencies allow.
#include "bits.h"
#include "disorder.h"
#include "planned.h"
#include "problems.h"
#include "scaling.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <malloc.h>
#include <map>
#include <set>
#include <string>

using namespace support;

namespace {

// What makes a small matrix into many branches, and fronts of many tiles.
constexpr Cuts fine{64.0, 1e5, 32, 1000, 1e9, 8, 0.0, 0.0};

// A block of springs held at a face, scaled; shifted so far that it is indefinite, or made unsymmetric, if
// wanted. Some diagonal entries are next to nothing, where pivots are to be treated.
SparseMatrix block(int points, bool symmetric, bool tiny)
{
    std::vector<int> face;
    for (int i = 0; i < 3 * points * points; ++i)
        face.push_back(i);
    SparseMatrix a = problems::held(problems::lattice(points - 1, points - 1, points - 1), face);
    a.symmetric = true;
    a = equilibrateSymmetric(a).matrix;
    auto random = generator(7);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
            if (a.column[p] == i && tiny)
                a.value[p] = i % 97 == 5 ? 1e-15 : a.value[p] - 0.3;
            if (!symmetric)
                a.value[p] *= 1.0 + ordinary(random) / 64.0;
        }
    a.symmetric = symmetric;
    return a;
}

std::vector<int> everyTenth(const SparseMatrix& a)
{
    std::vector<int> unknowns;
    for (int i = 0; i < a.n; i += 10)
        unknowns.push_back(i);
    return unknowns;
}

// Pivots, what was treated, solutions that pass through all of the factor, and what is kept. Whatever a run
// leaves behind is poison for the next one: what is read too early is not what it was.
struct Trial
{
    const SparseMatrix& a;
    PivotRule rule;
    Planned planned;
    int treated = 0; // pivots of the last run

    Trial(const SparseMatrix& matrix, int threads, const PivotRule& how, const Cuts& cuts = fine,
          const std::vector<int>& kept = {})
        : a(matrix), rule(how), planned(matrix, threads, cuts, kept)
    {
        poison();
    }

    std::vector<double> run(std::initializer_list<int> widths = {1, 5, 20})
    {
        planned.factor.factorise(a.value.data(), rule, {}, planned.factor.threads());
        treated = planned.factor.treated();
        std::vector<double> all = planned.factor.pivots();
        all.insert(all.end(), planned.factor.schur().begin(), planned.factor.schur().end());
        for (const TreatedPivot& pivot : planned.factor.treatedPivots())
            all.push_back(pivot.unknown + pivot.shift);
        for (int width : widths)
            for (bool transposed : {false, true}) {
                Vectors x(a.n, width);
                for (std::size_t i = 0; i < x.value.size(); ++i)
                    x.value[i] = 1.0 + static_cast<double>(i % 7);
                planned.solve(x, transposed);
                all.insert(all.end(), x.value.begin(), x.value.end());
            }
        poison();
        return all;
    }

    void poison()
    {
        std::vector<double> other = a.value;
        for (std::size_t p = 0; p < other.size(); ++p)
            other[p] *= 2.0 + static_cast<double>(p % 5);
        planned.factor.factorise(other.data(), rule, {}, planned.factor.threads());
    }
};

bool sameBits(const std::vector<double>& x, const std::vector<double>& y)
{
    return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof x[0]) == 0;
}

int mostPivotTiles(const Plan& plan)
{
    int most = 0;
    for (std::size_t f = 0; f < plan.analysis.fronts.size(); ++f)
        if (plan.schedule->branchOf[f] < 0)
            most = std::max(most, tilingOf(plan.analysis.fronts[f], plan.schedule->cuts).pivotTiles());
    return most;
}

struct How
{
    bool symmetric, tiny;
    double shift;

    PivotRule rule() const { return {shift > 0.0 ? shift / 2 : 1e-14, shift, 0}; }
};

std::ostream& operator<<(std::ostream& out, const How& how)
{
    return out << (how.symmetric ? "symmetric" : "unsymmetric") << (how.tiny ? ", tiny pivots" : "")
               << (how.shift > 0.0 ? " shifted" : "");
}

class Threads : public testing::TestWithParam<How>
{
};

INSTANTIATE_TEST_SUITE_P(Solver, Threads,
                         testing::Values(How{true, false, 0.0}, How{true, true, 0.0},
                                         How{true, true, 0x1p-26}, How{false, false, 0.0},
                                         How{false, true, 0.0}, How{false, true, 0x1p-26}),
                         [](const auto& p) {
                             return std::string(p.param.symmetric ? "Symmetric" : "Unsymmetric") +
                                    (!p.param.tiny         ? ""
                                     : p.param.shift > 0.0 ? "Shifted"
                                                           : "Replaced");
                         });

// Twenty runs of each, half of them with unknowns that are kept.
TEST_P(Threads, ChangeNoBit)
{
    const SparseMatrix a = block(7, GetParam().symmetric, GetParam().tiny);
    for (const std::vector<int>& kept : {std::vector<int>(), everyTenth(a)}) {
        Trial one(a, 1, GetParam().rule(), fine, kept);
        ASSERT_GE(one.planned.plan.schedule->branches.size(), 16u);
        ASSERT_GE(mostPivotTiles(one.planned.plan), 3);
        const std::vector<double> expected = one.run();
        ASSERT_EQ(std::count_if(expected.begin(), expected.end(), [](double x) { return std::isnan(x); }), 0);
        EXPECT_EQ(one.treated > 0, GetParam().tiny);
        for (int round = 0; round < 3; ++round)
            for (int threads : {2, 3, 8})
                ASSERT_TRUE(sameBits(expected, Trial(a, threads, GetParam().rule(), fine, kept).run()))
                    << threads << " threads, round " << round;
        ASSERT_TRUE(sameBits(expected, one.run())) << "one thread once more";
    }
}

// Tiles and branches are the same elimination as one front after the other, in another sequence of sums.
TEST_P(Threads, CutsChangeRoundingOnly)
{
    const SparseMatrix a = block(6, GetParam().symmetric, GetParam().tiny);
    for (const std::vector<int>& kept : {std::vector<int>(), everyTenth(a)}) {
        Trial uncut(a, 1, GetParam().rule(), {1.0, 1e300, 1 << 20, 1}, kept);
        ASSERT_EQ(mostPivotTiles(uncut.planned.plan), 0);
        const std::vector<double> expected = uncut.run(),
                                  cut = Trial(a, 1, GetParam().rule(), fine, kept).run();
        ASSERT_EQ(expected.size(), cut.size());
        const double allowed = GetParam().tiny ? 1e-4 : 1e-10;
        for (std::size_t i = 0; i < cut.size(); ++i)
            ASSERT_NEAR(cut[i], expected[i], allowed * (1.0 + std::fabs(expected[i]))) << i;
    }
}

// Cut as it is for callers.
TEST(Threads, ChangeNoBitOfALargerMatrix)
{
    for (bool symmetric : {true, false}) {
        const SparseMatrix a = block(11, symmetric, true);
        const PivotRule rule{1e-14, 0.0, 0};
        Trial one(a, 1, rule, {});
        ASSERT_GE(one.planned.plan.schedule->branches.size(), 16u);
        ASSERT_GE(mostPivotTiles(one.planned.plan), 2);
        const std::vector<double> expected = one.run({5});
        for (int threads : {2, 3, 8})
            ASSERT_TRUE(sameBits(expected, Trial(a, threads, rule, {}).run({5})))
                << (symmetric ? "symmetric, " : "unsymmetric, ") << threads << " threads";
    }
}

TEST_P(Threads, AnySequenceGivesTheSameBits)
{
    const SparseMatrix a = block(6, GetParam().symmetric, GetParam().tiny);
    auto random = generator(31);
    for (const std::vector<int>& kept : {std::vector<int>(), everyTenth(a)}) {
        Trial trial(a, 1, GetParam().rule(), fine, kept);
        const std::vector<double> expected = trial.run();
        int executed = 0;
        const auto any = disorder::inAnyOrder(random);
        const disorder::Instead instead([&](const TaskGraph& graph, const std::function<void(int)>& task) {
            ++executed;
            any(graph, task);
        });
        for (int round = 0; round < 12; ++round)
            ASSERT_TRUE(sameBits(expected, trial.run())) << "round " << round;
        ASSERT_GE(executed, 12 * 8) << "factor and solution do not come by";
    }
}

TEST_P(Threads, DelaysChangeNoBit)
{
    const SparseMatrix a = block(5, GetParam().symmetric, GetParam().tiny);
    auto random = generator(32);
    const std::vector<double> expected = Trial(a, 1, GetParam().rule()).run();
    for (int threads : {2, 3, 8, 3}) {
        const disorder::Instead instead(disorder::onThreads(threads, random));
        Trial trial(a, threads, GetParam().rule());
        ASSERT_TRUE(sameBits(expected, trial.run())) << threads << " threads";
    }
}

// What the second of two tasks waits for by waiting for the first.
std::string dependency(const Schedule& schedule, int first, int second)
{
    const Task &a = schedule.tasks[first], &b = schedule.tasks[second];
    using Kind = Task::Kind;
    switch (b.kind) {
    case Kind::branch:
        return "a branch for anything";
    case Kind::assemble:
        return "a front for its children";
    case Kind::keep:
        return "what is kept for its front";
    case Kind::eliminate:
        return a.kind == Kind::keep ? "an elimination for what is kept" : "an elimination for its tile";
    case Kind::lower:
        return a.kind == Kind::eliminate ? "rows below for the pivots" : "rows below for their tile";
    case Kind::upper:
        return a.kind == Kind::eliminate ? "columns behind for the pivots" : "columns behind for their tile";
    case Kind::update:
        if (a.kind == Kind::update || a.kind == Kind::assemble || a.kind == Kind::keep)
            return "an update for its tile";
        return a.kind == Kind::lower && a.i == b.i ? "an update for its rows" : "an update for its columns";
    case Kind::finish:
        return "the result for its tiles";
    }
    return {};
}

// Each kind of dependency left out alone is noticed: the test above can fail, and none of them is idle.
// Of a matrix that falls into two, the rows of each half in the place of the other's: a solution takes the
// place of right-hand sides that the other tree still has to read.
TEST(Threads, NoAnswerTakesThePlaceOfAQuestion)
{
    auto random = generator(35);
    constexpr int half = 60, n = 2 * half;
    std::vector<Triplet> entries;
    for (int i = 0; i < n; ++i) {
        const int row = (i + half) % n;
        entries.push_back({row, i, 16.0 + ordinary(random)});
        for (int other : {i - 1, i + 1, i + 7})
            if (other >= i / half * half && other < (i / half + 1) * half)
                entries.push_back({row, other, ordinary(random)});
    }
    const Equilibrated e = equilibrateUnsymmetric(fromTriplets(n, entries));
    ASSERT_EQ(e.rowOf[0], half);
    Planned planned(e.matrix, 1, fine);
    planned.factor.factorise(e.matrix.value.data(), {1e-14, 0.0, 0}, {});
    const Border in{e.rowOf.data(), e.row.data()}, out{nullptr, e.column.data()};
    const auto solved = [&](bool transposed) {
        std::vector<double> x(3 * n);
        for (int i = 0; i < 3 * n; ++i)
            x[i] = 1.0 + i % 11;
        planned.factor.solve({x.data(), n, 3}, transposed ? out : in, transposed ? in : out, transposed, 1);
        return x;
    };
    for (bool transposed : {false, true}) {
        const std::vector<double> expected = solved(transposed);
        for (int round = 0; round < 40; ++round) {
            const disorder::Instead instead(disorder::inAnyOrder(random));
            ASSERT_TRUE(sameBits(expected, solved(transposed))) << transposed;
        }
    }
}

std::string nameOf(const Step& step)
{
    const std::string way = step.up ? "up" : "down";
    switch (step.kind) {
    case Step::Kind::all:
        return way + " a piece";
    case Step::Kind::begin:
        return way + " begin";
    case Step::Kind::tile:
        return way + (step.row == step.column ? " triangle" : " tile");
    default:
        return "turn";
    }
}

TEST(Threads, NoDependencyIsIdle)
{
    auto random = generator(33);
    mallopt(M_PERTURB, 0x5a); // memory has nothing of the run before
    for (bool symmetric : {true, false}) {
        const SparseMatrix a = block(6, symmetric, false);
        Trial trial(a, 1, {1e-14, 0.0, 0}, fine, everyTenth(a));
        const Schedule& schedule = *trial.planned.plan.schedule;
        const Pieces& pieces = *trial.planned.plan.pieces;
        const std::vector<double> expected = trial.run({1});
        const auto kindOf = [&](const TaskGraph& graph, int first, int second) {
            return &graph != &pieces.graph
                       ? dependency(schedule, first, second)
                       : nameOf(pieces.steps[first]) + ", " + nameOf(pieces.steps[second]);
        };
        std::set<std::string> kinds;
        for (const TaskGraph* graph : {&schedule.graph, &pieces.graph})
            for (int t = 0; t < graph->count(); ++t)
                for (int waiting : graph->next(t))
                    kinds.insert(kindOf(*graph, t, waiting));
        EXPECT_EQ(kinds.size(), symmetric ? 26u : 16u);
        for (const std::string& kind : kinds) {
            SCOPED_TRACE(kind);
            bool noticed = false;
            for (int round = 0; round < 40 && !noticed; ++round) {
                {
                    const disorder::Instead instead(
                        disorder::inAnyOrder(random, [&](const TaskGraph& graph, int first, int second) {
                            return kindOf(graph, first, second) == kind;
                        }));
                    noticed = !sameBits(expected, trial.run({1}));
                }
                trial.poison();
            }
            EXPECT_TRUE(noticed);
        }
    }
    mallopt(M_PERTURB, 0);
}

} // namespace
