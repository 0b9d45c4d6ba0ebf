// SPDX-License-Identifier: BSD-3-Clause
// Y := A·X, A m×n by compressed rows: y(i,k) is the sum of a(p)·x(ja(p),k) over the entries p of row i, from
// +0 on and in storage order, each product rounded.
//
// A register holds two sums: those of two columns, or of one column those of two rows. One and two columns
// take two rows side by side, because a single one would wait for each addition.
#include "TOVBlaModule.h"

#include "sparse.h"

/// Adds the products of entry p to the sums of Columns columns, two in a register; an odd last column stands
/// in both halves.
template <int Columns>
BLA_BODY void add_entry(const CompressedRows& a, int64_t p, const real* x, int64_t n,
                        pair (&sums)[(Columns + 1) / 2])
{
    const double value = a.value[p];
    const real* const xp = x + a.column[p];
    for (int64_t c = 0; c < (Columns + 1) / 2; ++c)
        sums[c] +=
            pair{value, value} * pair{xp[2 * c * n], xp[(2 * c + 1 < Columns ? 2 * c + 1 : 2 * c) * n]};
}

/// Adds the products of the entries start..end-1.
template <int Columns>
BLA_BODY void add_entries(const CompressedRows& a, int64_t start, int64_t end, const real* x, int64_t n,
                          pair (&sums)[(Columns + 1) / 2])
{
    constexpr int64_t Ahead = EntriesAhead / Columns;
    for (int64_t first = start; first < end; first += ValuesPerLine) {
        if (a.far) {
            __builtin_prefetch(a.value + first + Ahead);
            __builtin_prefetch(a.column + first + Ahead);
        }
        const int64_t last = first + ValuesPerLine < end ? first + ValuesPerLine : end;
        int64_t p = first;
        if (Columns <= 4) // else there is enough between two tests
            for (; p + 2 <= last; p += 2) {
                add_entry<Columns>(a, p, x, n, sums);
                add_entry<Columns>(a, p + 1, x, n, sums);
            }
        for (; p < last; ++p)
            add_entry<Columns>(a, p, x, n, sums);
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

/// Y := A·X, two columns, two rows side by side as far as both go. Requests go turn by turn: two columns take
/// longer than one, and in a burst they would wait for one another.
[[gnu::noinline]] static void multiply_two_columns(const CompressedRows& a, const real* x, int64_t n, real* y,
                                                   int64_t rows)
{
    for (int64_t i = 0; i < rows; i += 2) {
        const bool both = i + 1 < rows;
        int64_t p = a.start[i], q = a.start[i + 1];
        const int64_t p_end = q, q_end = both ? a.start[i + 2] : q;
        const int64_t last = p_end - p < q_end - q ? p_end : p + (q_end - q);
        pair upper[] = {{}}, lower[] = {{}};
        while (p < last) {
            prefetch_turn(a, p, EntriesAhead);
            prefetch_turn(a, q, EntriesAhead);
            const int64_t until = a.far && p + EntriesPerTurn < last ? p + EntriesPerTurn : last;
            for (; p + 2 <= until; p += 2, q += 2) {
                add_entry<2>(a, p, x, n, upper);
                add_entry<2>(a, q, x, n, lower);
                add_entry<2>(a, p + 1, x, n, upper);
                add_entry<2>(a, q + 1, x, n, lower);
            }
            if (p < until) {
                add_entry<2>(a, p++, x, n, upper);
                add_entry<2>(a, q++, x, n, lower);
            }
        }
        for (; p < p_end; ++p)
            add_entry<2>(a, p, x, n, upper);
        for (; q < q_end; ++q)
            add_entry<2>(a, q, x, n, lower);
        y[i] = upper[0][0];
        y[i + rows] = upper[0][1];
        if (both) {
            y[i + 1] = lower[0][0];
            y[i + 1 + rows] = lower[0][1];
        }
    }
}

/// Y := A·X, W columns.
template <int W>
BLA_BODY void multiply_block(const CompressedRows& a, const real* x, int64_t n, real* y, int64_t rows)
{
    for (int64_t i = 0; i < rows; ++i) {
        pair sums[(W + 1) / 2] = {};
        add_entries<W>(a, a.start[i], a.start[i + 1], x, n, sums);
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
        else if constexpr (W == 2)
            multiply_two_columns(a, x + k * n, n, y + k * rows, rows);
        else
            multiply_block<W>(a, x + k * n, n, y + k * rows, rows);
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
