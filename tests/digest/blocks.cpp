// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

DIGEST(blac_addrectblock_, Computed)
{
    const int m = c.size(), n = c.count(6), lda = c.leading(m), ldb = c.leading(m);
    double* const a = c.matrix(m, n, lda);
    blac_addrectblock_(&m, &n, a, &lda, c.matrix(m, n, ldb), &ldb);
}

DIGEST(blac_addrectblockt_, Computed)
{
    const int m = c.size(), n = c.odds(2) ? c.count(70) : c.count(6), lda = c.leading(m), ldb = c.leading(n);
    double* const a = c.matrix(m, n, lda);
    blac_addrectblockt_(&m, &n, a, &lda, c.matrix(n, m, ldb), &ldb);
}

DIGEST(blac_addtriblock_, Computed)
{
    const int n = c.size(), lda = c.leading(n), ldb = c.leading(n);
    double* const a = c.matrix(n, n, lda);
    blac_addtriblock_(&n, a, &lda, c.matrix(n, n, ldb), &ldb);
}

DIGEST(blac_copydiag_, Computed)
{
    const int n = c.size(), lda = c.leading(n);
    double *const a = c.matrix(n, n, lda), *const d = c.room(n);
    blac_copydiag_(&n, a, &lda, d, c.room(n));
}

DIGEST(blac_datcpy_, Copied)
{
    const int m = c.size(), n = c.odds(2) ? c.count(70) : c.count(6), lda = c.leading(n), ldb = c.leading(m);
    double* const a = c.matrix(n, m, lda);
    blac_datcpy_(&m, &n, a, &lda, c.matrix_room(m, n, ldb), &ldb);
}

DIGEST(blac_dlacpysc_, Computed)
{
    const int m = c.size(), n = c.count(6), lda = c.leading(m), ldb = c.leading(m);
    double *const a = c.matrix(m, n, lda), *const s = c.vector(n);
    blac_dlacpysc_(&m, &n, a, &lda, s, c.matrix_room(m, n, ldb), &ldb);
}

DIGEST(blaC_copyrect_intr, Copied)
{
    const int m = c.size(), n = c.count(6), lda = c.leading(m), ldb = c.leading(m);
    double* const a = c.matrix(m, n, lda);
    blaC_copyrect_intr(m, n, c.matrix_room(m, n, ldb), ldb, a, lda);
}

DIGEST(blac_dset_, Copied)
{
    const int n = c.size(), step = c.below(4);
    const double a = c.number();
    blac_dset_(&n, &a, c.room(n > 0 ? (n - 1) * step + 1 : 0), &step);
}

DIGEST(blac_zerotri_, Copied)
{
    const int n = c.size(), lda = c.leading(n);
    blac_zerotri_(&n, c.matrix(n, n, lda), &lda);
}

DIGEST(blaC_zerotriC, Copied)
{
    const int n = c.size(), k0 = c.count(n), m = c.count(n - k0), lda = c.leading(n);
    blaC_zerotriC(n, k0, m, c.matrix(n, n, lda), lda);
}

DIGEST(blac_dhamm_, Computed)
{
    const int n = c.size(), k = c.count(9), nb = 1 + c.below(12);
    const int lda = c.leading(n), ldb = c.leading(n), ldc = c.leading(n);
    const double alpha = c.number(), beta = c.number();
    const double *const a = c.matrix(n, k, lda), *const b = c.matrix(n, k, ldb);
    blac_dhamm_(&nb, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c.matrix(n, n, ldc), &ldc);
}

DIGEST(blac_reflect_, Copied)
{
    const char uplo = "LlUuN"[c.below(5)];
    const int n = c.size(), lda = c.leading(n);
    blac_reflect_(&uplo, &n, c.matrix(n, n, lda), &lda);
}
