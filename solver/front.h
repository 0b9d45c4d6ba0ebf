// SPDX-License-Identifier: BSD-3-Clause
// The elimination of one dense front, p pivots and m rows that stay:
//
//     F11  F12
//     F21  C
//
// `panel` holds F11 over F21 (p + m rows, p columns), `right` holds F12 (p rows, m columns; unsymmetric
// fronts only), `schur` holds C (order m). All are column-major without gaps. Panel and right end as the
// factor, schur as the Schur complement C - F21 * F11^-1 * F12.
#pragma once

struct PivotRule
{
    double tolerance = 0.0; // a pivot of at most this magnitude counts as tiny
    double shift = 0.0;     // 0: a tiny pivot is replaced by 1e36, which takes its unknown out of the system;
                            // else it is moved away from zero by this much
    int nb = 0;             // panel width; 0: by the size of the front
};

// Where the pivots of a front go, p of each, and how those of a rule with a shift are treated.
struct Pivots
{
    double* d;           // out: pivots as used
    double* dinv;        // out: their reciprocals
    const int* negative; // in: 1 where a tiny pivot is to become negative (shift > 0 only)
    double* correction;  // out: not zero where a pivot was moved (shift > 0 only)
    // tolerance beside the shift, and shift, the same for all pivots (shift > 0 only)
    const double *tolerance, *shift;
};

// Only lower triangles are read. The panel ends as L*D: pivots on the diagonal, unit lower L times D below.
void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur,
                        const Pivots& out);

// The panel ends as L*D (with U11 above the diagonal), right as U12, U unit upper.
void eliminateUnsymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* right,
                          double* schur, const Pivots& out);

// The same in steps, of which large fronts have one for each tile.
//
// F, of order `pivots`, is eliminated as F11 above.
void eliminatePivots(const PivotRule& rule, bool symmetric, int pivots, double* f, int ld, const Pivots& out);
// m rows R := L*D with L = R * (D * L^T)^-1, or R * U^-1, of F as eliminatePivots left it
void solveLower(const PivotRule& rule, bool symmetric, int m, int pivots, const double* f, int ldf,
                double* rows, int ld, const double* dinv);
// n columns R := U with U = (L*D)^-1 * R
void solveUpper(int n, int pivots, const double* f, int ldf, double* columns, int ld);
// C := beta*C - A * D^-1 * B^T, C of m rows and n columns; where A is B, only the lower triangle is needed
void updateSymmetric(int m, int n, int pivots, const double* a, const double* b, int ld, const double* dinv,
                     double beta, double* c, int ldc);
// C := beta*C - A * B
void updateUnsymmetric(int m, int n, int pivots, const double* a, int lda, const double* b, int ldb,
                       double beta, double* c, int ldc);
