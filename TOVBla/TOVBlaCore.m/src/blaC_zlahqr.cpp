// SPDX-License-Identifier: BSD-3-Clause
// zhseqr by double-shift QR for small matrices; wantt and wantz are logicals.
#include "facade.h"

extern "C" decltype(blac_zlahqr_) zlahqr_;

BLA_EXPORT void blac_zlahqr_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                             blac_complex* h, const int* ldh, blac_complex* w, const int* iloz,
                             const int* ihiz, blac_complex* z, const int* ldz, int* info)
{
    zlahqr_(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, info);
}
