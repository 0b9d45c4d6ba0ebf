// SPDX-License-Identifier: BSD-3-Clause
// An input of the fuzzer, read as arguments. Behind its end everything is 0.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz {

class Bytes
{
public:
    Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

    std::uint8_t byte() { return at_ < end_ ? *at_++ : std::uint8_t{0}; }
    /// A number from low to high, at most 256 of them.
    int number(int low, int high) { return low + byte() % (high - low + 1); }
    template <class T, std::size_t N>
    T choice(const T (&values)[N])
    {
        return values[byte() % N];
    }

    /// A character of the text.
    template <std::size_t N>
    char letter(const char (&text)[N])
    {
        return text[byte() % (N - 1)];
    }

private:
    const std::uint8_t *at_, *end_;
};

} // namespace fuzz

/// Judges one input; a finding ends the process with a message on standard error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
