// SPDX-License-Identifier: BSD-3-Clause
// L·Lᵀ := L·Lᵀ + x·xᵀ by Givens rotations (c,s): row j and xi = x(j) are turned by the rotations of the rows
// above, and drotg_ makes the row's own from what is left. A negative diagonal stays as drotg_ leaves it.
#include "TOVBlaModule.h"

#include "blas.h"
#include "rotations.h"

static Turned turn(double c, double s, Turned p)
{
    return {c * p.element + p.xi * s, p.xi * c - s * p.element};
}

/// Row j from column `first` on: the rotations before its own, then its own.
BLA_BODY void turn_row(int64_t j, int64_t first, real* l, int64_t step, double xi, real* c, real* s)
{
    for (int64_t k = first; k < j; ++k) {
        const Turned pair = turn(c[k], s[k], {l[j + k * step], xi});
        l[j + k * step] = pair.element;
        xi = pair.xi;
    }
    drotg_(&l[j + j * step], &xi, &c[j], &s[j]);
}

[[gnu::noinline]] static void turn_blocks(int64_t order, real* l, int64_t step, const real* x, real* c,
                                          real* s)
{
    for_row_blocks(order, [=](int64_t first, int64_t last) {
        double xi[RowBlock];
        for (int64_t j = first; j < last; ++j)
            xi[j - first] = x[j];
        for (int64_t i = 0; i < first; i += ColumnGroup)
            rotate_columns(last - first, l + i * step + first, step, xi, c + i, s + i, 1, turn);
        for (int64_t i = first; i < last; i += ColumnGroup) {
            const int64_t below = last - i < ColumnGroup ? last : i + ColumnGroup;
            for (int64_t j = i; j < below; ++j)
                turn_row(j, i, l, step, xi[j - first], c, s);
            rotate_columns(last - below, l + i * step + below, step, xi + (below - first), c + i, s + i, 1,
                           turn);
        }
    });
}

BLA_EXPORT void blac_dchud_(real* l, const int* ldl, const int* p, const real* x, real* c, real* s)
{
    if (*p < 1)
        return;
    const int64_t order = *p, step = *ldl;
    if (order > SmallFactor)
        return turn_blocks(order, l, step, x, c, s);
    for (int64_t j = 0; j < order; ++j)
        turn_row(j, 0, l, step, x[j], c, s);
}
