// SPDX-License-Identifier: BSD-3-Clause
// Equilibration: factors that bring the entries of a matrix to the order of one, so that a pivot tolerance
// means the same for every matrix. All factors are powers of two: scaling rounds nothing.
#pragma once

#include "sparse_matrix.h"

#include <vector>

// s with max over j of |s(i)*a(i,j)*s(j)| about 1 in every row i
std::vector<double> equilibrate(const SparseMatrix& a);

// The power of two nearest to x > 0 (in the logarithm).
double nearestPowerOfTwo(double x);
