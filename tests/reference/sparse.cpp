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

} // namespace reference
