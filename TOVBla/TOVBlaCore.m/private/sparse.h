// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// An index in a caller's array, which may start at any byte address.
typedef int integer __attribute__((aligned(1)));

/// A sparse matrix by rows, counted from zero: entries start[i]..start[i+1]-1 belong to row i, entry p has
/// value[p] in column column[p]. A row that ends where it starts, or before, is empty.
struct CompressedRows
{
    const integer* start;
    const integer* column;
    const real* value;
    bool far; ///< larger than a cache may be
};

/// A matrix whose rows are all wanted.
BLA_BODY CompressedRows all_rows(const integer* start, const integer* column, const real* value, int64_t rows)
{
    constexpr int64_t FarEntries = 1 << 17;
    const bool far =
        rows > 0 && int64_t{start[rows]} - start[0] > FarEntries; // else no row pointers need exist
    return {start, column, value, far};
}

/// Entries lie far apart in time from one another where the matrix is larger than the cache, so those that
/// come this many entries later are asked for. A prefetch cannot fault, wherever the row pointers lead. In a
/// cache it would only cost.
constexpr int64_t EntriesAhead = 512;
constexpr int64_t ValuesPerLine = 64 / sizeof(real), ColumnsPerLine = 64 / sizeof(integer);

BLA_BODY void prefetch_entries(const CompressedRows& a, int64_t start, int64_t end)
{
    if (!a.far)
        return;
    for (int64_t p = start + EntriesAhead; p < end + EntriesAhead; p += ValuesPerLine)
        __builtin_prefetch(a.value + p);
    for (int64_t p = start + EntriesAhead; p < end + EntriesAhead; p += ColumnsPerLine)
        __builtin_prefetch(a.column + p);
}

/// The same for a turn of as many entries as a line has columns, so that requests are spread over the row.
constexpr int64_t EntriesPerTurn = ColumnsPerLine;

BLA_BODY void prefetch_turn(const CompressedRows& a, int64_t first)
{
    if (!a.far)
        return;
    __builtin_prefetch(a.value + first + EntriesAhead);
    __builtin_prefetch(a.value + first + EntriesAhead + ValuesPerLine);
    __builtin_prefetch(a.column + first + EntriesAhead);
}

/// Two doubles in a register.
typedef double pair __attribute__((vector_size(16)));

/// A number that the compiler knows.
template <int N>
struct Width
{
    static constexpr int value = N;
};

/// Cuts nrhs columns into blocks of eight, or of four if narrow, and one narrower last block: calls
/// block(Width<w>(), k) for each block of columns k..k+w-1, left to right.
template <class Block>
BLA_BODY void for_column_blocks(int64_t nrhs, Block block, bool narrow = false)
{
    int64_t k = 0;
    if (narrow)
        for (; k + 4 <= nrhs; k += 4)
            block(Width<4>(), k);
    for (; k + 8 <= nrhs; k += 8)
        block(Width<8>(), k);
    switch (nrhs - k) {
    case 1:
        return block(Width<1>(), k);
    case 2:
        return block(Width<2>(), k);
    case 3:
        return block(Width<3>(), k);
    case 4:
        return block(Width<4>(), k);
    case 5:
        return block(Width<5>(), k);
    case 6:
        return block(Width<6>(), k);
    case 7:
        return block(Width<7>(), k);
    }
}
