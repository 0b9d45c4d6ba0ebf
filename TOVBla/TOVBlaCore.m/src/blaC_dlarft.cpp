// SPDX-License-Identifier: BSD-3-Clause
// Triangular factor T of a block reflector; older libraries change v during the call.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlarft_), 2> dlarft_;

BLA_EXPORT void blac_dlarft_(const char* direct, const char* storev, const int* n, const int* k, double* v,
                             const int* ldv, const double* tau, double* t, const int* ldt)
{
    dlarft_(direct, storev, n, k, v, ldv, tau, t, ldt, 1, 1);
}
