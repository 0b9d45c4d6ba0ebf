// SPDX-License-Identifier: BSD-3-Clause
// Systems to be solved, made for the purpose.
#pragma once

#include "random.h"
#include "sparse_matrix.h"

#include <string>
#include <vector>

namespace problems {

// By columns, n*n entries.
using Dense = std::vector<double>;
SparseMatrix sparse(int n, const Dense& a);
Dense dense(const SparseMatrix& a);

// Random, with singular values from 1 down to 1/condition; symmetric and positive definite or neither.
Dense conditioned(int n, double condition, bool symmetric, std::mt19937_64& random);

// Both halves of a random sparse symmetric matrix: off the diagonal three entries a row or so in [-1, 1], on
// it numbers of either sign of the given sizes.
SparseMatrix indefinite(int n, double smallest, double largest, std::mt19937_64& random);

// Springs between the points of a grid that are neighbours, nothing held: one motion is free in each piece.
SparseMatrix grid(int nx, int ny, int nz);

// A block of nx*ny*nz cells, each with springs along its edges, faces' diagonals and space diagonals, three
// displacements a point, point after point; nothing held: six motions are free, and only those.
SparseMatrix lattice(int nx, int ny, int nz);

// L*D*L^T with random unit lower L and pivots from 1 down to `smallest`, some of them equal to it.
Dense nearlySingular(int n, double smallest, std::mt19937_64& random);

// A with the rows and columns of these unknowns taken out.
SparseMatrix held(const SparseMatrix& a, const std::vector<int>& unknowns);

Vectors ones(int n);
Vectors product(const SparseMatrix& a, const Vectors& x);

// max |x - y| / max |y|
double relativeError(const Vectors& x, const Vectors& y);

// The solution of A*x = b, by elimination with row exchanges in a longer format.
Vectors exactSolution(int n, const Dense& a, const Vectors& b);

// What a caller of the interface learns of a system.
struct Outcome
{
    Vectors x;
    std::string verdict;
    bool trusted = false;
    double residual = 0.0, backwardError = 0.0, bound = 0.0;
    int steps = 0, replaced = 0, shifted = 0, motions = 0;
    std::vector<int> unheld;
};

struct How
{
    bool symmetric = true;
    int refinements = 10;
};

// Analysed, factorised, solved and refined; not trusted where a call fails.
Outcome solved(const SparseMatrix& a, const Vectors& b, const How& how = {});

} // namespace problems
