// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "export.h"

#include <cstdint>

/// A double in a caller's array. Callers may pass arrays that start at any byte address, so the kernels
/// must not promise the compiler an alignment; on x86-64 that costs nothing.
typedef double real __attribute__((aligned(1)));

/// Every index and offset is formed in 64 bits, although the interface counts in 32.
using std::int64_t;

/// Body of a kernel: inlined into every variant, so that each variant is compiled for its own tier.
#define BLA_BODY [[gnu::always_inline]] static inline

/// The same for a lambda in such a body: it follows the parameters.
#define BLA_INLINED __attribute__((always_inline))

/// Elements from p up to the next multiple of so many bytes.
BLA_BODY int64_t elements_up_to(unsigned bytes, const real* p)
{
    return static_cast<int64_t>(-reinterpret_cast<__UINTPTR_TYPE__>(p) % bytes / sizeof *p);
}

/// Before a loop: no turn touches what another writes. Clang has no such promise without a warning where it
/// does not vectorise; it tests for overlap when the loop starts.
#ifdef __clang__
#    define BLA_NO_OVERLAP
#else
#    define BLA_NO_OVERLAP _Pragma("GCC ivdep")
#endif

/// GCC 11 has the shuffle of two vectors by another name, its places as a vector of integers.
#if !defined(__clang__) && __GNUC__ < 12
#    define __builtin_shufflevector(a, b, ...) __builtin_shuffle(a, b, decltype((a) < (b)){__VA_ARGS__})
#endif
