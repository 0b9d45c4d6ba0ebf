// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// The 64 bits of a double in a caller's array. What is copied, filled or sign-flipped goes through this
/// type: integer moves keep every bit of a NaN, the signalling ones included.
typedef std::uint64_t pattern __attribute__((aligned(1), may_alias));

constexpr std::uint64_t SignBit = std::uint64_t{1} << 63;

BLA_BODY const pattern* patterns(const real* x)
{
    return reinterpret_cast<const pattern*>(x);
}

BLA_BODY pattern* patterns(real* x)
{
    return reinterpret_cast<pattern*>(x);
}
