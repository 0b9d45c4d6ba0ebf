// SPDX-License-Identifier: BSD-3-Clause
// result := x/y without needless overflow, whichever way the library returns complex values.
#include "facade.h"

#include "complex_result.h"

extern "C" void zladiv_(blac_complex* result, const blac_complex* x, const blac_complex* y);
extern "C" ComplexInRegisters zladiv_in_registers(const blac_complex* x,
                                                  const blac_complex* y) __asm__("zladiv_");

// A library that returns in registers divides the slot by 6 and leaves it alone. The other kind writes 6/2.
static bool leaves_the_slot()
{
    blac_complex slot(7.0, 5.0);
    const blac_complex x(6.0, 0.0), y(2.0, 0.0);
    zladiv_(&slot, &x, &y);
    return slot.imag() == 5.0;
}

BLA_EXPORT void blac_zladiv_(blac_complex* result, const blac_complex* x, const blac_complex* y)
{
    static int found;
    blac_complex slot;
    if (returned_in_registers(found, leaves_the_slot))
        slot = to_complex(zladiv_in_registers(x, y));
    else
        zladiv_(&slot, x, y);
    *result = slot;
}
