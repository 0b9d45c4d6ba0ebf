// SPDX-License-Identifier: BSD-3-Clause
// B := A, both m×n, one block copy a column.
#include "TOVBlaModule.h"

#include "real.h"

#include <cstring>

BLA_EXPORT void blaC_copyrect_intr(int m, int n, double* b, int ldb, const double* a, int lda)
{
    const int64_t bytes = int64_t{m} * 8, b_step = ldb, a_step = lda;
    for (int64_t j = 0; j < n; ++j)
        std::memcpy(b + j * b_step, a + j * a_step, static_cast<std::size_t>(bytes));
}

BLA_PLAIN_NAME(blaC_copyrect_intr, "_Z18blaC_copyrect_intriiPdiPKdi", void,
               (int, int, double*, int, const double*, int))
