// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

DIGEST(blac_scale_, Computed)
{
    const int m = c.size(), n = c.count(6), lda = c.leading(m), ldb = c.leading(m);
    const double *const a = c.matrix(m, n, lda), *const d = c.vector(n);
    blac_scale_(&m, &n, d, a, &lda, c.matrix_room(m, n, ldb), &ldb);
}

DIGEST(blac_scale2_, Computed)
{
    const int m = c.size(), n = c.count(6), lda = c.leading(m);
    double* const a = c.matrix(m, n, lda);
    blac_scale2_(&m, &n, a, &lda, c.vector(m));
}

DIGEST(blac_scale2t_, Computed)
{
    const int rows = c.size(), columns = c.count(6), lda = c.leading(rows);
    double* const a = c.matrix(rows, columns, lda);
    blac_scale2t_(&columns, &rows, a, &lda, c.vector(columns));
}

DIGEST(blac_scale_low_, Computed)
{
    const int n = c.size(), lda = c.leading(n);
    double* const a = c.matrix(n, n, lda);
    blac_scale_low_(&n, a, &lda, c.vector(n));
}

DIGEST(blac_scale_low2_, Computed)
{
    const int n = c.size(), lda = c.leading(n);
    blac_scale_low2_(&n, c.matrix(n, n, lda), &lda);
}
