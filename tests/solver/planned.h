// SPDX-License-Identifier: BSD-3-Clause
// A matrix analysed by its zeros and numbers, and memory for its factor, without scaling and interface.
#pragma once

#include "factor.h"
#include "plan.h"

struct Planned
{
    Plan plan;
    Factor factor;

    explicit Planned(const SparseMatrix& a, int threads = 1)
        : plan(a, Wishes(), patternDemands(a)),
          factor(plan.analysis, *plan.assembly, *plan.schedule, *plan.pieces, threads)
    {
    }
};
