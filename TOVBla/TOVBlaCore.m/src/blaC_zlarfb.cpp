// SPDX-License-Identifier: BSD-3-Clause
// dlarfb, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlarfb_), 4> zlarfb_;

BLA_EXPORT void blac_zlarfb_(const char* side, const char* trans, const char* direct, const char* storev,
                             const int* m, const int* n, const int* k, const blac_complex* v, const int* ldv,
                             const blac_complex* t, const int* ldt, blac_complex* c, const int* ldc,
                             blac_complex* work, const int* ldwork)
{
    zlarfb_(side, trans, direct, storev, m, n, k, v, ldv, t, ldt, c, ldc, work, ldwork, 1, 1, 1, 1);
}
