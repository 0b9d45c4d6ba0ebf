// SPDX-License-Identifier: BSD-3-Clause
// uplo "L": a(i,j) := a(j,i) for i < j; uplo "U": for i > j. One triangle of A is copied onto the other.
#include "blas.h"
#include "tiers.h"
#include "transpose.h"

/// The triangle of the order×order block at a.
template <bool Lower>
BLA_BODY void reflect_plainly(int64_t order, real* a, int64_t step)
{
    for (int64_t c = 1; c < order; ++c)
        for (int64_t r = 0; r < c; ++r)
            Lower ? put<Store::Copy>(a + c * step + r, a[r * step + c])
                  : put<Store::Copy>(a + r * step + c, a[c * step + r]);
}

/// Bands of destination columns: what lies above the diagonal block or below it, then the block itself.
template <class Tier, bool Lower>
BLA_BODY void reflect_bands(int64_t order, real* a, int64_t step)
{
    int64_t width;
    for (int64_t j = 0; j < order; j += width) {
        width = elements_up_to(LineBytes, a + j);
        width = smaller(width > 0 ? width : BandColumns, order - j);
        const int64_t rest = order - j - width;
        real* const diagonal = a + j * step + j;
        if (Lower)
            transpose<Tier, Store::Copy>(j, width, a + j, step, a + j * step, step);
        else
            transpose<Tier, Store::Copy>(rest, width, diagonal + width * step, step, diagonal + width, step);
        reflect_plainly<Lower>(width, diagonal, step);
    }
}

template <class Tier, bool Lower>
BLA_BODY void reflect(int64_t order, real* a, int64_t step)
{
    if (order <= BandColumns)
        return reflect_plainly<Lower>(order, a, step);
    Tier::apart([](auto... all) BLA_INLINED { reflect_bands<Tier, Lower>(all...); }, order, a, step);
}

BLA_TIERS_VA(blac_reflect_, (const char* uplo, const int* n, real* a, const int* lda), (uplo, n, a, lda))
{
    const bool lower = lsame_(uplo, "L", 1, 1), upper = lsame_(uplo, "U", 1, 1); // both, before n is read
    if (*n < 1)
        return;
    if (lower)
        reflect<Tier, true>(*n, a, *lda);
    else if (upper)
        reflect<Tier, false>(*n, a, *lda);
}
