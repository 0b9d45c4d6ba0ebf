// SPDX-License-Identifier: BSD-3-Clause
// Turns eigenvectors of the balanced matrix back.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgebak_), 2> zgebak_;

BLA_EXPORT void blac_zgebak_(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                             const double* scale, const int* m, blac_complex* v, const int* ldv, int* info)
{
    zgebak_(job, side, n, ilo, ihi, scale, m, v, ldv, info, 1, 1);
}
