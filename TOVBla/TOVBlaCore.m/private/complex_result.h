// SPDX-License-Identifier: BSD-3-Clause
// How the library beneath returns a complex value. Some libraries return it in registers (OpenBLAS, BLIS, the
// reference BLAS: what gfortran does), others through a hidden first argument, the address of the result.
//
// A trial call in the hidden-argument form tells them apart: both kinds survive it. The other form would make
// the second kind write 16 bytes over an integer of the caller's.
#pragma once

#include "TOVBlaModule.h"

/// Passed in the two registers that a complex value of two doubles is returned in.
struct ComplexInRegisters
{
    double re, im;
};

static inline blac_complex to_complex(ComplexInRegisters value)
{
    return blac_complex(value.re, value.im);
}

/// Asks `trial` once in a process, at the first complex call: a library may choose its convention no earlier.
/// Threads that ask at the same time get the same answer, so `found` needs no order, only untorn accesses.
static inline bool returned_in_registers(int& found, bool (*trial)())
{
    enum { Unknown, HiddenArgument, Registers };
    int convention = __atomic_load_n(&found, __ATOMIC_RELAXED);
    if (convention == Unknown) {
        convention = trial() ? Registers : HiddenArgument;
        __atomic_store_n(&found, convention, __ATOMIC_RELAXED);
    }
    return convention == Registers;
}
