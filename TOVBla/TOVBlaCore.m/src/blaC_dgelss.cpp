// SPDX-License-Identifier: BSD-3-Clause
// Minimum-norm least squares by the singular value decomposition.
#include "facade.h"

extern "C" decltype(blac_dgelss_) dgelss_;

BLA_EXPORT void blac_dgelss_(const int* m, const int* n, const int* nrhs, double* a, const int* lda,
                             double* b, const int* ldb, double* s, const double* rcond, int* rank,
                             double* work, const int* lwork, int* info)
{
    dgelss_(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, info);
}
