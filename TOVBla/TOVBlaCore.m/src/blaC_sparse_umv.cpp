// SPDX-License-Identifier: BSD-3-Clause
// Y := A·X, A m×n by compressed rows: y(i,k) is the sum of a(p)·x(ja(p),k) over the entries p of row i, from
// +0 on and in storage order, each product rounded.
#include "TOVBlaModule.h"

#include "sparse.h"

BLA_EXPORT void blac_sparse_umv_(const real* a, const real* x, const integer* ia, const integer* ja, real* y,
                                 const int* m, const int* n, const int* nrhs)
{
    const int64_t rows = *m, columns = *n;
    for_column_blocks(*nrhs, [=]<int W>(Width<W>, int64_t k) {
        const real* const xk = x + k * columns;
        real* const yk = y + k * rows;
        for (int64_t i = 0; i < rows; ++i) {
            double sum[W] = {};
            for (int64_t p = ia[i], end = ia[i + 1]; p < end; ++p)
                for (int64_t c = 0; c < W; ++c)
                    sum[c] = sum[c] + a[p] * xk[c * columns + ja[p]];
            for (int64_t c = 0; c < W; ++c)
                yk[c * rows + i] = sum[c];
        }
    });
}
