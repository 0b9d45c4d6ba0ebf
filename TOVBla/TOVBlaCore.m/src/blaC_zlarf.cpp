// SPDX-License-Identifier: BSD-3-Clause
// Applies a complex elementary reflector to C.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlarf_), 1> zlarf_;

BLA_EXPORT void blac_zlarf_(const char* side, const int* m, const int* n, const blac_complex* v,
                            const int* incv, const blac_complex* tau, blac_complex* c, const int* ldc,
                            blac_complex* work)
{
    zlarf_(side, m, n, v, incv, tau, c, ldc, work, 1);
}
