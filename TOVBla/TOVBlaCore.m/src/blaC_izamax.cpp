// SPDX-License-Identifier: BSD-3-Clause
// Returns the first index, from 1, of the largest |Re x(i)| + |Im x(i)|; 0 for n < 1.
#include "facade.h"

extern "C" decltype(blac_izamax_) izamax_;

BLA_EXPORT int blac_izamax_(const int* n, const blac_complex* x, const int* incx)
{
    return izamax_(n, x, incx);
}
