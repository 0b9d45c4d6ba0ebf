// SPDX-License-Identifier: BSD-3-Clause
// A BLAS and LAPACK that writes down what it was passed: every routine of routines.def, by its name. It
// stands in front of the real library in the programs that link it.
//
// The complex functions compute, in the convention that the build chooses for each half.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace stub {

/// One call: the ordinary arguments, then the hidden lengths.
struct Call
{
    std::string name;
    std::vector<std::uintptr_t> values;
};

/// All calls since the process began, or since the test cleared them.
extern std::vector<Call> calls;

/// What the functions return.
constexpr double Double = 1234.0625;
constexpr int Integer = -20317;
constexpr int Logical = 1;
/// A double whose low 32 bits are those of SingleReading.
constexpr double Single = std::bit_cast<double>(0x4093'4567'3fc0'0000);
constexpr double SingleReading = 1.5;

} // namespace stub
