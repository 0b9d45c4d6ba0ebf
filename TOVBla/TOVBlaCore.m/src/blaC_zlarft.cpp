// SPDX-License-Identifier: BSD-3-Clause
// dlarft, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlarft_), 2> zlarft_;

BLA_EXPORT void blac_zlarft_(const char* direct, const char* storev, const int* n, const int* k,
                             blac_complex* v, const int* ldv, const blac_complex* tau, blac_complex* t,
                             const int* ldt)
{
    zlarft_(direct, storev, n, k, v, ldv, tau, t, ldt, 1, 1);
}
