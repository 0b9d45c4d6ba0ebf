// SPDX-License-Identifier: BSD-3-Clause
// The pattern of a symmetric matrix in compressed rows, both halves: the columns of row i stand at start[i]
// to start[i + 1] - 1, in any order, none twice; the diagonal may be there or not. The arrays are the
// caller's.
#pragma once

#include <cstdint>

struct Pattern
{
    std::int32_t n;
    const std::int64_t* start;
    const std::int32_t* column;
};
