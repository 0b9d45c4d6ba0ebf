// SPDX-License-Identifier: BSD-3-Clause
// result := Σ conj(zx(i))·zy(i), whichever way the library returns complex values.
#include "facade.h"

#include "complex_result.h"

extern "C" void zdotc_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                       const blac_complex* zy, const int* incy);
extern "C" ComplexInRegisters zdotc_in_registers(const int* n, const blac_complex* zx, const int* incx,
                                                 const blac_complex* zy, const int* incy) __asm__("zdotc_");

// A library that returns in registers takes the slot for n, and its leading zero bits are n = 0: it returns
// at once and leaves the slot alone. The other kind writes the empty sum, 0 + 0i.
static bool leaves_the_slot()
{
    blac_complex slot(0.0, 1.0);
    const blac_complex empty[1] = {};
    const int n = 0, step = 1;
    zdotc_(&slot, &n, empty, &step, empty, &step);
    return slot.imag() == 1.0;
}

BLA_EXPORT void blac_zdotc_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                            const blac_complex* zy, const int* incy)
{
    static int found;
    blac_complex slot;
    if (returned_in_registers(found, leaves_the_slot))
        slot = to_complex(zdotc_in_registers(n, zx, incx, zy, incy));
    else
        zdotc_(&slot, n, zx, incx, zy, incy);
    *result = slot;
}
