// SPDX-License-Identifier: BSD-3-Clause
// One panel of zgehrd.
#include "facade.h"

extern "C" decltype(blac_zlahr2_) zlahr2_;

BLA_EXPORT void blac_zlahr2_(const int* n, const int* k, const int* nb, blac_complex* a, const int* lda,
                             blac_complex* tau, blac_complex* t, const int* ldt, blac_complex* y,
                             const int* ldy)
{
    zlahr2_(n, k, nb, a, lda, tau, t, ldt, y, ldy);
}
