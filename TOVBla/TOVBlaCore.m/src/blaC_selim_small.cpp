// SPDX-License-Identifier: BSD-3-Clause
// A = L·D·Lᵀ, unblocked, in place and without pivoting; pivots in [-tol, tol] and NaN become 1e36.
#include "elimination.h"

BLA_ELIMINATION(blac_selim_small_,
                (const int* n, real* a, const int* lda, real* d, real* dinv, const double* tol),
                (n, a, lda, d, dinv, tol), true, (ReplaceTiny{*tol}))
