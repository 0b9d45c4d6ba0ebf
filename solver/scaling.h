// SPDX-License-Identifier: BSD-3-Clause
// Equilibration: brings the entries of a matrix to the order of one, so that a pivot tolerance means the same
// for every matrix. All factors are powers of two: scaling rounds nothing.
#pragma once

#include "sparse_matrix.h"

#include <vector>

// matrix = diag(row) * Q * A * diag(column), row i of Q*A being row rowOf[i] of A
struct Equilibrated
{
    SparseMatrix matrix;
    std::vector<int> rowOf;
    std::vector<double> row, column;
    int structuralRank = 0; // entries of the diagonal that can be made nonzero

    // A with other values, by the same exchanges and factors
    SparseMatrix applied(SparseMatrix a) const;

    // b of A*x = b to the right-hand side of the equilibrated system, in place
    void enter(Vectors& b) const;
};

// Factors that bring a diagonal to magnitudes of 1/2 to 2, which equilibrates a positive definite matrix:
// none of its entries is larger than the diagonal ones of its row and column. Empty where an entry is zero,
// not finite or out of reach.
std::vector<double> diagonalScales(const std::vector<double>& diagonal);

// A symmetric, and so is the result: rows stay where they are, rows and columns have the same factors.
Equilibrated equilibrateSymmetric(const SparseMatrix& a);

// Rows are exchanged so that the product of the diagonal entries is as large as possible; diagonal entries
// end at about 1, others at most there. An exchange that is `known` from other values, and leaves no diagonal
// entry much smaller than that, stands.
Equilibrated equilibrateUnsymmetric(const SparseMatrix& a, const std::vector<int>& known = {});
// The rows of the unknowns in `kept` stay where they are.
Equilibrated equilibrateUnsymmetric(const SparseMatrix& a, const std::vector<int>& known,
                                    const std::vector<int>& kept);
