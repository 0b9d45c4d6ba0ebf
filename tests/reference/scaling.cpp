// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

namespace reference {

void scale(int m, int n, const number* d, const number* a, int lda, number* b, int ldb)
{
    if (n < 1)
        return;
    for (int64_t j = 0; j < n; ++j) {
        if (m < 1)
            continue;
        double s = d[j];
        for (int64_t i = 0; i < m; ++i)
            b[i + j * ldb] = a[i + j * lda] * s;
    }
}

void scale2(int m, int n, number* a, int lda, const number* d)
{
    if (n < 1)
        return;
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = 0; i < m; ++i)
            a[i + j * lda] = a[i + j * lda] * d[i];
}

void scale2t(int m, int n, number* a, int lda, const number* d)
{
    if (m < 1)
        return;
    for (int64_t c = 0; c < m; ++c) {
        if (n < 1)
            continue;
        double s = d[c];
        for (int64_t r = 0; r < n; ++r)
            a[r + c * lda] = a[r + c * lda] * s;
    }
}

void scale_low(int n, number* a, int lda, const number* d)
{
    if (n < 1)
        return;
    for (int64_t j = 0; j < n - 1; ++j) {
        double s = d[j];
        for (int64_t i = j + 1; i < n; ++i)
            a[i + j * lda] = a[i + j * lda] * s;
    }
}

void scale_low2(int n, number* a, int lda)
{
    if (n < 1)
        return;
    for (int64_t j = 0; j < n; ++j) {
        double p = a[j + j * lda];
        double r = 0.0;
        if (p > 1e-36)
            r = 1.0 / p;
        else if (-1e-36 > p)
            r = 1.0 / p;
        for (int64_t i = j + 1; i < n; ++i)
            a[i + j * lda] = a[i + j * lda] * r;
    }
}

} // namespace reference
