// SPDX-License-Identifier: BSD-3-Clause
// Machine parameters as the library states them; see blac_hdmcon_ for the module's own.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlamch_), 1> dlamch_;

BLA_EXPORT double blac_dlamch_(const char* cmach)
{
    return dlamch_(cmach, 1);
}
