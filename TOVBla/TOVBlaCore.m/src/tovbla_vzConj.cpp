// SPDX-License-Identifier: BSD-3-Clause
// y(k) := conj(x(k)), k = 1..n, complex: real parts are copied, the sign bits of imaginary parts flipped.
#include "pattern.h"
#include "tiers.h"

/// A complex number in a register. Compilers that are left to pair the doubles themselves are slower.
typedef std::uint64_t Parts __attribute__((vector_size(16), aligned(1), may_alias));

BLA_TIERS_VA(tovbla_vzconj_, (const int* n, const real* x, real* y), (n, x, y))
{
    const int64_t count = *n;
    const Parts imaginary_sign = {0, SignBit};
    for (int64_t k = 0; k < count; ++k)
        reinterpret_cast<Parts*>(y)[k] = reinterpret_cast<const Parts*>(x)[k] ^ imaginary_sign;
}
