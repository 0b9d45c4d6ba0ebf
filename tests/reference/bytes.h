// SPDX-License-Identifier: BSD-3-Clause
// A double as eight bytes, so that no instruction can change a bit of it.
#pragma once

#include <cstring>

namespace reference {

inline void copy(const void* from, void* to)
{
    std::memmove(to, from, 8);
}

inline void flip_sign(void* x)
{
    static_cast<unsigned char*>(x)[7] ^= 0x80;
}

} // namespace reference
