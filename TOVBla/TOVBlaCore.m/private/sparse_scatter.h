// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sparse.h"

/// Two neighbouring elements of a caller's array.
typedef double pair_in_memory __attribute__((vector_size(16), aligned(1), may_alias));

/// Y := Σ (row row_of(s) of A)ᵀ·(row s of X) over s = 0..count-1, A by rows with n columns, X count×nrhs,
/// Y n×nrhs. An element of Y sums its products in the order of s and then of storage.
///
/// The + 0.0 turns a product of -0 into +0; it shows where Y is not cleared (n < 1, when the caller's Y is
/// added to) and must stay.
template <class RowOf>
BLA_BODY void scatter_rows(const CompressedRows& a, const real* x, int64_t count, real* y, int64_t n,
                           int64_t nrhs, RowOf row_of)
{
    double zero = 0.0;
    __asm__("" : "+x"(zero)); // unknown to the compiler, which would call memset otherwise
    if (n >= 1)
        for (int64_t i = 0; i < n * nrhs; ++i)
            y[i] = zero;
    for_column_blocks(nrhs, [=]<int W>(Width<W>, int64_t k) {
        for (int64_t s = 0; s < count; ++s) {
            const int64_t row = row_of(s), end = a.start[row + 1];
            int64_t p = a.start[row];
            if (p >= end)
                continue;
            prefetch_entries(a, p, end);
            double xs[W];
            for (int c = 0; c < W; ++c)
                xs[c] = x[s + (k + c) * count];
            for (; p < end; ++p) {
                const int64_t j = a.column[p];
                real* const yj = y + k * n + j;
                // Two entries that meet neighbours in Y go together; a single column gains nothing from it.
                if (W > 1 && p + 1 < end && a.column[p + 1] == j + 1) {
                    const pair values = {a.value[p], a.value[p + 1]};
                    for (int c = 0; c < W; ++c) {
                        pair_in_memory& yc = *reinterpret_cast<pair_in_memory*>(yj + c * n);
                        yc = (values * pair{xs[c], xs[c]} + 0.0) + yc;
                    }
                    ++p;
                } else {
                    const double value = a.value[p];
                    for (int c = 0; c < W; ++c)
                        yj[c * n] = (value * xs[c] + 0.0) + yj[c * n];
                }
            }
        }
    });
}
