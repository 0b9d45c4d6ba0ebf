// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sparse.h"

/// Two neighbouring elements of a caller's array.
typedef double pair_in_memory __attribute__((vector_size(16), aligned(1), may_alias));

/// Adds entry p to its element of W columns of Y, which start n apart.
template <bool PlusZero, int W>
BLA_BODY void scatter_entry(const CompressedRows& a, int64_t p, const double (&x)[W], real* y, int64_t n)
{
    const double value = a.value[p];
    real* const yj = y + a.column[p];
    for (int c = 0; c < W; ++c)
        yj[c * n] = (PlusZero ? value * x[c] + 0.0 : value * x[c]) + yj[c * n];
}

/// The same for entries p and p+1, one after the other; their products are formed at once.
template <bool PlusZero, int W>
BLA_BODY void scatter_two_entries(const CompressedRows& a, int64_t p, const double (&x)[W], real* y,
                                  int64_t n)
{
    const pair values = {a.value[p], a.value[p + 1]};
    const int64_t i = a.column[p], j = a.column[p + 1];
    for (int c = 0; c < W; ++c) {
        real* yc = y + c * n;
        __asm__("" : "+r"(yc)); // a register for each column
        pair products = values * pair{x[c], x[c]};
        if (PlusZero)
            products = products + 0.0;
        yc[i] = products[0] + yc[i];
        yc[j] = products[1] + yc[j];
    }
}

/// Adds `count` entries from p on, one by one and unrolled.
template <bool PlusZero, int count, int W>
BLA_BODY void scatter_entries(const CompressedRows& a, int64_t p, const double (&x)[W], real* y, int64_t n)
{
    if constexpr (W == 2) {
#pragma GCC unroll 16
        for (int64_t q = p; q < p + count; q += 2)
            scatter_two_entries<PlusZero>(a, q, x, y, n);
    } else
#pragma GCC unroll 16
        for (int64_t q = p; q < p + count; ++q)
            scatter_entry<PlusZero>(a, q, x, y, n);
}

/// The entries start..end-1 of one row, entry by entry, several without a test between them unless the row is
/// short.
template <bool PlusZero, int W>
BLA_BODY void scatter_row_of_entries(const CompressedRows& a, int64_t start, int64_t end,
                                     const double (&x)[W], real* y, int64_t n)
{
    constexpr int64_t Together = W <= 2 ? EntriesPerTurn : 2;
    int64_t p = start;
    if (a.far)
        for (; p < end; p += EntriesPerTurn) {
            prefetch_turn(a, p);
            if (p + EntriesPerTurn > end)
                break;
            for (int64_t q = p; q < p + EntriesPerTurn; q += Together)
                scatter_entries<PlusZero, Together>(a, q, x, y, n);
        }
    if (a.far || end - start >= EntriesPerTurn)
        for (; p + 4 <= end; p += 4)
            scatter_entries<PlusZero, 4>(a, p, x, y, n);
    for (; p < end; ++p)
        scatter_entry<PlusZero>(a, p, x, y, n);
}

/// The same into three columns and more, two entries that meet neighbours in Y together.
template <bool PlusZero, int W>
BLA_BODY void scatter_row_of_pairs(const CompressedRows& a, int64_t start, int64_t end, const double (&x)[W],
                                   real* y, int64_t n)
{
    int64_t p = start;
    for (int64_t first = start; first < end; first += EntriesPerTurn) {
        prefetch_turn(a, first);
        const int64_t last = first + EntriesPerTurn < end ? first + EntriesPerTurn : end;
        while (p < last) {
            const int64_t j = a.column[p];
            if (p + 1 < end && a.column[p + 1] == j + 1) {
                const pair values = {a.value[p], a.value[p + 1]};
                real* const yj = y + j;
                for (int c = 0; c < W; ++c) {
                    pair_in_memory& yc = *reinterpret_cast<pair_in_memory*>(yj + c * n);
                    const pair products = values * pair{x[c], x[c]};
                    yc = (PlusZero ? products + 0.0 : products) + yc;
                }
                p += 2;
            } else {
                scatter_entry<PlusZero>(a, p, x, y, n);
                ++p;
            }
        }
    }
}

/// Whether the first two entries of a row meet neighbours in Y: else few of the others will, and to ask each
/// takes longer than pairs save.
BLA_BODY bool begins_with_neighbours(const CompressedRows& a, int64_t start, int64_t end)
{
    return start + 1 < end && a.column[start + 1] == int64_t{a.column[start]} + 1;
}

/// Rows row_of(first..last-1) into the W columns of Y from column k on.
template <bool PlusZero, int W, class RowOf>
BLA_BODY void scatter_block(const CompressedRows& a, int64_t first, int64_t last, const real* x,
                            int64_t count, real* y, int64_t n, int64_t k, RowOf row_of)
{
    for (int64_t s = first; s < last; ++s) {
        const int64_t row = row_of(s), start = a.start[row], end = a.start[row + 1];
        if (start >= end)
            continue;
        double xs[W];
        for (int c = 0; c < W; ++c)
            xs[c] = x[s + (k + c) * count];
        if (W <= 2 || !begins_with_neighbours(a, start, end))
            scatter_row_of_entries<PlusZero>(a, start, end, xs, y + k * n, n);
        else
            scatter_row_of_pairs<PlusZero>(a, start, end, xs, y + k * n, n);
    }
}

/// Whether the processor takes tiny results or operands for zero.
BLA_BODY bool denormals_are_lost()
{
    constexpr unsigned FlushToZero = 0x8000, DenormalsAreZero = 0x0040;
    return (__builtin_ia32_stmxcsr() & (FlushToZero | DenormalsAreZero)) != 0;
}

/// Adds the rows to several columns of Y. Inlined, its loops would cost that of a single column its
/// registers.
template <class RowOf>
[[gnu::noinline]] static void scatter_columns(const CompressedRows& a, const real* x, int64_t count, real* y,
                                              int64_t n, int64_t nrhs, RowOf row_of)
{
    const bool plus_zero = (nrhs <= 2 && !a.far) || n < 1 || denormals_are_lost();
    // Columns of Y a number of pages apart fall into the same set of the first cache, which eight would fill.
    // Four at a time take some rows, as long as these are in a cache, before the next four do.
    constexpr int64_t ColumnsApart = 512, RowsAtATime = 32;
    const bool narrow = n >= 1 && n % ColumnsApart == 0;
    const int64_t rows = narrow && nrhs > 4 ? RowsAtATime : count;
    for (int64_t first = 0; first < count; first += rows) {
        const int64_t last = first + rows < count ? first + rows : count;
        for_column_blocks(
            nrhs,
            [=]<int W>(Width<W>, int64_t k) {
                if (W > 1 && !plus_zero)
                    scatter_block<false, W>(a, first, last, x, count, y, n, k, row_of);
                else
                    scatter_block<true, W>(a, first, last, x, count, y, n, k, row_of);
            },
            narrow);
    }
}

/// Y := Σ (row row_of(s) of A)ᵀ·(row s of X) over s = 0..count-1, A by rows with n columns, X count×nrhs,
/// Y n×nrhs. An element of Y sums its products in the order of s and then of storage, each as
/// (product + 0.0) + y.
///
/// The + 0.0 turns a product of -0 into +0, which shows where y is -0: in a Y that is not cleared (n < 1,
/// when the caller's Y is added to), and where a tiny negative sum became -0 because denormals are lost. Else
/// it changes no bit: from +0 on, no sum is -0 but one that is rounded downwards, and there -0 + 0.0 = -0.
/// Asking the processor takes as long as it saves with one column, and with two in a cache.
template <class RowOf>
BLA_BODY void scatter_rows(const CompressedRows& a, const real* x, int64_t count, real* y, int64_t n,
                           int64_t nrhs, RowOf row_of)
{
    double zero = 0.0;
    __asm__("" : "+x"(zero)); // unknown to the compiler, which would call memset otherwise
    if (n >= 1)
        for (int64_t i = 0; i < n * nrhs; ++i)
            y[i] = zero;
    if (nrhs == 1)
        scatter_block<true, 1>(a, 0, count, x, count, y, n, 0, row_of);
    else
        scatter_columns(a, x, count, y, n, nrhs, row_of);
}
