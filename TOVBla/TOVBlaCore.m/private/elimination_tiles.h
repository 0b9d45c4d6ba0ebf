// SPDX-License-Identifier: BSD-3-Clause
// The unblocked eliminations in register tiles. elimination.h includes this once per tier, with TIER,
// TIER_TARGET and TIER_LANES defined: GCC takes vectors apart that the target of the function around them
// does not have, and it does so before inlining, so vector code must be written into functions of its own
// tier.
//
// Why the bits are those of the plain loops. Element (i,j) is changed by its pivots k < min(i,j) only: per
// pivot one rounded product a(i,k)·m(k,j) and one subtraction, k ascending; above the diagonal one product
// with the reciprocal follows. The factors are final when they are used, the column element unscaled, the
// multiplier rounded. Here each of these operations is one lane of one vector operation, and every loop over
// pivots ascends: subtract() for the pivots left of the tile or above it, apply_column(), apply_row() and
// pivot() for those inside. Only the turn of an element differs: a tile receives all its pivots in one go,
// while it is held in registers.
//
// The walk. Strips of `Strip` rows from top to bottom; in each, tiles of four columns from left to right. The
// finished columns of the strip also go to `packed`, Strip numbers a pivot; the multipliers of a column stand
// one behind the other above the diagonal; so nothing is read with a stride. n mod 4 pivots are taken first,
// one by one, and no later tile is cut short. Beyond Depth pivots, what fits the buffer, a new walk begins.

namespace {
namespace TIER {

constexpr int Lanes = TIER_LANES, Strip = 8, Depth = 512;

typedef double Vector __attribute__((vector_size(8 * Lanes), may_alias));
typedef double UnalignedVector __attribute__((vector_size(8 * Lanes), aligned(1), may_alias));

#define TILE_CODE [[gnu::always_inline, gnu::target(TIER_TARGET)]] inline

/// W columns of Rows rows each, in registers: vector v of column c is element c·(Rows / Lanes) + v. Loops
/// over a tile are never nested, so that the compiler unrolls them while it can still give each vector a
/// register.
template <int Rows, int W>
using Tile = Vector[W * Rows / Lanes];

template <int Rows, int W>
TILE_CODE void load(Tile<Rows, W>& t, const real* a, int64_t lda)
{
    constexpr int V = Rows / Lanes;
    for (int e = 0; e < W * V; ++e)
        t[e] = *reinterpret_cast<const UnalignedVector*>(a + e / V * lda + e % V * Lanes);
}

/// Clears what a tile that starts on the diagonal holds above it. That is the caller's undefined memory: a
/// signalling NaN in it may be loaded and shuffled, but not computed with.
template <int Rows, int E = 0>
TILE_CODE void clear_above(Tile<Rows, 4>& t)
{
    constexpr int V = Rows / Lanes, Row = E % V * Lanes, Column = E / V; // of vector E
    constexpr int Cleared = Column - Row;                                // its first lanes
    const Vector zero = {};
#if TIER_LANES == 4
    t[E] = __builtin_shufflevector(t[E], zero, Cleared > 0 ? 4 : 0, Cleared > 1 ? 5 : 1, Cleared > 2 ? 6 : 2,
                                   Cleared > 3 ? 7 : 3);
#else
    t[E] = __builtin_shufflevector(t[E], zero, Cleared > 0 ? 2 : 0, Cleared > 1 ? 3 : 1);
#endif
    if constexpr (E + 1 < 4 * V)
        clear_above<Rows, E + 1>(t);
}

template <int Rows, int W>
TILE_CODE void store(const Tile<Rows, W>& t, real* a, int64_t lda)
{
    constexpr int V = Rows / Lanes;
    for (int e = 0; e < W * V; ++e)
        *reinterpret_cast<UnalignedVector*>(a + e / V * lda + e % V * Lanes) = t[e];
}

/// t := t - p(:,k)·m(k,:) for k = 0..count-1 in this order; column k of p at p[k·Strip], row k of m at m[k].
/// As many columns at a time as eight vectors hold: with them, factors and products there are registers for.
template <int Rows, int W, int First = 0>
TILE_CODE void subtract(Tile<Rows, W>& t, const double* p, const real* m, int64_t lda, int64_t count)
{
    constexpr int V = Rows / Lanes, End = W * V > 8 ? First + 8 / V : W;
#pragma GCC unroll 4
    for (int64_t k = 0; k < count; ++k)
        for (int e = First * V; e < End * V; ++e)
            t[e] =
                t[e] - *reinterpret_cast<const Vector*>(p + k * Strip + e % V * Lanes) * m[k + e / V * lda];
    if constexpr (End < W)
        subtract<Rows, W, End>(t, p, m, lda, count);
}

/// x := the 4×4 block of t at row I and column J.
template <int Rows, int W, int I, int J>
TILE_CODE void block_of(const Tile<Rows, W>& t, Tile<4, 4>& x)
{
    constexpr int V = 4 / Lanes;
    for (int e = 0; e < 4 * V; ++e)
        x[e] = t[(J + e / V) * (Rows / Lanes) + I / Lanes + e % V];
}

/// Block (J,I) of x := the transpose of block (I,J) of t.
template <int Rows, int W, int I, int J>
TILE_CODE void transpose_block(const Tile<Rows, W>& t, Tile<W, Rows>& x)
{
    constexpr int V = 4 / Lanes;
    Tile<4, 4> from, to;
    block_of<Rows, W, I, J>(t, from);
#if TIER_LANES == 4
    const Vector a = __builtin_shufflevector(from[0], from[1], 0, 4, 2, 6);
    const Vector b = __builtin_shufflevector(from[0], from[1], 1, 5, 3, 7);
    const Vector c = __builtin_shufflevector(from[2], from[3], 0, 4, 2, 6);
    const Vector d = __builtin_shufflevector(from[2], from[3], 1, 5, 3, 7);
    to[0] = __builtin_shufflevector(a, c, 0, 1, 4, 5);
    to[1] = __builtin_shufflevector(b, d, 0, 1, 4, 5);
    to[2] = __builtin_shufflevector(a, c, 2, 3, 6, 7);
    to[3] = __builtin_shufflevector(b, d, 2, 3, 6, 7);
#else
    for (int e = 0; e < 4; ++e) { // rows 2·(e / 2).., columns 2·(e % 2)..
        const int f = e % 2 * 4 + e / 2, g = e / 2 * 4 + e % 2;
        to[g] = __builtin_shufflevector(from[f], from[f + 2], 0, 2);
        to[g + 2] = __builtin_shufflevector(from[f], from[f + 2], 1, 3);
    }
#endif
    for (int e = 0; e < 4 * V; ++e)
        x[(I + e / V) * (W / Lanes) + J / Lanes + e % V] = to[e];
}

/// x := the transpose of t.
template <int Rows, int W>
TILE_CODE void transpose(const Tile<Rows, W>& t, Tile<W, Rows>& x)
{
    transpose_block<Rows, W, 0, 0>(t, x);
    if constexpr (Rows == 8)
        transpose_block<Rows, W, 4, 0>(t, x);
    if constexpr (W == 8)
        transpose_block<Rows, W, 0, 4>(t, x);
}

template <bool Symmetric, class Rule>
struct Elimination
{
    real* const a;
    const int64_t lda;
    real *const d, *const dinv;
    const Rule rule;
    double* const packed;
    int64_t first, last; ///< this walk takes pivots first..last-1

    TILE_CODE real* at(int64_t i, int64_t j) const { return a + i + j * lda; }
    TILE_CODE double* packed_column(int64_t k) const { return packed + (k - first) * Strip; }

    /// Eliminates the 4×4 diagonal block at pivot i, whose earlier pivots are done. In scalars, unrolled by
    /// recursion: a loop over an array would be left in memory.
    TILE_CODE void pivots(int64_t i, const Tile<4, 4>& t) const
    {
        double x[4][4];
        copy_scalars<0>(t, x);
        pivot<0>(i, x);
    }

    template <int E>
    TILE_CODE static void copy_scalars(const Tile<4, 4>& t, double (&x)[4][4])
    {
        x[E / 4][E % 4] = t[E / Lanes][E % Lanes];
        if constexpr (E < 15)
            copy_scalars<E + 1>(t, x);
    }

    template <int K>
    TILE_CODE void pivot(int64_t i, double (&x)[4][4]) const
    {
        const Pivot p = rule(i + K, x[K][K]);
        *at(i + K, i + K) = d[i + K] = p.value;
        dinv[i + K] = p.reciprocal;
        if constexpr (K < 3) {
            pivot_column<K, K + 1>(i, x, p.reciprocal);
            pivot<K + 1>(i, x);
        }
    }

    template <int K, int J>
    TILE_CODE void pivot_column(int64_t i, double (&x)[4][4], double reciprocal) const
    {
        const double multiplier = reciprocal * (Symmetric ? x[K][J] : x[J][K]);
        *at(i + J, i + K) = x[K][J];
        *at(i + K, i + J) = multiplier;
        pivot_element<K, J, Symmetric ? J : K + 1>(x, multiplier);
        if constexpr (J < 3)
            pivot_column<K, J + 1>(i, x, reciprocal);
    }

    template <int K, int J, int R>
    TILE_CODE static void pivot_element(double (&x)[4][4], double multiplier)
    {
        x[J][R] = x[J][R] - x[K][R] * multiplier;
        if constexpr (R < 3)
            pivot_element<K, J, R + 1>(x, multiplier);
    }

    /// Finishes a tile below the diagonal: the pivots of its own columns j.. are applied.
    template <int Rows, int W>
    TILE_CODE void finish_columns(Tile<Rows, W>& t, int64_t i, int64_t j, double* column) const
    {
        constexpr int V = Rows / Lanes;
        apply_column<Rows, W, 0>(t, j);
        store<Rows, W>(t, at(i, j), lda);
        for (int e = 0; e < W * V; ++e)
            *reinterpret_cast<Vector*>(column + e / V * Strip + e % V * Lanes) = t[e];
        if constexpr (Symmetric) { // the multipliers of these rows
            for (int e = 0; e < W * V; ++e)
                t[e] = t[e] * dinv[j + e / V];
            if constexpr (W == 4) {
                Tile<4, Rows> x;
                transpose<Rows, 4>(t, x);
                store<4, Rows>(x, at(j, i), lda);
            } else {
                static_assert(W == 1);
                for (int r = 0; r < Rows; ++r)
                    *at(j, i + r) = t[r / Lanes][r % Lanes];
            }
        }
    }

    template <int Rows, int W, int K>
    TILE_CODE void apply_column(Tile<Rows, W>& t, int64_t j) const
    {
        constexpr int V = Rows / Lanes;
        for (int e = (K + 1) * V; e < W * V; ++e)
            t[e] = t[e] - t[K * V + e % V] * *at(j + K, j + e / V);
        if constexpr (K + 2 < W)
            apply_column<Rows, W, K + 1>(t, j);
    }

    /// Finishes a tile right of the diagonal: the pivots of its own rows i.. are applied, row by row.
    template <int Rows>
    TILE_CODE void finish_rows(Tile<Rows, 4>& t, int64_t i, int64_t j) const
    {
        Tile<4, Rows> x; // column r: row r of t
        transpose<Rows, 4>(t, x);
        apply_row<Rows, 0>(x, i);
        transpose<4, Rows>(x, t);
        store<Rows, 4>(t, at(i, j), lda);
    }

    template <int Rows, int K>
    TILE_CODE void apply_row(Tile<4, Rows>& x, int64_t i) const
    {
        constexpr int V = 4 / Lanes;
        for (int e = K * V; e < (K + 1) * V; ++e)
            x[e] = x[e] * dinv[i + K];
        for (int e = (K + 1) * V; e < Rows * V; ++e)
            x[e] = x[e] - x[K * V + e % V] * *at(i + e / V, i + K);
        if constexpr (K + 1 < Rows)
            apply_row<Rows, K + 1>(x, i);
    }

    /// The tile at (i,j), with pivots first..k-1 of this walk applied.
    template <int Rows, int W>
    TILE_CODE void fetch(Tile<Rows, W>& t, int64_t i, int64_t j, int64_t k, const double* rows) const
    {
        load<Rows, W>(t, at(i, j), lda);
        subtract<Rows, W>(t, rows, at(first, j), lda, k - first);
    }

    /// The same on the diagonal, i = j.
    template <int Rows>
    TILE_CODE void fetch_diagonal(Tile<Rows, 4>& t, int64_t i, int64_t k, const double* rows) const
    {
        load<Rows, 4>(t, at(i, i), lda);
        if constexpr (Symmetric)
            clear_above<Rows>(t);
        subtract<Rows, 4>(t, rows, at(first, i), lda, k - first);
    }

    template <int Rows, int W>
    TILE_CODE void below(int64_t i, int64_t j) const
    {
        Tile<Rows, W> t;
        fetch<Rows, W>(t, i, j, j, packed);
        finish_columns<Rows, W>(t, i, j, packed_column(j));
    }

    template <int Rows>
    TILE_CODE void diagonal(int64_t i) const
    {
        Tile<Rows, 4> t;
        Tile<4, 4> half;
        fetch_diagonal<Rows>(t, i, i, packed);
        block_of<Rows, 4, 0, 0>(t, half);
        pivots(i, half);
        if constexpr (Rows == 8) {
            block_of<8, 4, 4, 0>(t, half);
            finish_columns<4, 4>(half, i + 4, i, packed_column(i) + 4);
            if constexpr (Symmetric) {
                fetch_diagonal<4>(half, i + 4, i + 4, packed + 4);
            } else {
                fetch<8, 4>(t, i, i + 4, i, packed);
                block_of<8, 4, 0, 0>(t, half);
                finish_rows<4>(half, i, i + 4);
                block_of<8, 4, 4, 0>(t, half);
                subtract<4, 4>(half, packed_column(i) + 4, at(i, i + 4), lda, 4);
            }
            pivots(i + 4, half);
        }
    }

    template <int Rows>
    TILE_CODE void right(int64_t i, int64_t j) const
    {
        Tile<Rows, 4> t;
        fetch<Rows, 4>(t, i, j, i, packed);
        finish_rows<Rows>(t, i, j);
    }

    /// What later walks will go on with.
    template <int Rows>
    TILE_CODE void behind(int64_t i, int64_t j) const
    {
        Tile<Rows, 4> t;
        fetch<Rows, 4>(t, i, j, last, packed);
        store<Rows, 4>(t, at(i, j), lda);
    }

    /// The same on the diagonal of a symmetric front; the multipliers to come will overwrite what is above
    /// it.
    template <int Rows>
    TILE_CODE void behind_diagonal(int64_t i, const double* rows) const
    {
        Tile<Rows, 4> t;
        fetch_diagonal<Rows>(t, i, last, rows);
        store<Rows, 4>(t, at(i, i), lda);
        if constexpr (Rows == 8)
            behind_diagonal<4>(i + 4, rows + 4);
    }

    /// Rows i.. of the front. A function of its own, for short fronts, on a copy that nothing stored can
    /// alter.
    template <int Rows>
    [[gnu::noinline, gnu::target(TIER_TARGET)]] void strip(int64_t i, int64_t n) const
    {
        const Elimination e = *this;
        e.template walk_strip<Rows>(i, n);
    }

    template <int Rows>
    TILE_CODE void walk_strip(int64_t i, int64_t n) const
    {
        const int64_t end = i < last ? i : last;
        int64_t j = first;
        for (; (end - j) % 4 != 0; ++j)
            below<Rows, 1>(i, j);
        for (; j < end; j += 4)
            below<Rows, 4>(i, j);
        if (i < last) {
            diagonal<Rows>(i);
            if constexpr (!Symmetric)
                for (j = i + Rows; j < n; j += 4)
                    right<Rows>(i, j);
        } else {
            for (; j < (Symmetric ? i : n); j += 4)
                behind<Rows>(i, j);
            if constexpr (Symmetric)
                behind_diagonal<Rows>(i, packed);
        }
    }
};

template <bool Symmetric, class Rule>
TILE_CODE void eliminate(int64_t n, real* a, int64_t lda, real* d, real* dinv, const Rule& rule)
{
    const int64_t lead = n % 4;
    eliminate_plainly<Symmetric>(lead, n, a, lda, d, dinv, rule);
    alignas(64) double packed[Depth * Strip];
    Elimination<Symmetric, Rule> e{a, lda, d, dinv, rule, packed, 0, 0};
    for (int64_t i = lead; i < n; i = e.last) {
        e.first = e.last;
        const int64_t beyond = n - e.first - Depth; // rounded up to whole strips for the next walk
        e.last = beyond > 0 ? n - (beyond + Strip - 1) / Strip * Strip : n;
        if ((n - i) % Strip != 0) {
            e.template strip<4>(i, n);
            i += 4;
        }
        for (; i < n; i += Strip)
            e.template strip<Strip>(i, n);
    }
}

#undef TILE_CODE

} // namespace TIER
} // namespace

#undef TIER
#undef TIER_TARGET
#undef TIER_LANES
