// SPDX-License-Identifier: BSD-3-Clause
// p + i·q := (a + i·b)/(c + i·d) without needless overflow.
#include "facade.h"

extern "C" decltype(blac_dladiv_) dladiv_;

BLA_EXPORT void blac_dladiv_(const double* a, const double* b, const double* c, const double* d, double* p,
                             double* q)
{
    dladiv_(a, b, c, d, p, q);
}
