// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// Calls column(j, to, from, first, last) for the rows first..last-1 of the columns j of B and A: to[i] is
/// b(i,j), from[i] is a(i,j). A long column comes in two parts, so that no vector of the second is stored
/// across two cache lines: arrays as malloc places them start 16 bytes behind one.
template <class Column>
BLA_BODY void for_columns(int64_t rows, int64_t columns, real* b, int64_t b_step, const real* a,
                          int64_t a_step, Column column)
{
    constexpr int64_t Long = 64, Alignment = 32;
    if (rows < Long) {
        for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step)
            column(j, b, a, 0, rows);
        return;
    }
    for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step) {
        const int64_t head = -reinterpret_cast<__UINTPTR_TYPE__>(b) % Alignment / sizeof *b;
        column(j, b, a, 0, head);
        column(j, b, a, head, rows);
    }
}
