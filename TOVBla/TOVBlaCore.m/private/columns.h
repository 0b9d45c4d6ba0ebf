// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// Calls column(j, to, from, first, last) for the rows first..last-1 of the columns j of B and A: to[i] is
/// b(i,j), from[i] is a(i,j). Of a few rows, and of four, the compiler makes code of its own, without
/// preparing loops over vectors. A long column comes in two parts, so that no vector of the second is stored
/// across two cache lines: arrays as malloc places them start 16 bytes behind one.
template <class Column>
BLA_BODY void for_columns(int64_t rows, int64_t columns, real* b, int64_t b_step, const real* a,
                          int64_t a_step, Column column)
{
    constexpr int64_t Few = 4, Long = 64;
    constexpr unsigned Alignment = 32;
    if (rows == Few) {
        for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step)
            column(j, b, a, 0, Few);
    } else if (rows < Few) {
        for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step)
            column(j, b, a, 0, rows);
    } else if (rows < Long) {
        for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step)
            column(j, b, a, 0, rows);
    } else {
        for (int64_t j = 0; j < columns; ++j, b += b_step, a += a_step) {
            const int64_t head = elements_up_to(Alignment, b);
            column(j, b, a, 0, head);
            column(j, b, a, head, rows);
        }
    }
}

/// B := A·diag(d), A and B m×n with at least one row; B may be A.
BLA_BODY void scale_columns(int64_t m, int64_t n, const real* a, int64_t a_step, const real* d, real* b,
                            int64_t b_step)
{
    for_columns(m, n, b, b_step, a, a_step,
                [=](int64_t j, real* to, const real* from, int64_t first, int64_t last) BLA_INLINED {
                    const double factor = d[j];
                    BLA_NO_OVERLAP
                    for (int64_t i = first; i < last; ++i)
                        to[i] = from[i] * factor;
                });
}
