// SPDX-License-Identifier: BSD-3-Clause
// Returns sqrt(x² + y² + z²) without needless overflow.
#include "facade.h"

extern "C" decltype(blac_dlapy3_) dlapy3_;

BLA_EXPORT double blac_dlapy3_(const double* x, const double* y, const double* z)
{
    return dlapy3_(x, y, z);
}
