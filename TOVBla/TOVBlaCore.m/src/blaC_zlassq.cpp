// SPDX-License-Identifier: BSD-3-Clause
// Updates scale²·sumsq by the squares of a complex vector.
#include "facade.h"

extern "C" decltype(blac_zlassq_) zlassq_;

BLA_EXPORT void blac_zlassq_(const int* n, const blac_complex* x, const int* incx, double* scale,
                             double* sumsq)
{
    zlassq_(n, x, incx, scale, sumsq);
}
