// SPDX-License-Identifier: BSD-3-Clause
// Iterative refinement: x := x + M^-1 * (b - A*x) with M the factorised matrix, as long as it helps; where
// that leaves more than rounding, cycles of GMRES (krylov.h).
#pragma once

#include "backward_error.h"
#include "krylov.h"
#include "sparse_matrix.h"

// What may be spent on a right-hand side.
struct Effort
{
    int steps = 0;  // of plain refinement
    int cycles = 0; // of GMRES
};

struct Refined
{
    Vectors x;
    double residual = 0.0;  // the largest over the columns of |b - A*x| / (|A|*|x| + |b|), maximum norms
    BackwardError backward; // the largest over the columns
    int steps = 0;          // solutions with M after the first, the most of all columns
};

// Each column goes on as long as its componentwise backward error falls, and keeps its best iterate.
Refined refineFrom(const SparseMatrix& a, const Vectors& b, Vectors start, const Apply& apply,
                   const Effort& effort);
// From M^-1 * b.
Refined solveRefined(const SparseMatrix& a, const Vectors& b, const Apply& apply, const Effort& effort);

// V := A^-1 * V to the two digits that an estimate needs. False, and V as it was, where corrections do not
// shrink: A is singular to working precision, or M too far from it.
bool solveRoughly(const SparseMatrix& a, Vectors& v, const Apply& apply);

// max |x_i|, infinite where one is not a number
double maxNorm(const double* x, int n);
