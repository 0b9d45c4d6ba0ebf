// SPDX-License-Identifier: BSD-3-Clause
// Generates a plane rotation with real cosine and complex sine.
#include "facade.h"

extern "C" decltype(blac_zlartg_) zlartg_;

BLA_EXPORT void blac_zlartg_(const blac_complex* f, const blac_complex* g, double* c, blac_complex* s,
                             blac_complex* r)
{
    zlartg_(f, g, c, s, r);
}
