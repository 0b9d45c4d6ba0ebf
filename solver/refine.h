// SPDX-License-Identifier: BSD-3-Clause
// Iterative refinement: x := x + M^-1 * (b - A*x) with M the factorised matrix, as long as it helps.
#pragma once

#include "backward_error.h"
#include "sparse_matrix.h"

#include <functional>

// Replaces X by M^-1 * X.
using Apply = std::function<void(Vectors&)>;

struct Refined
{
    Vectors x;
    double residual = 0.0;  // the largest over the columns of |b - A*x| / (|A|*|x| + |b|), maximum norms
    BackwardError backward; // the largest over the columns
    int steps = 0;
};

// Each column goes on as long as its componentwise backward error falls, and keeps its best iterate.
Refined refineFrom(const SparseMatrix& a, const Vectors& b, Vectors start, const Apply& apply, int maxSteps);
// From M^-1 * b.
Refined solveRefined(const SparseMatrix& a, const Vectors& b, const Apply& apply, int maxSteps);

// V := A^-1 * V to the two digits that an estimate needs. False where corrections do not shrink: A is
// singular to working precision, or M too far from it.
bool solveRoughly(const SparseMatrix& a, Vectors& v, const Apply& apply);

// max |x_i|, infinite where one is not a number
double maxNorm(const double* x, int n);
