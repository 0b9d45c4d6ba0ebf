// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// x := 0 for a vector of n elements. A short one without a loop, and without the call that a loop becomes.
BLA_BODY void clear(int64_t n, real* x)
{
    if (n >= 16) {
        for (int64_t i = 0; i < n; ++i)
            x[i] = 0.0;
        return;
    }
#pragma GCC unroll 4
    for (int64_t part = 8; part > 0; part /= 2)
        if (n & part) {
            for (int64_t i = 0; i < part; ++i)
                x[i] = 0.0;
            x += part;
        }
}

/// a(i,j) := 0 for the columns j = first..first+columns-1 (from 0), i = j..n-1: from the diagonal down.
BLA_BODY void clear_lower(int64_t n, int64_t first, int64_t columns, real* a, int64_t a_step)
{
    const int64_t end = first + columns < n ? first + columns : n; // columns beyond have no rows
    for (int64_t j = first; j < end; ++j)
        clear(n - j, a + j * a_step + j);
}
