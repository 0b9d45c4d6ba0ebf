// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// The step of a vector without an increment.
constexpr int64_t Contiguous = 1;

/// Calls element(k·steps...), k = first..count-1 in this order, at most `Most` of them, without a loop.
template <int Most, class Element, class... Steps>
BLA_BODY void walk_singly(int64_t first, int64_t count, Element element, Steps... steps)
{
    if constexpr (Most > 0)
        if (first < count) {
            element((first * steps)...);
            walk_singly<Most - 1>(first + 1, count, element, steps...);
        }
}

/// Calls element(k·steps...), k = 0..count-1 in this order. The unrolled loops that the compiler makes of it,
/// for contiguous vectors and for any, take time to prepare: a few elements go without, by registers unless
/// the test whether three vectors overlap would take longer.
template <class Element, class... Steps>
BLA_BODY void walk(int64_t count, Element element, Steps... steps)
{
    constexpr int64_t Register = 4, Vectors = sizeof...(steps), Few = Vectors > 1 ? 8 : 20;
    constexpr int Singly = Vectors > 2 ? 7 : 3;
    const auto contiguous = [=](int64_t k) BLA_INLINED { element((static_cast<void>(steps), k)...); };
    if (__builtin_expect(count <= Singly, true))
        walk_singly<Singly>(0, count, element, steps...);
    else if ((... || (steps != 1)))
        for (int64_t k = 0; k < count; ++k)
            element((k * steps)...);
    else if (count < Few) {
        int64_t first = 0;
#pragma GCC unroll 1
        for (; first + Register <= count; first += Register)
            for (int64_t k = first; k < first + Register; ++k)
                contiguous(k);
        walk_singly<Register - 1>(first, count, contiguous, Contiguous);
    } else
        for (int64_t k = 0; k < count; ++k)
            contiguous(k);
}
