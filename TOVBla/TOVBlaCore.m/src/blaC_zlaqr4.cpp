// SPDX-License-Identifier: BSD-3-Clause
// zlaqr0 without recursion.
#include "facade.h"

extern "C" decltype(blac_zlaqr4_) zlaqr4_;

BLA_EXPORT void blac_zlaqr4_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                             blac_complex* h, const int* ldh, blac_complex* w, const int* iloz,
                             const int* ihiz, blac_complex* z, const int* ldz, blac_complex* work,
                             const int* lwork, int* info)
{
    zlaqr4_(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, work, lwork, info);
}
