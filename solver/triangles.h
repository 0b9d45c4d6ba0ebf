// SPDX-License-Identifier: BSD-3-Clause
// Solutions with the triangles of fronts where a call of the BLAS costs more than its work: narrow blocks of
// a panel, and single columns. The arithmetic is the same on every processor, and so are the bits. All
// matrices are column-major.
#pragma once

namespace triangles {

// The widest block that solveByUpperUnit takes.
constexpr int mostColumns = 32;

// B := B * U^-1, U upper triangular of order n <= mostColumns with unit diagonal, which is not read, nor is
// what lies below it; B of m rows.
void solveByUpperUnit(int m, int n, const double* u, int ldu, double* b, int ldb);

// L is a panel of `order` rows, the first `pivots` of them lower triangular; reciprocal[j] is that of its
// diagonal entry j; v has the length order.
//
// v1 := L11^-1 * v1, v2 := v2 - L21 * v1
void forward(int order, int pivots, const double* l, const double* reciprocal, double* v);
// v1 := L11^-T * (v1 - L21^T * v2)
void backward(int order, int pivots, const double* l, const double* reciprocal, double* v);

} // namespace triangles
