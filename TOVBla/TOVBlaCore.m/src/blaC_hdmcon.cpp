// SPDX-License-Identifier: BSD-3-Clause
// Machine and mathematical constants: entry i of a table, counted from 1; the NaN of entry 1 for any other i.
#include "TOVBlaModule.h"

#include "export.h"

#include <cstdint>

BLA_EXPORT double blac_hdmcon_(const int* i)
{
    static constexpr std::uint64_t Bits[16] = {
        0x7FFFFFFFFFFFFFFF, // NaN
        0x7FD0000000000000, // 2^1022
        0x7FEFFFFFFFFFFFFF, // largest double
        0x0010000000000000, // smallest normalised double
        0x3CB0000000000000, // 2^-52
        0x3CA0000000000001, // next above 2^-53, not 2^-53
        0x4000000000000000, // 2, radix
        0x404A800000000000, // 53, digits of the significand
        0x4086280000000000, // 709
        0xC086200000000000, // -708
        0x41DFFFFFFFC00000, // 2^31 - 1
        0x400921FB54442D18, // pi
        0x4005BF0A8B145769, // e
        0x3FE2788CFC6FB619, // Euler's constant
        0x3F91DF46A2529D39, // pi/180
        0x404CA5DC1A63C1F8, // 180/pi
    };
    return __builtin_bit_cast(double, Bits[*i >= 1 && *i <= 16 ? *i - 1 : 0]);
}
