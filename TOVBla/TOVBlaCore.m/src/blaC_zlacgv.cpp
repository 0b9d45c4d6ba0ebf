// SPDX-License-Identifier: BSD-3-Clause
// Conjugates a complex vector.
#include "facade.h"

extern "C" decltype(blac_zlacgv_) zlacgv_;

BLA_EXPORT void blac_zlacgv_(const int* n, blac_complex* x, const int* incx)
{
    zlacgv_(n, x, incx);
}
