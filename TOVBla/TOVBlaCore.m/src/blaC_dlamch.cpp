// SPDX-License-Identifier: BSD-3-Clause
// Machine parameters as the library states them; see blac_hdmcon_ for the module's own.
#include "facade.h"

extern "C" double dlamch_(const char* cmach, std::size_t);

BLA_EXPORT double blac_dlamch_(const char* cmach)
{
    return dlamch_(cmach, 1);
}
