// SPDX-License-Identifier: BSD-3-Clause
// dlarft, complex.
#include "facade.h"

extern "C" void zlarft_(const char* direct, const char* storev, const int* n, const int* k, blac_complex* v,
                        const int* ldv, const blac_complex* tau, blac_complex* t, const int* ldt, std::size_t,
                        std::size_t);

BLA_EXPORT void blac_zlarft_(const char* direct, const char* storev, const int* n, const int* k,
                             blac_complex* v, const int* ldv, const blac_complex* tau, blac_complex* t,
                             const int* ldt)
{
    zlarft_(direct, storev, n, k, v, ldv, tau, t, ldt, 1, 1);
}
