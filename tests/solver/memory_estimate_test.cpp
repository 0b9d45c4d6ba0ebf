// SPDX-License-Identifier: BSD-3-Clause
// The memory that an analysis announces is what the handle then has at most.
#include "TOVBlaSolver.h"
#include "allocations.h"
#include "matrix_market.h"
#include "problems.h"
#include "workspace.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

struct Matrix
{
    int n;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> column;
    std::vector<double> value;
};

// What was announced, beside the most that the handle had from its creation to the end of factorise. Where
// the numbers asked for another order, that of the second factorisation. 1 for a singular matrix: what is
// needed to look into it comes on top.
double quotient(const std::string& name, int kind, const Matrix& a, int threads,
                const std::vector<int>& kept = {})
{
    const std::int64_t before = allocations::bytes();
    bla_solver* solver = nullptr;
    EXPECT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    const Handle owner(solver);
    const auto get = [&](const char* quantity) {
        double value = 0.0;
        EXPECT_EQ(bla_solver_get(solver, quantity, &value), BLA_SOLVER_OK) << quantity;
        return value;
    };
    EXPECT_EQ(bla_solver_set(solver, "threads", threads), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_set_schur(solver, static_cast<int>(kept.size()), kept.data()), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_analyse(solver, kind, a.n, a.start.data(), a.column.data()), BLA_SOLVER_OK);
    double announced = get("memory");
    allocations::forgetPeak();
    EXPECT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OK);
    if (get("memory") != announced) {
        announced = get("memory");
        allocations::forgetPeak();
        EXPECT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OK);
    }
    const double most = static_cast<double>(allocations::peak() - before);
    EXPECT_EQ(bla_solver_set(solver, "memory_limit", announced - 1.0), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OUT_OF_MEMORY) << name;
    EXPECT_EQ(bla_solver_set(solver, "memory_limit", announced), BLA_SOLVER_OK);
    EXPECT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OK) << name;
    std::printf("%-28s %6d unknowns, %d threads, announced %11.0f, most %11.0f: %.3f\n", name.c_str(), a.n,
                threads, announced, most, announced / most);
    return get("unheld_motions") > 0.0 ? 1.0 : announced / most;
}

void expectNear(const std::string& name, int kind, const Matrix& a, const std::vector<int>& kept = {})
{
    for (int threads : {1, 2}) {
        const double q = quotient(name, kind, a, threads, kept);
        EXPECT_GE(q, 0.8) << name << ", " << threads << " threads";
        EXPECT_LE(q, 1.2) << name << ", " << threads << " threads";
    }
}

class MemoryEstimate : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!allocations::watched)
            GTEST_SKIP() << "the sanitizer has its own malloc";
    }
};

} // namespace

// A small array takes a cache line more than it holds, one of large pages a page more.
TEST_F(MemoryEstimate, AnArrayTakesLittleMoreThanItHolds)
{
    constexpr std::int64_t line = 64, page = 1 << 21;
    for (std::int64_t count : {1, 7, 8, 100, 4096, (1 << 18) - 1, 1 << 18, (1 << 18) + 1, 1 << 19}) {
        const std::int64_t held = 8 * count, before = allocations::bytes();
        const Workspace array(count);
        const std::int64_t taken = allocations::bytes() - before;
        const std::int64_t announced = Workspace::bytes(count);
        EXPECT_GE(announced, held) << count;
        EXPECT_LE(announced, held + (held < page ? line : page)) << count;
        EXPECT_GE(taken, announced) << count;
        EXPECT_LE(taken, announced + (held < page ? 4096 : page)) << count; // what malloc rounds up
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(array.get()) % (held < page ? line : page), 0u) << count;
    }
}

TEST_F(MemoryEstimate, HoldsForRealMatrices)
{
    int count = 0;
    for (const auto& file : support::matrix_files()) {
        const support::Rows rows = support::read_matrix(file);
        if (rows.m != rows.n)
            continue;
        const Matrix a{rows.n, {rows.ia.begin(), rows.ia.end()}, {rows.ja.begin(), rows.ja.end()}, rows.a};
        expectNear(file.stem().string() + ", lower", BLA_SOLVER_SYMMETRIC_LOWER, a);
        expectNear(file.stem().string() + ", general", BLA_SOLVER_GENERAL, a);
        ++count;
    }
    EXPECT_GT(count, 10);
}

// Contributions and panels are the same, whoever makes them; what a thread needs for itself is a branch's.
TEST_F(MemoryEstimate, TwoThreadsTakeLittleMoreThanOne)
{
    const SparseMatrix held = problems::held(problems::lattice(15, 15, 15), {0, 1, 2, 3, 4, 5, 50, 51, 52});
    const Matrix a{held.n, held.start, held.column, held.value};
    double announced[2], most[2];
    for (int threads : {1, 2}) {
        const std::int64_t before = allocations::bytes();
        bla_solver* solver = nullptr;
        ASSERT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
        const Handle owner(solver);
        ASSERT_EQ(bla_solver_set(solver, "threads", threads), BLA_SOLVER_OK);
        ASSERT_EQ(
            bla_solver_analyse(solver, BLA_SOLVER_SYMMETRIC_LOWER, a.n, a.start.data(), a.column.data()),
            BLA_SOLVER_OK);
        allocations::forgetPeak();
        ASSERT_EQ(bla_solver_factorise(solver, a.value.data()), BLA_SOLVER_OK);
        ASSERT_EQ(bla_solver_get(solver, "memory", &announced[threads - 1]), BLA_SOLVER_OK);
        most[threads - 1] = static_cast<double>(allocations::peak() - before);
    }
    std::printf("two threads take %.3f of one, as announced, and %.3f\n", announced[1] / announced[0],
                most[1] / most[0]);
    EXPECT_GT(announced[1], announced[0]);
    EXPECT_LE(announced[1], 1.3 * announced[0]);
    EXPECT_LE(most[1], 1.3 * most[0]);
}

TEST_F(MemoryEstimate, HoldsForGrids)
{
    const std::pair<const char*, SparseMatrix> grids[] = {{"chain", problems::grid(300, 1, 1)},
                                                          {"plane", problems::grid(100, 100, 1)},
                                                          {"cube", problems::grid(20, 20, 20)},
                                                          {"lattice", problems::lattice(8, 8, 8)}};
    for (const auto& [name, grid] : grids) {
        Matrix a{grid.n, grid.start, grid.column, grid.value};
        std::vector<int> kept;
        for (int i = 0; i < a.n; ++i) {
            for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
                if (a.column[p] == i)
                    a.value[p] *= 1.25;
            if (i % 50 == 0)
                kept.push_back(i);
        }
        for (int kind : {BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_GENERAL}) {
            expectNear(name, kind, a);
            expectNear(std::string(name) + ", condensed", kind, a, kept);
        }
    }
}
