// SPDX-License-Identifier: BSD-3-Clause
// L·Lᵀ := L·Lᵀ - x·xᵀ by Givens rotations (c,s) that take L⁻¹·x and sqrt(1 - |L⁻¹·x|²) to a unit vector;
// refused with info = -1, L and c unchanged, unless |L⁻¹·x| < 1.
#include "TOVBlaModule.h"

#include "blas.h"
#include "rotations.h"

static Turned turn(double c, double s, Turned p)
{
    return {c * p.element - s * p.xi, c * p.xi + s * p.element};
}

/// Turns row j from its diagonal to the left, to column `last`; returns xi.
BLA_BODY double turn_row(int64_t j, int64_t last, real* l, int64_t step, const real* c, const real* s)
{
    double xi = 0.0;
    for (int64_t k = j; k >= last; --k) {
        const Turned pair = turn(c[k], s[k], {l[j + k * step], xi});
        l[j + k * step] = pair.element;
        xi = pair.xi;
    }
    return xi;
}

[[gnu::noinline]] static void turn_blocks(int64_t order, real* l, int64_t step, const real* c, const real* s)
{
    for_row_blocks(order, [=](int64_t first, int64_t last) {
        double xi[RowBlock];
        const int64_t end = first + (last - first + ColumnGroup - 1) / ColumnGroup * ColumnGroup;
        for (int64_t i = end - ColumnGroup; i >= first; i -= ColumnGroup) {
            const int64_t below = last - i < ColumnGroup ? last : i + ColumnGroup;
            for (int64_t j = i; j < below; ++j)
                xi[j - first] = turn_row(j, i, l, step, c, s);
            rotate_columns(last - below, l + (i + 3) * step + below, -step, xi + (below - first), c + i + 3,
                           s + i + 3, -1, turn);
        }
        for (int64_t i = first - ColumnGroup; i >= 0; i -= ColumnGroup)
            rotate_columns(last - first, l + (i + 3) * step + first, -step, xi, c + i + 3, s + i + 3, -1,
                           turn);
    });
}

BLA_EXPORT void blac_dchdd_(real* l, const int* ldl, const int* p, const real* x, real* c, real* s, int* info)
{
    const int64_t order = *p, step = order < 1 ? 0 : *ldl;
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

    if (order > SmallFactor)
        return turn_blocks(order, l, step, c, s);
    for (int64_t j = 0; j < order; ++j)
        turn_row(j, 0, l, step, c, s);
}
