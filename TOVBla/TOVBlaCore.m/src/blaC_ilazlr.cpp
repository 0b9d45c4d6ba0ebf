// SPDX-License-Identifier: BSD-3-Clause
// Returns the last row that is not zero, from 1.
#include "facade.h"

extern "C" decltype(blac_ilazlr_) ilazlr_;

BLA_EXPORT int blac_ilazlr_(const int* m, const int* n, const blac_complex* a, const int* lda)
{
    return ilazlr_(m, n, a, lda);
}
