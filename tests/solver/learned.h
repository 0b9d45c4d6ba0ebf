// SPDX-License-Identifier: BSD-3-Clause
// All that a caller of the C interface learns of a system, as one list of numbers.
#pragma once

#include "TOVBlaSolver.h"
#include "cube.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Handle = std::unique_ptr<bla_solver, Destroy>;

// How tiny pivots are treated: left to the solver, replaced below a tolerance (and the factor kept, because
// there are unknowns that are), or moved away from zero.
struct Treatment
{
    const char* name;
    double tolerance, shift;
    bool keeping;
};
constexpr Treatment treatments[] = {
    {"as they come", 1e-14, 0.0, false}, {"replaced", 0.3, 0.0, true}, {"shifted", 0.3, 0.6, false}};

// Pivots or their number, what was treated, the Schur complement, and solutions of one and of eight
// right-hand sides, forward and transposed. Everything is done on so many threads.
inline std::vector<double> learned(const Cube& a, bool symmetric, int threads,
                                   const Treatment& treatment = treatments[0])
{
    bla_solver* made = nullptr;
    EXPECT_EQ(bla_solver_create(&made), BLA_SOLVER_OK);
    const Handle owner(made);
    const auto done = [&](int status) { EXPECT_EQ(status, BLA_SOLVER_OK) << bla_solver_message(made); };
    done(bla_solver_set(made, "threads", threads));
    done(bla_solver_set(made, "tolerance", treatment.tolerance));
    done(bla_solver_set(made, "shift", treatment.shift));
    std::vector<std::int32_t> kept;
    for (int i = 0; treatment.keeping && i < a.n; i += a.n / 40)
        kept.push_back(i);
    done(bla_solver_set_schur(made, static_cast<int>(kept.size()), kept.data()));
    done(bla_solver_analyse(made, symmetric ? BLA_SOLVER_SYMMETRIC_LOWER : BLA_SOLVER_GENERAL, a.n,
                            a.start.data(), a.column.data()));
    done(bla_solver_factorise(made, a.value.data()));
    std::vector<double> all;
    for (const char* quantity : {"positive_pivots", "negative_pivots", "replaced_pivots", "shifted_pivots"}) {
        double value = -1.0;
        done(bla_solver_get(made, quantity, &value));
        all.push_back(value);
    }
    if (symmetric) {
        all.resize(all.size() + a.n);
        done(bla_solver_pivots(made, all.data() + all.size() - a.n));
    }
    if (!kept.empty()) {
        const std::size_t entries = kept.size() * kept.size();
        all.resize(all.size() + entries);
        done(bla_solver_schur(made, all.data() + all.size() - entries,
                              static_cast<std::int64_t>(kept.size())));
    }
    for (int columns : {1, 8})
        for (int transposed : {0, 1}) {
            std::vector<double> x = a.right(columns);
            done(bla_solver_solve(made, transposed, columns, x.data(), a.n));
            all.insert(all.end(), x.begin(), x.end());
        }
    return all;
}

inline bool sameBits(const std::vector<double>& x, const std::vector<double>& y)
{
    return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof x[0]) == 0;
}
