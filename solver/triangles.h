// SPDX-License-Identifier: BSD-3-Clause
// Solutions with narrow triangles, for which a call of the BLAS costs more than its work.
#pragma once

// The widest triangle.
constexpr int narrowTriangle = 32;

// B := B * U^-1, U upper triangular of order n <= narrowTriangle with unit diagonal, B of m rows. Of U only
// what lies above the diagonal is read.
void solveByUpperUnit(int m, int n, const double* u, int ldu, double* b, int ldb);
// The same, as processors without AVX2 do it.
void solveByUpperUnitNarrow(int m, int n, const double* u, int ldu, double* b, int ldb);
