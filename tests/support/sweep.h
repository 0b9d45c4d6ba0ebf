// SPDX-License-Identifier: BSD-3-Clause
// The sizes and memory layouts that every kernel is tried on.
#pragma once

#include "random.h"

#include <gtest/gtest.h>

namespace support {

/// Sizes below, at and above the vector widths and the lengths of unrolled loops.
constexpr int Sizes[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14,
                         15, 16, 17, 18, 23, 24, 25, 31, 32, 33, 47, 64, 65, 100};

/// Bytes between the end of an array and its guard page: none, half a vector, a third of one, an odd number.
constexpr std::size_t Gaps[] = {0, 8, 24, 3};

/// Calls body(leading dimension, gap, data) for tight and loose leading dimensions, aligned and misaligned
/// arrays, ordinary and special values.
template <class Body>
void sweep_layouts(int rows, Body body)
{
    for (int ld : {rows, rows + 1, rows + 3})
        for (std::size_t gap : Gaps)
            for (Data data : {Data::Ordinary, Data::Special}) {
                body(ld, gap, data);
                if (::testing::Test::HasFatalFailure())
                    return;
            }
}

} // namespace support
