// SPDX-License-Identifier: BSD-3-Clause
// Flexible GMRES with the factorised matrix M on the right, for an M that is too far from A for plain
// refinement: Y. Saad, SIAM J. Sci. Comput. 14 (1993) 461-469; M. Arioli, I. S. Duff, S. Gratton, S. Pralet,
// "A note on GMRES preconditioned by a perturbed LDL^T decomposition with static pivoting", SIAM J. Sci.
// Comput. 29 (2007) 2024-2044.
#pragma once

#include "sparse_matrix.h"

#include <functional>

// Replaces X by M^-1 * X.
using Apply = std::function<void(Vectors&)>;

// One cycle for one right-hand side, r = b - A*x:
//
//     x := x + Z*y,  Z = M^-1*S*V,  V orthonormal, span{S^-1*r, S^-1*A*Z},  min |S^-1*(r - A*Z*y)|,
//
// with S the scales of the equations that the backward error of x is measured by: of whatever units A is,
// what is made small is that error. Up to 30 solutions with M; their number is returned.
int krylovCycle(const SparseMatrix& a, const double* b, double* x, const Apply& apply);
