// SPDX-License-Identifier: BSD-3-Clause
// Returns the last column that is not zero, from 1.
#include "facade.h"

extern "C" int ilazlc_(const int* m, const int* n, const blac_complex* a, const int* lda);

BLA_EXPORT int blac_ilazlc_(const int* m, const int* n, const blac_complex* a, const int* lda)
{
    return ilazlc_(m, n, a, lda);
}
