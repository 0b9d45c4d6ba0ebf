// SPDX-License-Identifier: BSD-3-Clause
// Returns 1 if infinities (ispec = 0), and NaNs too (ispec = 1), can be trusted, else 0; zero and one are
// single-precision.
#include "facade.h"

extern "C" decltype(blac_ieeeck_) ieeeck_;

BLA_EXPORT int blac_ieeeck_(const int* ispec, const float* zero, const float* one)
{
    return ieeeck_(ispec, zero, one);
}
