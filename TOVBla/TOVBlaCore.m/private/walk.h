// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// Calls loop(count, steps...), a loop over vectors with these increments. The compiler makes three of it:
/// for a few elements without the preparations of an unrolled loop, for contiguous ones, and for any.
template <class Loop, class... Steps>
BLA_BODY void walk(int64_t count, Loop loop, Steps... steps)
{
    constexpr int64_t Few = sizeof...(steps) > 0 ? 4 : 8;
    if (count < Few) {
        loop(count, steps...);
        return;
    }
    if constexpr (sizeof...(steps) > 0)
        if ((... || (steps != 1))) {
            loop(count, steps...);
            return;
        }
    loop(count, (static_cast<void>(steps), int64_t{1})...);
}
