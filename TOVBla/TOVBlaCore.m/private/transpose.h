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

/// A store past the caches. GCC takes its own builtins, and clang such vectors in assembler, in functions of
/// the tier alone.
#ifdef __clang__
#    define BLA_STORE_PAST(instruction, bytes, d, x)                                                         \
        __builtin_nontemporal_store(                                                                         \
            x, static_cast<double __attribute__((vector_size(bytes), may_alias))*>(static_cast<void*>(d)))
#else
#    define BLA_STORE_PAST(instruction, bytes, d, x)                                                         \
        __asm__(instruction " %1, %0"                                                                        \
                : "=m"(*reinterpret_cast<double __attribute__((vector_size(bytes), may_alias))*>(d))         \
                : "x"(x))
#endif

/// How the destination takes the numbers: as they are, added to its own, or as they are past the caches,
/// where vectors must not lie across two lines.
enum class Store { Copy, Add, Past };

template <Store How>
BLA_BODY void put(real* d, double x)
{
    *d = How == Store::Add ? *d + x : x;
}

template <Store How>
BLA_BODY void put(real* d, const Two& x)
{
    Two* const to = reinterpret_cast<Two*>(d);
    if (How == Store::Past)
        BLA_STORE_PAST("movntpd", 16, d, x);
    else
        *to = How == Store::Add ? *to + x : x;
}

template <Store How>
BLA_BODY void put(real* d, const Four& x)
{
    Four* const to = reinterpret_cast<Four*>(d);
    if (How == Store::Past)
        BLA_STORE_PAST("vmovntpd", 32, d, x);
    else
        *to = How == Store::Add ? *to + x : x;
}

template <Store How>
BLA_BODY void transpose_quarter(const real* s, int64_t s_step, real* d, int64_t d_step)
{
    const Two s0 = *reinterpret_cast<const Two*>(s), s1 = *reinterpret_cast<const Two*>(s + s_step);
    put<How>(d, __builtin_shufflevector(s0, s1, 0, 2));
    put<How>(d + d_step, __builtin_shufflevector(s0, s1, 1, 3));
}

template <class Tier, Store How>
BLA_BODY void transpose_tile(const real* s, int64_t s_step, real* d, int64_t d_step)
{
    if constexpr (Tier::Lanes < TileOrder) {
        transpose_quarter<How>(s, s_step, d, d_step);
        transpose_quarter<How>(s + 2 * s_step, s_step, d + 2, d_step);
        transpose_quarter<How>(s + 2, s_step, d + 2 * d_step, d_step);
        transpose_quarter<How>(s + 2 * s_step + 2, s_step, d + 2 * d_step + 2, d_step);
    } else {
        const Four s0 = *reinterpret_cast<const Four*>(s), s1 = *reinterpret_cast<const Four*>(s + s_step),
                   s2 = *reinterpret_cast<const Four*>(s + 2 * s_step),
                   s3 = *reinterpret_cast<const Four*>(s + 3 * s_step);
        const Four even01 = __builtin_shufflevector(s0, s1, 0, 4, 2, 6),
                   odd01 = __builtin_shufflevector(s0, s1, 1, 5, 3, 7),
                   even23 = __builtin_shufflevector(s2, s3, 0, 4, 2, 6),
                   odd23 = __builtin_shufflevector(s2, s3, 1, 5, 3, 7);
        put<How>(d, __builtin_shufflevector(even01, even23, 0, 1, 4, 5));
        put<How>(d + d_step, __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5));
        put<How>(d + 2 * d_step, __builtin_shufflevector(even01, even23, 2, 3, 6, 7));
        put<How>(d + 3 * d_step, __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7));
    }
}

BLA_BODY int64_t smaller(int64_t a, int64_t b)
{
    return a < b ? a : b;
}

/// The m×n matrix D := Sᵀ, or D + Sᵀ if How says so; S is n×m and does not overlap D. For a few tiles.
template <class Tier, Store How>
BLA_BODY void transpose_small(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    for (int64_t j = 0; j < n; j += TileOrder)
        for (int64_t i = 0; i < m; i += TileOrder) {
            const int64_t height = smaller(TileOrder, m - i), width = smaller(TileOrder, n - j);
            if (height == TileOrder && width == TileOrder)
                transpose_tile<Tier, How>(s + i * s_step + j, s_step, d + j * d_step + i, d_step);
            else
                for (int64_t p = 0; p < height; ++p)
                    for (int64_t q = 0; q < width; ++q)
                        put<How>(d + (j + q) * d_step + i + p, s[(i + p) * s_step + j + q]);
        }
}

/// The same in bands. `far`: the first cache does not hold S and D.
template <class Tier, Store How>
BLA_BODY void transpose_bands(bool far, int64_t m, int64_t n, const real* s, int64_t s_step, real* d,
                              int64_t d_step)
{
    const int64_t tiled_m = m - m % TileOrder, tiled_n = n - n % TileOrder;
    for (int64_t band = 0; band < tiled_n; band += BandColumns) {
        const int64_t band_end = smaller(band + BandColumns, tiled_n);
        for (int64_t rows = 0; rows < tiled_m; rows += BandRows) {
            const int64_t rows_end = smaller(rows + BandRows, tiled_m);
            if (far && How != Store::Add) // a sum reads them, and reads run ahead by themselves
                for (int64_t j = band; j < band_end; ++j)
                    for (int64_t i = 0; i < BandRows; i += int64_t{LineBytes / sizeof *d})
                        __builtin_prefetch(d + j * d_step + rows_end + i, 1); // cannot fault
            for (int64_t j = band; j < band_end; j += TileOrder)
                for (int64_t i = rows; i < rows_end; i += TileOrder)
                    transpose_tile<Tier, How>(s + i * s_step + j, s_step, d + j * d_step + i, d_step);
        }
    }
    for (int64_t i = tiled_m; i < m; ++i) // the rows below the tiles
        for (int64_t j = 0; j < tiled_n; ++j)
            put<How>(d + j * d_step + i, s[i * s_step + j]);
    for (int64_t j = tiled_n; j < n; ++j) // the columns right of them
        for (int64_t i = 0; i < m; ++i)
            put<How>(d + j * d_step + i, s[i * s_step + j]);
}

/// The same for whatever is no tile, with strips in front where the arrays do not start with a cache line, so
/// that no line is wanted by two bands and no store lies across two lines.
template <class Tier, Store How>
BLA_BODY void transpose_large(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    if (m * n < 200) // bands would cost more than they save
        return transpose_small<Tier, How>(m, n, s, s_step, d, d_step);
    const bool far = m * n >= 2048; // else strips would
    const int64_t top = far ? elements_up_to(LineBytes, d) : 0, left = far ? elements_up_to(LineBytes, s) : 0;
    int64_t height, width;
    for (int64_t i = 0; i < m; i += height) {
        height = i < top ? smaller(top, m) : m - i;
        for (int64_t j = 0; j < n; j += width) {
            width = j < left ? smaller(left, n) : n - j;
            transpose_bands<Tier, How>(far, height, width, s + i * s_step + j, s_step, d + j * d_step + i,
                                       d_step);
        }
    }
}

/// The same where it takes no more than a tile or a loop over entries, without saving a register. False if it
/// takes more: then nothing is done.
template <class Tier, Store How>
BLA_BODY bool transpose_tiny(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    const bool strips = m < TileOrder || n < TileOrder;
    // To add entry by entry is faster than a tile and strips on two sides of it.
    const bool tile_and_strips =
        How == Store::Add && smaller(m, n) > TileOrder && m < 2 * TileOrder && n < 2 * TileOrder;
    if (strips || tile_and_strips) {
        for (int64_t i = 0; i < m; ++i)
            for (int64_t j = 0; j < n; ++j)
                put<How>(d + j * d_step + i, s[i * s_step + j]);
        return true;
    }
    if (m != TileOrder || n != TileOrder)
        return false;
    transpose_tile<Tier, How>(s, s_step, d, d_step);
    return true;
}

/// The same for any shape.
template <class Tier, Store How>
BLA_BODY void transpose(int64_t m, int64_t n, const real* s, int64_t s_step, real* d, int64_t d_step)
{
    if (m < 1 || n < 1 || transpose_tiny<Tier, How>(m, n, s, s_step, d, d_step))
        return;
    Tier::apart([](auto... all) BLA_INLINED { transpose_large<Tier, How>(all...); }, m, n, s, s_step, d,
                d_step);
}
