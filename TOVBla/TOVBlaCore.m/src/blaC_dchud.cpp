// SPDX-License-Identifier: BSD-3-Clause
// L·Lᵀ := L·Lᵀ + x·xᵀ by Givens rotations (c,s), row by row of L: the rotations of the rows above are applied
// to the row and its element of x, then drotg_ makes the row's own. A negative diagonal stays as drotg_
// leaves it.
#include "TOVBlaModule.h"

#include "blas.h"

BLA_EXPORT void blac_dchud_(real* l, const int* ldl, const int* p, const real* x, real* c, real* s)
{
    const int64_t order = *p, step = *ldl;
    for (int64_t j = 0; j < order; ++j) {
        real xi = x[j];
        for (int64_t i = 0; i < j; ++i) {
            real& element = l[j + i * step];
            const double t = c[i] * element + xi * s[i];
            xi = xi * c[i] - s[i] * element;
            element = t;
        }
        drotg_(&l[j + j * step], &xi, &c[j], &s[j]);
    }
}
