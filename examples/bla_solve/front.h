// SPDX-License-Identifier: BSD-3-Clause
// The elimination of one dense front. The front
//
//     F11  .      p pivots
//     F21  C      m rows that stay
//
// lives in two pieces: `panel` holds F11 over F21 (p + m rows, p columns) and ends as the factor, `rest`
// holds C (order m) and ends as the Schur complement.
#pragma once

struct PivotRule
{
    double tolerance = 0.0; // a pivot of at most this magnitude is replaced
    int nb = 0;             // panel width; 0: by the size of the front
};

// The panel width that the elimination uses for p pivots.
int panelWidth(const PivotRule& rule, int pivots);

// Symmetric, lower triangles: the panel ends as L*D (pivots on the diagonal), the rest as C - L21*D*L21^T.
// d and dinv receive the pivots and their reciprocals; a replaced pivot shows as d = 1e36.
void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur, double* d,
                        double* dinv);
