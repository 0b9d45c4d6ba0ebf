// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sparse_matrix.h"

#include <vector>

struct Matching
{
    std::vector<int> rowOf;                            // the row matched to each column
    std::vector<double> rowLogarithm, columnLogarithm; // scaling factors, as logarithms to the base 2
    int size = 0;                                      // pairs with a nonzero entry
};

// Pairs every row with a column so that the product of the entries a(rowOf[j], j) is as large as possible in
// magnitude, and gives the factors with which these entries become 1 and no other exceeds 1. Where the matrix
// is structurally singular the pairs left over are arbitrary.
Matching matchLargest(const SparseMatrix& a);
