// SPDX-License-Identifier: BSD-3-Clause
// A + E = L·D·U, unblocked, in place and without pivoting; E = diag(-dcorr) holds the shifts of tiny pivots.
#include "elimination.h"

BLA_ELIMINATION(blac_uelim_small_reg_,
                (const int* n, real* a, const int* lda, real* d, real* dinv, const real* tol,
                 const int* negpiv, const real* reg, real* dcorr),
                (n, a, lda, d, dinv, tol, negpiv, reg, dcorr), false, (ShiftTiny{tol, negpiv, reg, dcorr}))
