// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// x := x·s for a vector of n elements. In fours, for short columns of ever different length: there the
/// compiler's own loop spends as long on finding out what to do.
BLA_BODY void scale_column(int64_t n, real* x, double s)
{
    for (int64_t rest = n; rest >= 4; rest -= 4, x += 4)
        for (int k = 0; k < 4; ++k)
            x[k] = x[k] * s;
    if (n & 2) {
        x[0] = x[0] * s;
        x[1] = x[1] * s;
        x += 2;
    }
    if (n & 1)
        x[0] = x[0] * s;
}
