// SPDX-License-Identifier: BSD-3-Clause
// One multi-shift QR sweep.
#include "facade.h"

extern "C" decltype(blac_zlaqr5_) zlaqr5_;

BLA_EXPORT void blac_zlaqr5_(const int* wantt, const int* wantz, const int* kacc22, const int* n,
                             const int* ktop, const int* kbot, const int* nshfts, blac_complex* s,
                             blac_complex* h, const int* ldh, const int* iloz, const int* ihiz,
                             blac_complex* z, const int* ldz, blac_complex* v, const int* ldv,
                             blac_complex* u, const int* ldu, const int* nv, blac_complex* wv,
                             const int* ldwv, const int* nh, blac_complex* wh, const int* ldwh)
{
    zlaqr5_(wantt, wantz, kacc22, n, ktop, kbot, nshfts, s, h, ldh, iloz, ihiz, z, ldz, v, ldv, u, ldu, nv,
            wv, ldwv, nh, wh, ldwh);
}
