// SPDX-License-Identifier: BSD-3-Clause
#include "bytes.h"
#include "reference.h"

namespace reference {

void copydiag(int n, const number* a, int lda, number* d, number* dinv)
{
    for (int64_t i = 0; i < n; ++i)
        copy(&a[i + i * lda], &d[i]);
    for (int64_t i = 0; i < n; ++i) {
        if (d[i] > 1e-36)
            dinv[i] = 1.0 / d[i];
        else if (d[i] < -1e-36)
            dinv[i] = 1.0 / d[i];
        else {
            d[i] = 1e36;
            dinv[i] = 1e-36;
        }
    }
}

void datcpy(int m, int n, const number* a, int lda, number* b, int ldb)
{
    for (int64_t i = 0; i < m; ++i)
        for (int64_t j = 0; j < n; ++j)
            copy(&a[j + i * lda], &b[i + j * ldb]);
}

void dlacpysc(int m, int n, const number* a, int lda, const number* s, number* b, int ldb)
{
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = 0; i < m; ++i)
            b[i + j * ldb] = a[i + j * lda] * s[j];
}

void copyrect(int m, int n, number* b, int ldb, const number* a, int lda)
{
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = 0; i < m; ++i)
            copy(&a[i + j * lda], &b[i + j * ldb]);
}

void dset(int n, const number* a, number* x, int incx)
{
    for (int64_t k = 0; k < n; ++k)
        copy(a, &x[k * incx]);
}

void zerotri(int n, int k0, int m, number* a, int lda)
{
    for (int64_t j = k0; j < k0 + m; ++j)
        for (int64_t i = j; i < n; ++i)
            a[i + j * lda] = 0.0;
}

void reflect(char uplo, int n, number* a, int lda)
{
    if (uplo == 'L' || uplo == 'l')
        for (int64_t j = 1; j < n; ++j)
            for (int64_t i = 0; i < j; ++i)
                copy(&a[j + i * lda], &a[i + j * lda]);
    if (uplo == 'U' || uplo == 'u')
        for (int64_t j = 0; j < n - 1; ++j)
            for (int64_t i = j + 1; i < n; ++i)
                copy(&a[j + i * lda], &a[i + j * lda]);
}

} // namespace reference
