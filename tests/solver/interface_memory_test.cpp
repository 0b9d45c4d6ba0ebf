// SPDX-License-Identifier: BSD-3-Clause
// Every allocation of every call of the C interface fails once: the call says so, the handle is as before,
// nothing is lost, and the call made again gives the bits that it gives undisturbed.
#include "TOVBlaSolver.h"
#include "allocations.h"
#include "plan.h"
#include "problems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

struct System
{
    const char* name;
    int kind;
    SparseMatrix a;
    std::vector<int> order = {}, kept = {};
    double ordering = 0.0;
    int threads = 1;
    long stride = 1; // of the allocations that fail

    std::vector<double> right() const
    {
        std::vector<double> b(a.n);
        for (int i = 0; i < a.n; ++i)
            b[i] = 1.0 + i % 5;
        return b;
    }
};

Handle create()
{
    bla_solver* solver = nullptr;
    EXPECT_EQ(bla_solver_create(&solver), BLA_SOLVER_OK);
    return Handle(solver);
}

// Whatever can be asked without changing anything, as bits.
using Told = std::vector<double>;

Told tell(bla_solver* solver, const System& system)
{
    Told told;
    for (const char* quantity : {"n",
                                 "entries",
                                 "fronts",
                                 "largest_front",
                                 "factor_entries",
                                 "flops",
                                 "memory",
                                 "ordering_used",
                                 "positive_pivots",
                                 "negative_pivots",
                                 "replaced_pivots",
                                 "shifted_pivots",
                                 "unheld_motions",
                                 "structural_rank",
                                 "residual",
                                 "backward_error",
                                 "error_estimate",
                                 "condition",
                                 "trusted",
                                 "refinement_steps",
                                 "tasks",
                                 "task_edges",
                                 "ordering"}) {
        double value = -1.0;
        told.push_back(bla_solver_get(solver, quantity, &value));
        told.push_back(value);
    }
    std::vector<double> x = system.right();
    told.push_back(bla_solver_solve(solver, 0, 1, x.data(), system.a.n));
    told.insert(told.end(), x.begin(), x.end());
    std::vector<double> d(system.a.n, -1.0);
    told.push_back(bla_solver_pivots(solver, d.data()));
    told.insert(told.end(), d.begin(), d.end());
    std::vector<std::int32_t> list(system.a.n, -1);
    told.push_back(bla_solver_replaced(solver, list.data()));
    told.push_back(bla_solver_unheld(solver, list.data()));
    told.insert(told.end(), list.begin(), list.end());
    std::vector<double> c(std::max<std::size_t>(system.kept.size() * system.kept.size(), 1), -1.0);
    told.push_back(bla_solver_schur(solver, c.data(), std::max<std::int64_t>(system.kept.size(), 1)));
    told.insert(told.end(), c.begin(), c.end());
    for (const char* p = bla_solver_verdict(solver); *p; ++p)
        told.push_back(*p);
    return told;
}

bool same(const Told& x, const Told& y)
{
    return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof x[0]) == 0;
}

using Call = std::function<int(bla_solver*)>;

// METIS says on standard error what it did not get, as often as it is asked.
class Silence
{
public:
    Silence() : before_(dup(2)), nothing_(open("/dev/null", O_WRONLY)) { dup2(nothing_, 2); }
    ~Silence()
    {
        dup2(before_, 2);
        close(before_);
        close(nothing_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int before_, nothing_;
};

// The call with the k-th allocation failing, for every k, on handles that `before` has prepared. It may
// succeed without the memory, if all that is told is as it would be.
void failEverywhere(const System& system, const char* name, const std::vector<Call>& before, const Call& call,
                    allocations::Failing failing)
{
    const auto prepared = [&] {
        Handle solver = create();
        EXPECT_EQ(bla_solver_set(solver.get(), "threads", system.threads), BLA_SOLVER_OK);
        EXPECT_EQ(bla_solver_set(solver.get(), "record", 1), BLA_SOLVER_OK);
        for (const Call& step : before)
            EXPECT_EQ(step(solver.get()), BLA_SOLVER_OK) << bla_solver_message(solver.get());
        return solver;
    };
    Handle solver = prepared();
    const Told untouched = tell(solver.get(), system);
    EXPECT_EQ(call(solver.get()), BLA_SOLVER_OK) << bla_solver_message(solver.get());
    const Told expected = tell(solver.get(), system);
    solver = prepared();
    // A factor that is being written over cannot be put back: where memory is missing to look into the new
    // one, that stands as it is, and the next one is as ever.
    const bool inPlace = std::strcmp(name, "factorise again") == 0;
    long refused = 0, absorbed = 0, lost = 0;
    for (long k = 0;; k += k < 8 ? 1 : system.stride) { // some calls have few
        int status;
        const long live = allocations::live();
        bool failed;
        {
            const Silence silence;
            allocations::fail(k, failing);
            status = call(solver.get());
            failed = allocations::stopFailing();
        }
        if (!failed) {
            EXPECT_EQ(status, BLA_SOLVER_OK);
            break;
        }
        ++refused;
        if (status == BLA_SOLVER_OK) {
            ++absorbed;
            if (inPlace)
                EXPECT_EQ(call(solver.get()), BLA_SOLVER_OK);
            ASSERT_TRUE(same(tell(solver.get(), system), expected)) << system.name << " " << name << " " << k;
            solver = prepared();
            continue;
        }
        ASSERT_EQ(status, BLA_SOLVER_OUT_OF_MEMORY)
            << system.name << " " << name << " " << k << ": " << bla_solver_message(solver.get());
        EXPECT_STRNE(bla_solver_message(solver.get()), "");
        // A thread of the runtime that starts meanwhile keeps a little, but not for every failure.
        lost += allocations::live() - live;
        ASSERT_LE(lost, system.threads > 1 ? 60 + refused / 4 : 0)
            << system.name << " " << name << " loses memory at " << k;
        ASSERT_TRUE(same(tell(solver.get(), system), untouched)) << system.name << " " << name << " " << k;
    }
    EXPECT_TRUE(same(tell(solver.get(), system), expected)) << system.name << " " << name;
    if (std::strncmp(name, "set", 3) != 0) {
        const bool asksOnce = std::strcmp(name, "solve") == 0; // for the vectors of all pieces
        EXPECT_GE(refused, asksOnce ? 1 : 4) << system.name << " " << name;
        std::printf("%s: %s: %ld allocations failed, %ld without effect\n", system.name, name, refused,
                    absorbed);
    }
}

void failInEveryCall(const System& system, allocations::Failing failing)
{
    const SparseMatrix& a = system.a;
    const std::vector<double> b = system.right();
    std::vector<double> x(b.size()), y(b.size());
    const Call order = [&](bla_solver* s) {
        return bla_solver_set_order(s, static_cast<int>(system.order.size()), system.order.data());
    };
    const Call keep = [&](bla_solver* s) {
        return bla_solver_set_schur(s, static_cast<int>(system.kept.size()), system.kept.data());
    };
    const Call choose = [&](bla_solver* s) {
        return system.order.empty() ? bla_solver_set(s, "ordering", system.ordering) : BLA_SOLVER_OK;
    };
    const Call analyse = [&](bla_solver* s) {
        return bla_solver_analyse(s, system.kind, a.n, a.start.data(), a.column.data());
    };
    const Call factorise = [&](bla_solver* s) { return bla_solver_factorise(s, a.value.data()); };
    const Call solve = [&](bla_solver* s) {
        x = b;
        return bla_solver_solve(s, 1, 1, x.data(), a.n);
    };
    const Call refine = [&](bla_solver* s) {
        std::fill(y.begin(), y.end(), 0.0);
        return bla_solver_refine(s, a.value.data(), 1, b.data(), a.n, y.data(), a.n);
    };
    const std::pair<const char*, Call> calls[] = {{"set_order", order},     {"set_schur", keep},
                                                  {"set", choose},          {"analyse", analyse},
                                                  {"factorise", factorise}, {"factorise again", factorise},
                                                  {"solve", solve},         {"refine", refine}};
    std::vector<Call> before;
    for (const auto& [name, call] : calls) {
        failEverywhere(system, name, before, call, failing);
        before.push_back(call);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

System onTwoThreads()
{
    return {"on two threads",
            BLA_SOLVER_SYMMETRIC_LOWER,
            problems::held(problems::lattice(7, 7, 6), {0, 1, 2, 3, 4, 5, 6, 7, 8}),
            {},
            {},
            2.0,
            2,
            11};
}

void failInEverySystem(allocations::Failing failing)
{
    std::mt19937_64 random(3);
    const SparseMatrix loose = problems::lattice(2, 2, 2);
    const SparseMatrix held = problems::held(loose, {0, 1, 2, 3, 4, 5, 6, 7, 8});
    SparseMatrix oblique = held; // unsymmetric, rows to be exchanged
    oblique.symmetric = false;
    for (int i = 0; i + 1 < oblique.n; i += 5)
        for (auto p = oblique.start[i]; p < oblique.start[i + 1]; ++p)
            oblique.value[p] *= oblique.column[p] == i ? 1e-9 : 1.5;
    SparseMatrix saddle = held; // some of its diagonal is there and zero
    for (int i = 0; i < saddle.n; i += 4)
        for (auto p = saddle.start[i]; p < saddle.start[i + 1]; ++p)
            if (saddle.column[p] == i)
                saddle.value[p] = 0.0;
    std::vector<int> order(loose.n);
    for (int i = 0; i < loose.n; ++i)
        order[i] = (7 * i + 3) % loose.n;

    const System systems[] = {
        {"held, METIS",
         BLA_SOLVER_SYMMETRIC_LOWER,
         problems::held(problems::lattice(5, 4, 4), {0, 1, 2, 3, 4, 5, 6, 7, 8}),
         {},
         {},
         1.0},
        {"loose, AMD", BLA_SOLVER_SYMMETRIC_UPPER, loose, {}, {}, 2.0},
        {"saddle", BLA_SOLVER_SYMMETRIC_LOWER, saddle, {}, {}, 2.0},
        {"oblique", BLA_SOLVER_GENERAL, oblique, {}, {}, 2.0},
        {"in a given order", BLA_SOLVER_SYMMETRIC_LOWER, loose, order, {}},
        {"condensed", BLA_SOLVER_GENERAL, held, {}, {7, 3, 30}, 2.0},
    };
    for (const System& system : systems)
        failInEveryCall(system, failing);
}

class Memory : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!allocations::watched)
            GTEST_SKIP() << "the sanitizer has its own malloc";
    }
};

} // namespace

TEST_F(Memory, AnyAllocationMayFail)
{
    failInEverySystem(allocations::Failing::once);
}

TEST_F(Memory, NoneMayBeLeft)
{
    failInEverySystem(allocations::Failing::fromThereOn);
}

// Large enough for several tasks.
TEST_F(Memory, AnyAllocationMayFailOnTwoThreads)
{
    const SparseMatrix a = onTwoThreads().a;
    const Plan plan(a, Wishes(), patternDemands(a));
    ASSERT_GE(plan.flops(), Cuts().leastFactorised);
    ASSERT_GE(plan.schedule->tasks.size(), 2u);
    failInEveryCall(onTwoThreads(), allocations::Failing::once);
}

TEST_F(Memory, NoneMayBeLeftOnTwoThreads)
{
    failInEveryCall(onTwoThreads(), allocations::Failing::fromThereOn);
}

TEST(Create, SaysThatThereIsNoMemory)
{
    if (!allocations::watched)
        GTEST_SKIP() << "the sanitizer has its own malloc";
    bla_solver* solver = nullptr;
    const long live = allocations::live();
    allocations::fail(0, allocations::Failing::once);
    const int status = bla_solver_create(&solver);
    EXPECT_TRUE(allocations::stopFailing());
    EXPECT_EQ(status, BLA_SOLVER_OUT_OF_MEMORY);
    EXPECT_EQ(solver, nullptr);
    EXPECT_EQ(allocations::live(), live);
}
