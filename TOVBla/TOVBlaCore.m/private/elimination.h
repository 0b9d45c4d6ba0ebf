// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "pivot.h"
#include "tiers.h"

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

/// The elimination as it is defined, of rows 0..order-1 of A = L·D·Lᵀ or A = L·D·U: the first of them by
/// themselves before the tiles take over. Out: pivots, L·D below them; above them Lᵀ, the columns times the
/// reciprocals, or U, the rows times the reciprocals, in all n columns.
template <bool Symmetric, class Rule>
BLA_BODY void eliminate_plainly(int64_t order, int64_t n, real* a, int64_t lda, real* d, real* dinv,
                                const Rule& rule)
{
    const int64_t columns = Symmetric ? order : n;
    for (int64_t k = 0; k < order; ++k) {
        real* const column = a + k * lda;
        const Pivot p = rule(k, column[k]);
        column[k] = d[k] = p.value;
        dinv[k] = p.reciprocal;
        for (int64_t j = k + 1; j < columns; ++j)
            a[k + j * lda] = p.reciprocal * (Symmetric ? column[j] : a[k + j * lda]);
        for (int64_t j = k + 1; j < columns; ++j) {
            const double multiplier = a[k + j * lda];
            for (int64_t i = Symmetric ? j : k + 1; i < order; ++i)
                a[i + j * lda] = a[i + j * lda] - column[i] * multiplier;
        }
    }
}

#define TIER V
#define TIER_TARGET BLA_INSTRUCTIONS_V
#define TIER_LANES BLA_LANES_V
#include "elimination_tiles.h"
#define TIER R
#define TIER_TARGET BLA_INSTRUCTIONS_R
#define TIER_LANES BLA_LANES_R
#include "elimination_tiles.h"
#define TIER A
#define TIER_TARGET BLA_INSTRUCTIONS_A
#define TIER_LANES BLA_LANES_A
#include "elimination_tiles.h"

/// A kernel with three tiers, as BLA_TIERS_VRA makes it, whose body is one elimination. Less than a tile is
/// eliminated plainly, by the same code for all tiers: no vectors fit, and no room for tiles is wanted.
#define BLA_ELIMINATION(name, params, args, symmetric, rule)                                                 \
    [[gnu::noinline]] static void name##plainly params                                                       \
    {                                                                                                        \
        if (0 < *n && *n < 4) /* the latter once more, so that the compiler counts on it */                  \
            eliminate_plainly<symmetric>(*n, *n, a, *lda, d, dinv, rule);                                    \
    }                                                                                                        \
    BLA_ELIMINATION_VARIANT(name, V, params, args, symmetric, rule)                                          \
    BLA_ELIMINATION_VARIANT(name, R, params, args, symmetric, rule)                                          \
    BLA_ELIMINATION_VARIANT(name, A, params, args, symmetric, rule)                                          \
    BLA_DISPATCH_VRA(name, params, args)

#define BLA_ELIMINATION_VARIANT(name, tier, params, args, symmetric, rule)                                   \
    namespace {                                                                                              \
    namespace tier {                                                                                         \
    [[gnu::noinline, gnu::target(BLA_INSTRUCTIONS_##tier)]] void name##in_tiles params                       \
    {                                                                                                        \
        eliminate<symmetric>(*n, a, *lda, d, dinv, rule);                                                    \
    }                                                                                                        \
    }                                                                                                        \
    }                                                                                                        \
    BLA_VARIANT(name, tier, params, {                                                                        \
        if (*n < 4)                                                                                          \
            name##plainly args;                                                                              \
        else                                                                                                 \
            tier::name##in_tiles args;                                                                       \
    })
