// SPDX-License-Identifier: BSD-3-Clause
// Numbers as Fortran and C write them, whole words only.
#pragma once

#include <cstdint>
#include <string_view>

enum class Parsed { yes, no, tooLarge };

// Digits, with a sign or without.
Parsed parseInteger(std::string_view word, std::int64_t& value);

// Decimal, the exponent behind e, E, d or D; also inf and nan, which the caller sees in the value. What is
// too large reads as infinity, what is too small as the nearest number or zero.
Parsed parseNumber(std::string_view word, double& value);
