// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "pivot.h"

// What to do with a pivot. A rule is called with the number k of the pivot and its value; it returns the
// pivot to use and the reciprocal that scales its column or row.

struct Pivot
{
    double value, reciprocal;
};

/// A tiny pivot is replaced by a huge one, which decouples its unknown.
struct ReplaceTiny
{
    double tol;

    [[gnu::always_inline]] inline Pivot operator()(int64_t, double p) const
    {
        if (exceeds(p, tol))
            return {p, 1.0 / p};
        return {pivot::Huge, pivot::Tiny};
    }
};

/// A tiny pivot, measured against reg(k) where that is positive, is shifted by reg(k) as negpiv(k) tells;
/// dcorr(k) reports minus the shift. The reciprocal is formed whatever comes out, zero and NaN included.
struct ShiftTiny
{
    const real* tol;
    const int* negpiv;
    const real* reg;
    real* dcorr;

    [[gnu::always_inline]] inline Pivot operator()(int64_t k, double p) const
    {
        const double s = reg[k];
        const double q = s > 0.0 ? p / s : p;
        if (exceeds(q, tol[k])) {
            dcorr[k] = 0.0;
        } else {
            const double shift = negpiv[k] == 1 ? -1.0 * s : 1.0 * s;
            p = p + shift;
            dcorr[k] = -shift;
        }
        return {p, 1.0 / p};
    }
};

/// A = L·D·Lᵀ in place, lower triangle in; out: pivots, L·D below them, Lᵀ above them.
///
/// Element (i,j) receives one rounded product and one subtraction per pivot, in the order of the pivots: that
/// fixes its bits. The order over the elements is free.
template <class Rule>
BLA_BODY void eliminate_symmetric(int64_t n, real* a, int64_t lda, real* d, real* dinv, Rule rule)
{
    for (int64_t k = 0; k < n; ++k) {
        real* const column = a + k * lda;
        const Pivot p = rule(k, column[k]);
        column[k] = d[k] = p.value;
        dinv[k] = p.reciprocal;
        for (int64_t i = k + 1; i < n; ++i)
            a[k + i * lda] = p.reciprocal * column[i];
        for (int64_t j = k + 1; j < n; ++j) {
            const double multiplier = a[k + j * lda];
            for (int64_t i = j; i < n; ++i)
                a[i + j * lda] = a[i + j * lda] - column[i] * multiplier;
        }
    }
}

/// A = L·D·U in place; out: pivots, L·D below them, U right of them. The bits are fixed as above; the
/// multiplier is the scaled element of the pivot's row.
template <class Rule>
BLA_BODY void eliminate_unsymmetric(int64_t n, real* a, int64_t lda, real* d, real* dinv, Rule rule)
{
    for (int64_t k = 0; k < n; ++k) {
        real* const column = a + k * lda;
        const Pivot p = rule(k, column[k]);
        column[k] = d[k] = p.value;
        dinv[k] = p.reciprocal;
        for (int64_t j = k + 1; j < n; ++j)
            a[k + j * lda] = a[k + j * lda] * p.reciprocal;
        for (int64_t j = k + 1; j < n; ++j) {
            const double multiplier = a[k + j * lda];
            for (int64_t i = k + 1; i < n; ++i)
                a[i + j * lda] = a[i + j * lda] - column[i] * multiplier;
        }
    }
}
