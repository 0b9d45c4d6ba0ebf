// SPDX-License-Identifier: BSD-3-Clause
// Aggressive early deflation on a window.
#include "facade.h"

extern "C" decltype(blac_zlaqr2_) zlaqr2_;

BLA_EXPORT void blac_zlaqr2_(const int* wantt, const int* wantz, const int* n, const int* ktop,
                             const int* kbot, const int* nw, blac_complex* h, const int* ldh, const int* iloz,
                             const int* ihiz, blac_complex* z, const int* ldz, int* ns, int* nd,
                             blac_complex* sh, blac_complex* v, const int* ldv, const int* nh,
                             blac_complex* t, const int* ldt, const int* nv, blac_complex* wv,
                             const int* ldwv, blac_complex* work, const int* lwork)
{
    zlaqr2_(wantt, wantz, n, ktop, kbot, nw, h, ldh, iloz, ihiz, z, ldz, ns, nd, sh, v, ldv, nh, t, ldt, nv,
            wv, ldwv, work, lwork);
}
