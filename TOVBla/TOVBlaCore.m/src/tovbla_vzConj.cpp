// SPDX-License-Identifier: BSD-3-Clause
// y(k) := conj(x(k)), k = 1..n, complex: real parts are copied, the sign bits of imaginary parts flipped.
#include "pattern.h"
#include "tiers.h"

BLA_TIERS_VA(tovbla_vzconj_, (const int* n, const real* x, real* y), (n, x, y))
{
    const int64_t count = *n;
    for (int64_t k = 0; k < count; ++k) {
        patterns(y)[2 * k] = patterns(x)[2 * k];
        patterns(y)[2 * k + 1] = patterns(x)[2 * k + 1] ^ SignBit;
    }
}
