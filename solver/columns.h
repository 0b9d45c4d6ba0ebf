// SPDX-License-Identifier: BSD-3-Clause
// Solutions of few right-hand sides with the panel of a front, for which a call of the BLAS costs more than
// its work.
//
// L is the panel, of `order` rows, the first `pivots` of them lower triangular; reciprocal[j] is that of its
// diagonal entry j. V holds `width` right-hand sides, a row of it for each row of the panel, one after the
// other; width is 1 or a multiple of columnGroup.
#pragma once

constexpr int columnGroup = 4;

// V := L11^-1 * V of the rows of the pivots, W2 := L21 * V of the others; W has all rows. Apart from V, sums
// of many small terms are not rounded as coarsely as V is.
void solveForward(int order, int pivots, const double* l, const double* reciprocal, double* v, double* w,
                  int width);
// V1 := L11^-T * (V1 - L21^T * V2)
void solveBackward(int order, int pivots, const double* l, const double* reciprocal, double* v, int width);
// The same, as processors with AVX2 and no AVX-512 do it, and those without AVX2.
void solveForwardWide(int order, int pivots, const double* l, const double* reciprocal, double* v, double* w,
                      int width);
void solveBackwardWide(int order, int pivots, const double* l, const double* reciprocal, double* v,
                       int width);
void solveForwardNarrow(int order, int pivots, const double* l, const double* reciprocal, double* v,
                        double* w, int width);
void solveBackwardNarrow(int order, int pivots, const double* l, const double* reciprocal, double* v,
                         int width);
