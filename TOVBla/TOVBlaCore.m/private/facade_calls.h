// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TOVBlaModule.h"

#include "with_lengths.h"

// The facade as the drivers call it: by the convention of its Fortran callers, with hidden lengths of 1. Our
// own entry points do not look at them, but those that a process puts in their place may.
extern "C" {
WithLengths<decltype(blac_dgemm_), 2> facade_dgemm __asm__("blac_dgemm_");
WithLengths<decltype(blac_dtrmm_), 4> facade_dtrmm __asm__("blac_dtrmm_");
WithLengths<decltype(blac_dtrsm_), 4> facade_dtrsm __asm__("blac_dtrsm_");
}
