// SPDX-License-Identifier: BSD-3-Clause
// zhseqr by aggressive early deflation for large matrices.
#include "facade.h"

extern "C" decltype(blac_zlaqr0_) zlaqr0_;

BLA_EXPORT void blac_zlaqr0_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                             blac_complex* h, const int* ldh, blac_complex* w, const int* iloz,
                             const int* ihiz, blac_complex* z, const int* ldz, blac_complex* work,
                             const int* lwork, int* info)
{
    zlaqr0_(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, work, lwork, info);
}
