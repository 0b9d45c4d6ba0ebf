// SPDX-License-Identifier: BSD-3-Clause
// The library's report of a bad argument. The name is taken as exactly six characters, whatever its length.
#include "facade.h"

extern "C" void xerbla_(const char* srname, const int* info, std::size_t);

BLA_EXPORT void blac_xerbla_(const char* srname, const int* info)
{
    xerbla_(srname, info, 6);
}
