// SPDX-License-Identifier: BSD-3-Clause
// A(i,j) := 0 on the lower triangle with the diagonal, A of order n.
#include "clear_lower.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_zerotri_, (const int* n, real* a, const int* lda), (n, a, lda))
{
    if (*n < 1)
        return;
    clear_lower(*n, 0, *n, a, *lda);
}
