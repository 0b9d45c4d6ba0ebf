// SPDX-License-Identifier: BSD-3-Clause
// Logical: the first characters of ca and cb are the same letter, case aside.
#include "facade.h"

extern "C" WithLengths<decltype(blac_lsame_), 2> lsame_;

BLA_EXPORT int blac_lsame_(const char* ca, const char* cb)
{
    return lsame_(ca, cb, 1, 1);
}
