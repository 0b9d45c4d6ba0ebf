// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// a(i,j) := 0 for the columns j = first..first+columns-1 (from 0), i = j..n-1: from the diagonal down.
BLA_BODY void clear_lower(int64_t n, int64_t first, int64_t columns, real* a, int64_t a_step)
{
    for (int64_t j = first; j < first + columns; ++j)
        for (int64_t i = j; i < n; ++i)
            a[j * a_step + i] = 0.0;
}
