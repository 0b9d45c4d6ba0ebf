// SPDX-License-Identifier: BSD-3-Clause
// A(i,j) := 0 for j = k0+1..k0+m and i = j..n: m columns of the lower triangle with the diagonal.
#include "TOVBlaModule.h"

#include "clear_lower.h"

BLA_EXPORT void blaC_zerotriC(int n, int k0, int m, double* a, int lda)
{
    clear_lower(n, k0, m, a, lda);
}

BLA_PLAIN_NAME(blaC_zerotriC, "_Z13blaC_zerotriCiiiPdi", void, (int, int, int, double*, int))
