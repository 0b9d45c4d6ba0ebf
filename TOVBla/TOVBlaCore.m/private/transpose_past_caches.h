// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "processor.h"
#include "transpose.h"

// D := Sᵀ where no cache holds both. There a store costs most: its line is fetched before and written back
// later. A store past the caches does neither, if the line is finished at once; in a cache it would be
// slower.

/// Whether D and S, of `count` elements each, are for stores past the caches, and the columns of D start at
/// the same place of a line. The caches are shared, so half of the last one counts; the processor is asked
/// only where the answer takes no time beside the work.
BLA_BODY bool past_caches(int64_t count, const real* d, int64_t d_step)
{
    constexpr int64_t AtLeast = 1 << 20;
    const bool whole = reinterpret_cast<__UINTPTR_TYPE__>(d) % sizeof *d == 0 &&
                       d_step % int64_t{LineBytes / sizeof *d} == 0;
    return count >= AtLeast && whole && count * int64_t{2 * sizeof *d} > bla_last_cache() / 2;
}

/// The lines of D that are whole: m is a multiple of eight, n of four, and D starts with a line.
template <class Tier>
BLA_BODY void transpose_lines(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    constexpr int64_t Columns = 128, Line = LineBytes / sizeof *d;
    for (int64_t band = 0; band < n; band += Columns) {
        const int64_t end = smaller(band + Columns, n);
        for (int64_t i = 0; i < m; i += Line)
            for (int64_t j = band; j < end; j += TileOrder)
                for (int64_t half = i; half < i + Line; half += TileOrder)
                    transpose_tile<Tier, Store::Past>(s + half * s_step + j, s_step, d + j * d_step + half,
                                                      d_step);
    }
    __builtin_ia32_sfence(); // these stores are ordered by nothing else
}

/// D := Sᵀ, D m×n, in lines, with the strips around them in tiles.
template <class Tier>
BLA_BODY void transpose_past_caches(int64_t m, int64_t n, const real* s, int64_t s_step, real* d,
                                    int64_t d_step)
{
    const int64_t top = smaller(elements_up_to(LineBytes, d), m),
                  rows = (m - top) / int64_t{LineBytes / sizeof *d} * int64_t{LineBytes / sizeof *d},
                  columns = n / TileOrder * TileOrder, below = top + rows;
    transpose_lines<Tier>(rows, columns, s + top * s_step, s_step, d + top, d_step);
    transpose<Tier, Store::Copy>(top, n, s, s_step, d, d_step);
    transpose<Tier, Store::Copy>(m - below, n, s + below * s_step, s_step, d + below, d_step);
    transpose<Tier, Store::Copy>(rows, n - columns, s + top * s_step + columns, s_step,
                                 d + columns * d_step + top, d_step);
}

/// D := Sᵀ, D m×n, whichever way is for its size.
template <class Tier>
BLA_BODY void copy_transposed(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    if (past_caches(m * n, d, d_step))
        transpose_past_caches<Tier>(m, n, s, s_step, d, d_step);
    else
        transpose_large<Tier, Store::Copy>(m, n, s, s_step, d, d_step);
}
