// SPDX-License-Identifier: BSD-3-Clause
// Solutions of few right-hand sides with the panel of a front, for which a call of the BLAS costs more than
// its work.
//
// L is the panel, of `order` rows, the first ones of its pivots lower triangular; reciprocal[j] is that of
// its diagonal entry j. V holds `width` right-hand sides, a row of it for each row of the panel, one after
// the other; width is 1 or a multiple of columnGroup. Sums of many small terms are not rounded as coarsely as
// V.
#pragma once

constexpr int columnGroup = 4;

// Rows top ... bottom - 1 of columns left ... right - 1 of a panel. It begins on the diagonal, and has the
// triangle of its columns, or it has none of that.
struct PanelPart
{
    int top, bottom, left, right;

    bool diagonal() const { return top == left; }
};

// W := W + L * V for the rows of a part; of one on the diagonal V := L^-1 * (V - W) first for its triangle,
// the rows of which are left in W.
void solveForward(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                  double* w, int width);
// S := S + L^T * V for the columns of a part; of one on the diagonal V := L^-T * (V - L2^T * V2 - S), L2 what
// it has below its triangle. S: of all columns, of a part on the diagonal null where it is zero.
void solveBackward(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                   double* s, int width);
// The same, as processors with AVX2 and no AVX-512 do it, and those without AVX2.
void solveForwardWide(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                      double* w, int width);
void solveBackwardWide(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                       double* s, int width);
void solveForwardNarrow(const PanelPart& part, int order, const double* l, const double* reciprocal,
                        double* v, double* w, int width);
void solveBackwardNarrow(const PanelPart& part, int order, const double* l, const double* reciprocal,
                         double* v, double* s, int width);
