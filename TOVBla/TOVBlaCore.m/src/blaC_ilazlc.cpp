// SPDX-License-Identifier: BSD-3-Clause
// Returns the last column that is not zero, from 1.
#include "facade.h"

extern "C" decltype(blac_ilazlc_) ilazlc_;

BLA_EXPORT int blac_ilazlc_(const int* m, const int* n, const blac_complex* a, const int* lda)
{
    return ilazlc_(m, n, a, lda);
}
