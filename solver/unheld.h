// SPDX-License-Identifier: BSD-3-Clause
// What a singular matrix leaves open: the motions of a structure that no support holds, and where holding it
// would help.
#pragma once

#include "factor.h"
#include "refine.h"
#include "sparse_matrix.h"

#include <vector>

struct UnheldMotions
{
    int count = 0;             // dimension of the null space, to working precision
    std::vector<int> unknowns; // as many, ascending: with these held, nothing moves freely
};

// M = A + E*S*E^T is what was factorised, S the shifts of the treated pivots and E their columns of the unit
// matrix, `apply` replaces X by M^-1 * X. A*z = 0 means z = M^-1*E*u with (I - S*E^T*M^-1*E)*u = 0: a small
// dense matrix shows the null space. Nothing is looked for where it is not small; then count is 0.
UnheldMotions findUnheldMotions(const SparseMatrix& a, const std::vector<TreatedPivot>& treated,
                                const Apply& apply);
