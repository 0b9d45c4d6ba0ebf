// SPDX-License-Identifier: BSD-3-Clause
// Iterative refinement: x := x + M^-1 * (b - A*x) with M the factorised matrix, as long as it helps.
#pragma once

#include "sparse_matrix.h"

#include <functional>

struct Refined
{
    Vectors x;
    double residual = 0.0;   // the largest over the columns of |b - A*x| / (|A|*|x| + |b|), maximum norms
    double correction = 0.0; // size of a correction beside x: the last, or the largest by which only rounding
                             // was corrected
    int steps = 0;
};

// `apply` replaces X by M^-1 * X.
Refined solveRefined(const SparseMatrix& a, const Vectors& b, const std::function<void(Vectors&)>& apply,
                     int maxSteps);
