// SPDX-License-Identifier: BSD-3-Clause
// Y := Aᵀ·X, A m×n by compressed rows: y(ja(p),k) += a(p)·x(i,k) over all entries p, row by row and in
// storage order, from +0 on.
#include "TOVBlaModule.h"

#include "sparse_scatter.h"

BLA_EXPORT void blac_sparse_umtv_(const real* a, const real* x, const integer* ia, const integer* ja, real* y,
                                  const int* m, const int* n, const int* nrhs)
{
    if (*nrhs < 1)
        return;
    scatter_rows(all_rows(ia, ja, a, *m), x, *m, y, *n, *nrhs, [](int64_t s) { return s; });
}
