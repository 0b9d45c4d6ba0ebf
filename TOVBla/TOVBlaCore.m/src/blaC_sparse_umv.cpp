// SPDX-License-Identifier: BSD-3-Clause
// Y := A·X, A m×n by compressed rows: y(i,k) is the sum of a(p)·x(ja(p),k) over the entries p of row i, from
// +0 on and in storage order, each product rounded.
//
// A register holds two sums: those of two columns, or with one or two columns those of two rows, because a
// single row would wait for each addition.
#include "TOVBlaModule.h"

#include "sparse.h"

/// Adds the products of the entries start..end-1 to the sums of Columns columns.
template <int Columns>
static void add_entries(const CompressedRows& a, int64_t start, int64_t end, const real* x, int64_t n,
                        double (&sum)[Columns])
{
    constexpr int Pairs = (Columns + 1) / 2; // an odd last column stands in both halves
    pair sums[Pairs];
    for (int c = 0; c < Pairs; ++c)
        sums[c] = pair{sum[2 * c], sum[2 * c + 1 < Columns ? 2 * c + 1 : 2 * c]};
    constexpr int64_t Ahead = EntriesAhead / Columns;
    for (int64_t first = start; first < end; first += ValuesPerLine) {
        if (Columns > 1 && a.far) { // one column asks for whole rows
            __builtin_prefetch(a.value + first + Ahead);
            __builtin_prefetch(a.column + first + Ahead);
        }
        const int64_t last = first + ValuesPerLine < end ? first + ValuesPerLine : end;
        for (int64_t p = first; p < last; ++p) {
            const double value = a.value[p];
            const real* const xp = x + a.column[p];
            for (int64_t c = 0; c < Pairs; ++c)
                sums[c] += pair{value, value} *
                           pair{xp[2 * c * n], xp[(2 * c + 1 < Columns ? 2 * c + 1 : 2 * c) * n]};
        }
    }
    for (int c = 0; c < Columns; ++c)
        sum[c] = sums[c / 2][c % 2];
}

/// The rows i and i+1: side by side as far as both go, then each to its end. One column asks for the entries
/// of whole rows, two turn by turn: they take longer, and requests in a burst would wait for one another.
template <int Columns>
static void multiply_two_rows(const CompressedRows& a, int64_t i, const real* x, int64_t n, real* y,
                              int64_t m)
{
    int64_t p = a.start[i], q = a.start[i + 1];
    const int64_t p_end = q, q_end = a.start[i + 2];
    pair sums[Columns] = {};
    const auto add_products = [&]() BLA_INLINED {
        for (int c = 0; c < Columns; ++c)
            sums[c] += pair{a.value[p], a.value[q]} * pair{x[a.column[p] + c * n], x[a.column[q] + c * n]};
    };
    if (Columns > 1 && a.far) {
        const int64_t common = p_end - p < q_end - q ? p_end - p : q_end - q;
        for (int64_t first = 0; first < common; first += EntriesPerTurn) {
            prefetch_turn(a, p, EntriesAhead / Columns);
            prefetch_turn(a, q, EntriesAhead / Columns);
            const int64_t last = first + EntriesPerTurn < common ? first + EntriesPerTurn : common;
            for (int64_t e = first; e < last; ++e, ++p, ++q)
                add_products();
        }
    } else {
        for (; p < p_end && q < q_end; ++p, ++q)
            add_products();
    }
    double upper[Columns], lower[Columns];
    for (int c = 0; c < Columns; ++c) {
        upper[c] = sums[c][0];
        lower[c] = sums[c][1];
    }
    add_entries(a, p, p_end, x, n, upper);
    add_entries(a, q, q_end, x, n, lower);
    for (int c = 0; c < Columns; ++c) {
        y[i + c * m] = upper[c];
        y[i + 1 + c * m] = lower[c];
    }
}

/// Y := A·X, W columns.
template <int W>
BLA_BODY void multiply_block(const CompressedRows& a, const real* x, int64_t n, real* y, int64_t rows)
{
    int64_t i = 0;
    if (W <= 2)
        for (; i + 2 <= rows; i += 2) {
            if (W == 1)
                prefetch_entries(a, a.start[i], a.start[i + 2]);
            multiply_two_rows<W>(a, i, x, n, y, rows);
        }
    for (; i < rows; ++i) {
        double sum[W] = {};
        if (W == 1)
            prefetch_entries(a, a.start[i], a.start[i + 1]);
        add_entries(a, a.start[i], a.start[i + 1], x, n, sum);
        for (int c = 0; c < W; ++c)
            y[i + c * rows] = sum[c];
    }
}

/// Inlined, its loops would cost those of a single column their registers.
[[gnu::noinline]] static void multiply_two_columns(const CompressedRows& a, const real* x, int64_t n, real* y,
                                                   int64_t rows)
{
    multiply_block<2>(a, x, n, y, rows);
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
    const CompressedRows matrix = all_rows(ia, ja, a, rows);
    for_column_blocks(*nrhs, [=]<int W>(Width<W>, int64_t k) {
        if (W == 2)
            multiply_two_columns(matrix, x + k * columns, columns, y + k * rows, rows);
        else
            multiply_block<W>(matrix, x + k * columns, columns, y + k * rows, rows);
    });
}
