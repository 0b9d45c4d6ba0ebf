// SPDX-License-Identifier: BSD-3-Clause
// A matrix analysed by its zeros and numbers, and memory for its factor, without scaling and interface.
#pragma once

#include "factor.h"
#include "plan.h"

struct Planned
{
    Plan plan;
    Factor factor;

    explicit Planned(const SparseMatrix& a, int threads = 1, const Cuts& cuts = {},
                     const std::vector<int>& kept = {})
        : plan(cutBy(cuts, Plan(a, {Ordering::choose, {}, kept}, patternDemands(a)))),
          factor(plan.analysis, *plan.assembly, *plan.schedule, *plan.pieces, threads)
    {
    }
    void solve(Vectors& x, bool transposed = false) const { factor.solve(x, transposed, factor.threads()); }

private:
    static Plan cutBy(const Cuts& cuts, Plan plan)
    {
        plan.schedule = std::make_unique<const Schedule>(plan.analysis, plan.symmetric(), cuts);
        plan.pieces = std::make_unique<const Pieces>(plan.analysis, *plan.schedule, plan.symmetric());
        return plan;
    }
};
