// SPDX-License-Identifier: BSD-3-Clause
// L·Lᵀ := L·Lᵀ - x·xᵀ by Givens rotations (c,s) that take L⁻¹·x and sqrt(1 - |L⁻¹·x|²) to a unit vector;
// refused with info = -1, L and c unchanged, unless |L⁻¹·x| < 1.
#include "TOVBlaModule.h"

#include "blas.h"

BLA_EXPORT void blac_dchdd_(real* l, const int* ldl, const int* p, const real* x, real* c, real* s, int* info)
{
    const int64_t order = *p, step = *ldl;
    const int one = 1;

    // s := L⁻¹·x. The first element is formed whatever p is.
    *info = 0;
    s[0] = x[0] / l[0];
    for (int j = 1; j < order; ++j)
        s[j] = (x[j] - ddot_(&j, l + j, ldl, s, &one)) / l[j + j * step];
    const double norm = dnrm2_(p, s, &one);
    if (!(norm < 1.0)) { // a NaN is refused too
        *info = -1;
        return;
    }

    double alpha = __builtin_sqrt(1.0 - norm * norm);
    for (int64_t i = order - 1; i >= 0; --i) {
        const double sigma = alpha + __builtin_fabs(s[i]); // scales the squares, against overflow
        const double a = alpha / sigma, b = s[i] / sigma;
        const double rho = __builtin_sqrt(a * a + b * b);
        c[i] = a / rho;
        s[i] = b / rho;
        alpha = rho * sigma;
    }

    for (int64_t j = 0; j < order; ++j) {
        double xi = 0.0;
        for (int64_t i = j; i >= 0; --i) {
            real& element = l[j + i * step];
            const double t = c[i] * xi + s[i] * element;
            element = c[i] * element - s[i] * xi;
            xi = t;
        }
    }
}
