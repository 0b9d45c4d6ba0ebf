// SPDX-License-Identifier: BSD-3-Clause
// Comparison of arrays bit for bit.
#pragma once

#include "guarded.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

namespace support {

inline std::uint64_t bits(double x)
{
    return std::bit_cast<std::uint64_t>(x);
}

/// Where a result is computed, any NaN stands for any other; where it is copied, every bit counts.
enum class NaNs { Alike, Exact };

inline bool same(double a, double b, NaNs nans)
{
    return bits(a) == bits(b) || (nans == NaNs::Alike && std::isnan(a) && std::isnan(b));
}

inline std::string show(double x)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.17g (%016llx)", x, static_cast<unsigned long long>(bits(x)));
    return text;
}

/// All memory of the two arrays agrees: the elements, and the pattern around and between them. Canaries are
/// compared exactly, for they are never results.
inline ::testing::AssertionResult same_memory(const Guarded<double>& expected, const Guarded<double>& actual,
                                              NaNs nans = NaNs::Alike)
{
    const char* const e = expected.pages().begin();
    const char* const a = actual.pages().begin();
    const std::size_t size = expected.pages().size();
    if (size != actual.pages().size())
        return ::testing::AssertionFailure() << "arrays of different size";
    const std::size_t first = static_cast<std::size_t>(reinterpret_cast<const char*>(expected.data()) - e);
    const std::size_t last = first + static_cast<std::size_t>(expected.size()) * 8;
    if (std::memcmp(e, a, first) != 0)
        return ::testing::AssertionFailure() << "memory before the array was changed";
    if (std::memcmp(e + last, a + last, size - last) != 0)
        return ::testing::AssertionFailure() << "memory behind the array was changed";
    for (std::int64_t i = 0; i < expected.size(); ++i) {
        const double x = expected.get(i), y = actual.get(i);
        const bool canary = bits(x) == Canary || bits(y) == Canary;
        if (!same(x, y, canary ? NaNs::Exact : nans))
            return ::testing::AssertionFailure()
                   << "element " << i << " (from 0): expected " << show(x) << ", got " << show(y);
    }
    return ::testing::AssertionSuccess();
}

} // namespace support
