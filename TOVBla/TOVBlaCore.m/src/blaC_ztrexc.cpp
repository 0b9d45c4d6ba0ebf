// SPDX-License-Identifier: BSD-3-Clause
// Reorders a complex Schur factorisation.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrexc_), 1> ztrexc_;

BLA_EXPORT void blac_ztrexc_(const char* compq, const int* n, blac_complex* t, const int* ldt,
                             blac_complex* q, const int* ldq, const int* ifst, const int* ilst, int* info)
{
    ztrexc_(compq, n, t, ldt, q, ldq, ifst, ilst, info, 1);
}
