// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

namespace reference {

void addrectblock(int m, int n, number* a, int lda, const number* b, int ldb)
{
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = 0; i < m; ++i)
            a[i + j * lda] = a[i + j * lda] + b[i + j * ldb];
}

void addrectblockt(int m, int n, number* a, int lda, const number* b, int ldb)
{
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = 0; i < m; ++i)
            a[i + j * lda] = a[i + j * lda] + b[j + i * ldb];
}

void addtriblock(int n, number* a, int lda, const number* b, int ldb)
{
    for (int64_t j = 0; j < n; ++j)
        for (int64_t i = j; i < n; ++i)
            a[i + j * lda] = a[i + j * lda] + b[i + j * ldb];
}

} // namespace reference
