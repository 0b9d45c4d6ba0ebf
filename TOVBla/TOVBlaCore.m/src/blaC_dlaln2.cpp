// SPDX-License-Identifier: BSD-3-Clause
// Solves a 1 × 1 or 2 × 2 system (ca·A - w·D)·X = scale·B; ltrans is a logical.
#include "facade.h"

extern "C" decltype(blac_dlaln2_) dlaln2_;

BLA_EXPORT void blac_dlaln2_(const int* ltrans, const int* na, const int* nw, const double* smin,
                             const double* ca, const double* a, const int* lda, const double* d1,
                             const double* d2, const double* b, const int* ldb, const double* wr,
                             const double* wi, double* x, const int* ldx, double* scale, double* xnorm,
                             int* info)
{
    dlaln2_(ltrans, na, nw, smin, ca, a, lda, d1, d2, b, ldb, wr, wi, x, ldx, scale, xnorm, info);
}
