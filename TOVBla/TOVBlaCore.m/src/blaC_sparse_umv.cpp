// SPDX-License-Identifier: BSD-3-Clause
// Y := A·X, A m×n by compressed rows: y(i,k) is the sum of a(p)·x(ja(p),k) over the entries p of row i, from
// +0 on and in storage order, each product rounded.
//
// A register holds two sums: those of two columns, or of one column those of two rows. Up to four columns
// take two rows side by side, because a single one would wait for each addition.
#include "TOVBlaModule.h"

#include "sparse.h"

/// Adds the products of entry p to the sums of W columns, two in a register; an odd last column stands
/// in both halves.
template <int W>
BLA_BODY void add_entry(const CompressedRows& a, int64_t p, const real* x, int64_t n,
                        pair (&sums)[(W + 1) / 2])
{
    const double value = a.value[p];
    const real* const xp = x + a.column[p];
    for (int64_t c = 0; c < (W + 1) / 2; ++c)
        sums[c] += pair{value, value} * pair{xp[2 * c * n], xp[(2 * c + 1 < W ? 2 * c + 1 : 2 * c) * n]};
}

/// The same for entries p and p+1, one after the other; a column's two products are formed at once.
template <int W>
BLA_BODY void add_two_entries(const CompressedRows& a, int64_t p, const real* x, int64_t n,
                              pair (&sums)[(W + 1) / 2])
{
    const pair values = {a.value[p], a.value[p + 1]};
    const real* const xp = x + a.column[p];
    const real* const xq = x + a.column[p + 1];
    for (int64_t c = 0; c < W; c += 2) {
        const int64_t l = c * n, r = (c + 1 < W ? c + 1 : c) * n;
        const pair left = values * pair{xp[l], xq[l]}, right = values * pair{xp[r], xq[r]};
        sums[c / 2] += pair{left[0], right[0]};
        sums[c / 2] += pair{left[1], right[1]};
    }
}

/// Y := A·X, one column, two rows side by side as far as both go. It asks for the entries of whole rows.
BLA_BODY void multiply_column(const CompressedRows& a, const real* x, real* y, int64_t rows)
{
    int64_t i = 0;
    for (; i + 2 <= rows; i += 2) {
        int64_t p = a.start[i], q = a.start[i + 1];
        const int64_t p_end = q, q_end = a.start[i + 2];
        prefetch_entries(a, p, q_end);
        pair sums = {};
        for (; p < p_end && q < q_end; ++p, ++q)
            sums += pair{a.value[p], a.value[q]} * pair{x[a.column[p]], x[a.column[q]]};
        double upper = sums[0], lower = sums[1];
        for (; p < p_end; ++p)
            upper += a.value[p] * x[a.column[p]];
        for (; q < q_end; ++q)
            lower += a.value[q] * x[a.column[q]];
        y[i] = upper;
        y[i + 1] = lower;
    }
    if (i < rows) {
        double sum = 0.0;
        for (int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            sum += a.value[p] * x[a.column[p]];
        y[i] = sum;
    }
}

/// Y := A·X, W columns, two rows side by side as far as both go. Requests go turn by turn: several columns
/// take longer than one, and in a burst they would wait for one another.
template <int W>
[[gnu::noinline]] static void multiply_rows_by_twos(const CompressedRows& a, const real* x, int64_t n,
                                                    real* y, int64_t rows)
{
    for (int64_t i = 0; i < rows; i += 2) {
        const bool both = i + 1 < rows;
        int64_t p = a.start[i], q = a.start[i + 1];
        const int64_t p_end = q, q_end = both ? a.start[i + 2] : q;
        const int64_t last = p_end - p < q_end - q ? p_end : p + (q_end - q);
        pair upper[(W + 1) / 2] = {}, lower[(W + 1) / 2] = {};
        while (p < last) {
            prefetch_turn(a, p);
            prefetch_turn(a, q);
            const int64_t until = a.far && p + EntriesPerTurn < last ? p + EntriesPerTurn : last;
            for (; p + 2 <= until; p += 2, q += 2) {
                add_two_entries<W>(a, p, x, n, upper);
                add_two_entries<W>(a, q, x, n, lower);
            }
            if (p < until) {
                add_entry<W>(a, p++, x, n, upper);
                add_entry<W>(a, q++, x, n, lower);
            }
        }
        for (; p < p_end; ++p)
            add_entry<W>(a, p, x, n, upper);
        for (; q < q_end; ++q)
            add_entry<W>(a, q, x, n, lower);
        for (int c = 0; c < W; ++c) {
            y[i + c * rows] = upper[c / 2][c % 2];
            if (both)
                y[i + 1 + c * rows] = lower[c / 2][c % 2];
        }
    }
}

/// Y := A·X, W columns: enough sums for one row at a time.
template <int W>
BLA_BODY void multiply_rows(const CompressedRows& a, const real* x, int64_t n, real* y, int64_t rows)
{
    for (int64_t i = 0; i < rows; ++i) {
        pair sums[(W + 1) / 2] = {};
        const int64_t end = a.start[i + 1];
        for (int64_t first = a.start[i]; first < end; first += ValuesPerLine) {
            if (a.far) {
                __builtin_prefetch(a.value + first + EntriesAhead);
                __builtin_prefetch(a.column + first + EntriesAhead);
            }
            const int64_t last = first + ValuesPerLine < end ? first + ValuesPerLine : end;
            for (int64_t p = first; p < last; ++p)
                add_entry<W>(a, p, x, n, sums);
        }
        for (int c = 0; c < W; ++c)
            y[i + c * rows] = sums[c / 2][c % 2];
    }
}

/// Y := A·X. Inlined, its loops would cost that of a single column its registers.
[[gnu::noinline]] static void multiply_columns(const real* value, const integer* start, const integer* column,
                                               const real* x, int64_t n, real* y, int64_t rows, int64_t nrhs)
{
    const CompressedRows a = all_rows(start, column, value, rows);
    for_column_blocks(nrhs, [=]<int W>(Width<W>, int64_t k) {
        if constexpr (W == 1)
            multiply_column(a, x + k * n, y + k * rows, rows);
        else if constexpr (W <= 4)
            multiply_rows_by_twos<W>(a, x + k * n, n, y + k * rows, rows);
        else
            multiply_rows<W>(a, x + k * n, n, y + k * rows, rows);
    });
}

BLA_EXPORT void blac_sparse_umv_(const real* a, const real* x, const integer* ia, const integer* ja, real* y,
                                 const int* m, const int* n, const int* nrhs)
{
    if (*m < 1 || *nrhs < 1)
        return;
    const int64_t rows = *m, columns = *n;
    if (rows * *nrhs < 4) { // done before blocks could be set up
        for (int64_t k = 0; k < *nrhs; ++k)
            for (int64_t i = 0; i < rows; ++i) {
                double sum = 0.0;
                for (int64_t p = ia[i]; p < ia[i + 1]; ++p)
                    sum = sum + a[p] * x[ja[p] + k * columns];
                y[i + k * rows] = sum;
            }
        return;
    }
    if (*nrhs == 1)
        multiply_column(all_rows(ia, ja, a, rows), x, y, rows);
    else
        multiply_columns(a, ia, ja, x, columns, y, rows, *nrhs);
}
