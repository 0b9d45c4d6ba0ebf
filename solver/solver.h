// SPDX-License-Identifier: BSD-3-Clause
// The whole way from A and b to x: equilibration, analysis, factorisation, solution, refinement, and a
// judgement of how far the answer can be trusted.
#pragma once

#include "bounds.h"
#include "refine.h"
#include "sparse_matrix.h"
#include "unheld.h"

#include <cstdint>
#include <functional>
#include <string>

struct SolverOptions
{
    bool symmetric = true; // L*D*L^T, else L*D*U
    double tolerance = 0.0;
    int nb = 0;
    int refinements = 0;
};

// Called with what is being done and the share of it that is done.
using Monitor = std::function<void(const char*, double)>;

struct Phase
{
    double seconds = 0.0, flops = 0.0;
    double gflops() const { return seconds > 0.0 ? flops * 1e-9 / seconds : 0.0; }
};

struct Outcome
{
    Refined answer;
    const char* ordering = "";
    int fronts = 0, largestFront = 0;
    std::int64_t factorEntries = 0;
    Phase analysis, factorisation, solution;
    Phase refinement;               // residuals and the bound on the error
    int positive = 0, negative = 0; // pivots used as they came, by sign
    int replaced = 0, shifted = 0;  // tiny pivots, by what was done to them
    ErrorBound bound;               // on the answer's error
    UnheldMotions unheld;           // where the matrix is singular
    bool trusted = false;
    std::string verdict;
};

Outcome solve(const SparseMatrix& a, const Vectors& b, const SolverOptions& options, const Monitor& monitor);
