// SPDX-License-Identifier: BSD-3-Clause
// B := A, both m×n, one block copy a column.
#include "TOVBlaModule.h"

#include "pattern.h"

#include <cstring>

BLA_EXPORT void blaC_copyrect_intr(int m, int n, double* b, int ldb, const double* a, int lda)
{
    const int64_t rows = m, b_step = ldb, a_step = lda;
    if (rows <= 8) { // a call a column would take longer
        for (int64_t j = 0; j < n; ++j)
            for (int64_t i = 0; i < rows; ++i)
                patterns(b + j * b_step)[i] = patterns(a + j * a_step)[i];
        return;
    }
    for (int64_t j = 0; j < n; ++j)
        std::memcpy(b + j * b_step, a + j * a_step, static_cast<std::size_t>(rows) * 8);
}

BLA_PLAIN_NAME(blaC_copyrect_intr, "_Z18blaC_copyrect_intriiPdiPKdi", void,
               (int, int, double*, int, const double*, int))
