// SPDX-License-Identifier: BSD-3-Clause
// First column of (H - s1·I)·(H - s2·I), n = 2 or 3, up to a factor.
#include "facade.h"

extern "C" decltype(blac_zlaqr1_) zlaqr1_;

BLA_EXPORT void blac_zlaqr1_(const int* n, const blac_complex* h, const int* ldh, const blac_complex* s1,
                             const blac_complex* s2, blac_complex* v)
{
    zlaqr1_(n, h, ldh, s1, s2, v);
}
