// SPDX-License-Identifier: BSD-3-Clause
// What is to be solved, or condensed.
#pragma once

#include "matrix.h"
#include "options.h"

#include <vector>

struct Problem
{
    Matrix a;
    Block b;
    Block exact;           // empty where the solution is not known
    std::vector<int> kept; // not empty: condensation to these instead of a solution
};

// Throws InputError.
Problem readProblem(const Options& options);

// The largest over the columns of max |x - exact| / max |exact|.
double relativeError(const Block& x, const Block& exact);
