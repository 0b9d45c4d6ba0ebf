// SPDX-License-Identifier: BSD-3-Clause
// What a singular matrix leaves open: the motions of a structure that no support holds, and where holding it
// would help.
#pragma once

#include "bounds.h"
#include "factor.h"
#include "sparse_matrix.h"

#include <vector>

struct UnheldMotions
{
    int count = 0;             // dimension of the null space, to working precision
    std::vector<int> unknowns; // as many, ascending: with these held, nothing moves freely
    // Null vectors of A^T, of length 1: A*x = b has solutions only for b without a part in their directions.
    std::vector<std::vector<double>> reactions;
};

// The part of B that no X produces, beside all of it; the largest over the columns.
double unreachable(const UnheldMotions& motions, const Vectors& b);

// M = A + E*S*E^T is what was factorised, S the shifts of the treated pivots and E their columns of the unit
// matrix. A*z = 0 means z = M^-1*E*S*E^T*z: the null space lies in the span of W = M^-1*E, and shows as the
// small singular values of Q'^T*A*Q, with Q and Q' orthonormal bases of W and of its transposed counterpart.
// What rounding did to Q enters that product in second order only. Nothing is looked for where W would be too
// large; then count is 0.
UnheldMotions findUnheldMotions(const SparseMatrix& a, const std::vector<TreatedPivot>& treated,
                                const Factorised& m);
