// SPDX-License-Identifier: BSD-3-Clause
// Y := A(L,:)ᵀ·X, A by compressed rows, L a list of nl of its rows, X nl×nrhs: y(ja(p),k) += a(p)·x(r,k) over
// the entries p of row list(r), r = 0, 1, ..., from +0 on.
#include "TOVBlaModule.h"

#include "sparse_scatter.h"

BLA_EXPORT void blac_sparse_sparse_umtv_(const real* a, const real* x, const integer* ia, const integer* ja,
                                         real* y, const int* nl, const int* n, const int* nrhs,
                                         const integer* list)
{
    if (*nrhs < 1)
        return;
    scatter_rows({ia, ja, a, true}, x, *nl, y, *n, *nrhs, [list](int64_t s) -> int64_t { return list[s]; });
}
