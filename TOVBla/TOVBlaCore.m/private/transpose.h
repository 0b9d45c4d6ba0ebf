// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

// d(i,j) := s(j,i) and d(i,j) := d(i,j) + s(j,i).
//
// A plain loop touches a new cache line of the source for every entry and has lost it when the next column
// comes by, most of all with a power of two as leading dimension. So the work goes in bands of BandColumns
// destination columns, these in blocks of BandRows source columns, and these in tiles of 4×4 that are
// transposed in registers: whole ones on AVX, in 2×2 quarters on the baseline, where a vector of four would
// be taken apart. A store waits until its line has come, and the processor does not foresee the jump from
// column to column: so the lines of the next block are asked for meanwhile. Moves and shuffles of registers
// keep every bit of a NaN.

constexpr int64_t BandColumns = 16, BandRows = 16, TileOrder = 4;
constexpr unsigned LineBytes = 64;

typedef double Two __attribute__((vector_size(16), aligned(1), may_alias));
typedef double Four __attribute__((vector_size(32), aligned(1), may_alias));

// Vectors are handed on by reference and loaded from a pointer on the spot: by value they would change the
// calling convention between tiers, and clang takes a returned reference for an aligned one.

BLA_BODY void put(bool add, real* d, double x)
{
    *d = add ? *d + x : x;
}

BLA_BODY void put(bool add, real* d, const Two& x)
{
    Two* const to = reinterpret_cast<Two*>(d);
    *to = add ? *to + x : x;
}

BLA_BODY void put(bool add, real* d, const Four& x)
{
    Four* const to = reinterpret_cast<Four*>(d);
    *to = add ? *to + x : x;
}

BLA_BODY void transpose_quarter(bool add, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    const Two s0 = *reinterpret_cast<const Two*>(s), s1 = *reinterpret_cast<const Two*>(s + s_step);
    put(add, d, __builtin_shufflevector(s0, s1, 0, 2));
    put(add, d + d_step, __builtin_shufflevector(s0, s1, 1, 3));
}

template <int Lanes>
BLA_BODY void transpose_tile(bool add, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    if constexpr (Lanes < TileOrder) {
        transpose_quarter(add, s, s_step, d, d_step);
        transpose_quarter(add, s + 2 * s_step, s_step, d + 2, d_step);
        transpose_quarter(add, s + 2, s_step, d + 2 * d_step, d_step);
        transpose_quarter(add, s + 2 * s_step + 2, s_step, d + 2 * d_step + 2, d_step);
    } else {
        const Four s0 = *reinterpret_cast<const Four*>(s), s1 = *reinterpret_cast<const Four*>(s + s_step),
                   s2 = *reinterpret_cast<const Four*>(s + 2 * s_step),
                   s3 = *reinterpret_cast<const Four*>(s + 3 * s_step);
        const Four even01 = __builtin_shufflevector(s0, s1, 0, 4, 2, 6),
                   odd01 = __builtin_shufflevector(s0, s1, 1, 5, 3, 7),
                   even23 = __builtin_shufflevector(s2, s3, 0, 4, 2, 6),
                   odd23 = __builtin_shufflevector(s2, s3, 1, 5, 3, 7);
        put(add, d, __builtin_shufflevector(even01, even23, 0, 1, 4, 5));
        put(add, d + d_step, __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5));
        put(add, d + 2 * d_step, __builtin_shufflevector(even01, even23, 2, 3, 6, 7));
        put(add, d + 3 * d_step, __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7));
    }
}

BLA_BODY int64_t smaller(int64_t a, int64_t b)
{
    return a < b ? a : b;
}

/// The m×n matrix D := Sᵀ, or D + Sᵀ if `add` (a constant); S is n×m and does not overlap D. `far`: the first
/// cache does not hold them.
template <int Lanes>
BLA_BODY void transpose_bands(bool add, bool far, int64_t m, int64_t n, const real* s, int64_t s_step,
                              real* d, int64_t d_step)
{
    const int64_t tiled_m = m - m % TileOrder, tiled_n = n - n % TileOrder;
    for (int64_t band = 0; band < tiled_n; band += BandColumns) {
        const int64_t band_end = smaller(band + BandColumns, tiled_n);
        for (int64_t rows = 0; rows < tiled_m; rows += BandRows) {
            const int64_t rows_end = smaller(rows + BandRows, tiled_m);
            if (far && !add) // a sum reads them, and reads run ahead by themselves
                for (int64_t j = band; j < band_end; ++j)
                    for (int64_t i = 0; i < BandRows; i += int64_t{LineBytes / sizeof *d})
                        __builtin_prefetch(d + j * d_step + rows_end + i, 1); // cannot fault
            for (int64_t j = band; j < band_end; j += TileOrder)
                for (int64_t i = rows; i < rows_end; i += TileOrder)
                    transpose_tile<Lanes>(add, s + i * s_step + j, s_step, d + j * d_step + i, d_step);
        }
    }
    for (int64_t i = tiled_m; i < m; ++i) // the rows below the tiles
        for (int64_t j = 0; j < tiled_n; ++j)
            put(add, d + j * d_step + i, s[i * s_step + j]);
    for (int64_t j = tiled_n; j < n; ++j) // the columns right of them
        for (int64_t i = 0; i < m; ++i)
            put(add, d + j * d_step + i, s[i * s_step + j]);
}

/// The same, with strips in front where the arrays do not start with a cache line, so that no line is wanted
/// by two bands and no store lies across two lines.
template <int Lanes>
BLA_BODY void transpose(bool add, int64_t m, int64_t n, const real* s, int64_t s_step, real* d,
                        int64_t d_step)
{
    if (m < 1 || n < 1)
        return;
    if (m == TileOrder && n == TileOrder)
        return transpose_tile<Lanes>(add, s, s_step, d, d_step);
    if (m * n < 50) { // too few elements for tiles to pay
        for (int64_t i = 0; i < m; ++i)
            for (int64_t j = 0; j < n; ++j)
                put(add, d + j * d_step + i, s[i * s_step + j]);
        return;
    }
    const bool far = m * n >= 2048; // else the strips would cost more than they save
    const int64_t top = far ? elements_up_to(LineBytes, d) : 0, left = far ? elements_up_to(LineBytes, s) : 0;
    int64_t height, width;
    for (int64_t i = 0; i < m; i += height) {
        height = i < top ? smaller(top, m) : m - i;
        for (int64_t j = 0; j < n; j += width) {
            width = j < left ? smaller(left, n) : n - j;
            transpose_bands<Lanes>(add, far, height, width, s + i * s_step + j, s_step, d + j * d_step + i,
                                   d_step);
        }
    }
}
