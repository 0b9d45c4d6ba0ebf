// SPDX-License-Identifier: BSD-3-Clause
// uplo "L": a(i,j) := a(j,i) for i < j; uplo "U": for i > j. One triangle of A is copied onto the other.
#include "blas.h"
#include "tiers.h"
#include "transpose.h"

BLA_TIERS_VA(blac_reflect_, (const char* uplo, const int* n, real* a, const int* lda), (uplo, n, a, lda))
{
    const bool lower = lsame_(uplo, "L", 1, 1), upper = lsame_(uplo, "U", 1, 1); // both, before n is read
    if (!lower && !upper)
        return;
    const int64_t order = *n, step = *lda;
    int64_t width;
    for (int64_t j = 0; j < order; j += width) { // bands of destination columns; a small matrix is one
        width = order > BandColumns ? elements_up_to(LineBytes, a + j) : 0;
        width = smaller(width > 0 ? width : BandColumns, order - j);
        const int64_t rest = order - j - width;
        real* const diagonal = a + j * step + j;
        if (lower) // what lies above the diagonal block; else what lies below it
            transpose<Lanes>(false, j, width, a + j, step, a + j * step, step);
        else
            transpose<Lanes>(false, rest, width, diagonal + width * step, step, diagonal + width, step);
        for (int64_t c = 1; c < width; ++c)
            for (int64_t r = 0; r < c; ++r) {
                real *const above = diagonal + c * step + r, *const below = diagonal + r * step + c;
                lower ? put(false, above, *below) : put(false, below, *above);
            }
    }
}
