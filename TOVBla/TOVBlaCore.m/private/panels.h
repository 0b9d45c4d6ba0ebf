// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// How a front of order n is cut: `full` panels of width nb from the top left, then one block of width
/// `last`. The signed division truncates as it falls: n = 0 gives full = -1 and last = nb, which callers
/// never ask for.
struct Panels
{
    int full, last;

    Panels(int64_t n, int64_t nb)
        : full(static_cast<int>((n + nb - 1) / nb - 1)), last(static_cast<int>(n - full * nb))
    {
    }
};
