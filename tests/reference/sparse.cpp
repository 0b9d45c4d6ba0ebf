// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

namespace reference {

void sparse_umv(const number* a, const number* x, const integer* ia, const integer* ja, number* y, int m,
                int n, int nrhs)
{
    for (int64_t k = 0; k < nrhs; ++k)
        for (int64_t i = 0; i < m; ++i) {
            double sum = 0.0;
            for (int64_t p = ia[i]; p < ia[i + 1]; ++p) {
                double product = a[p] * x[ja[p] + k * n];
                sum = sum + product;
            }
            y[i + k * m] = sum;
        }
}

// y(ja(p),k) := (a(p)·x(s,k) + 0.0) + y(ja(p),k) for the entries of the rows list(s), or s without a list.
static void scatter(const number* a, const number* x, const integer* ia, const integer* ja, number* y,
                    int steps, int n, int nrhs, const integer* list)
{
    if (n >= 1)
        for (int64_t k = 0; k < nrhs; ++k)
            for (int64_t j = 0; j < n; ++j)
                y[j + k * n] = 0.0;
    for (int64_t k = 0; k < nrhs; ++k)
        for (int64_t s = 0; s < steps; ++s) {
            int64_t i = list ? list[s] : s;
            for (int64_t p = ia[i]; p < ia[i + 1]; ++p) {
                double product = a[p] * x[s + k * steps];
                double positive = product + 0.0;
                y[ja[p] + k * n] = positive + y[ja[p] + k * n];
            }
        }
}

void sparse_umtv(const number* a, const number* x, const integer* ia, const integer* ja, number* y, int m,
                 int n, int nrhs)
{
    scatter(a, x, ia, ja, y, m, n, nrhs, nullptr);
}

void sparse_sparse_umtv(const number* a, const number* x, const integer* ia, const integer* ja, number* y,
                        int nl, int n, int nrhs, const integer* list)
{
    scatter(a, x, ia, ja, y, nl, n, nrhs, list);
}

} // namespace reference
