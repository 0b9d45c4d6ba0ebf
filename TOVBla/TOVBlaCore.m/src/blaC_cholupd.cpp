// SPDX-License-Identifier: BSD-3-Clause
// L·S·Lᵀ := L·S·Lᵀ ± x·xᵀ on the leading ncol columns of L, S = diag(+1 for nlead columns, then -1): a plane
// rotation a column, orthogonal where the signs of S and ± agree, hyperbolic where not.
//
// An element is divided by the cosine: multiplying with its reciprocal would give other last bits. Columns
// are taken four at a time: first the square on the diagonal, which yields their rotations (and may be
// refused), then all rows below, where x stays in a register from column to column.
#include "blas.h"
#include "tiers.h"

namespace {

enum class Kind { Orthogonal, Hyperbolic };

struct Rotation
{
    double t, c;
};

/// Turns `rows` elements of x into as many rows of Columns columns, one column after the other.
template <Kind K, int Columns>
BLA_BODY void turn_rows(real* l, int64_t step, real* x, int64_t rows, const Rotation* rotations)
{
    double t[Columns], c[Columns];
    for (int q = 0; q < Columns; ++q) {
        t[q] = rotations[q].t;
        c[q] = rotations[q].c;
    }
    BLA_NO_OVERLAP
    for (int64_t i = 0; i < rows; ++i) {
        double xi = x[i];
        for (int q = 0; q < Columns; ++q) {
            const double old = l[q * step + i];
            const double r = K == Kind::Orthogonal ? (t[q] * xi + old) / c[q] : (old - t[q] * xi) / c[q];
            l[q * step + i] = r;
            xi = xi * c[q] - r * t[q];
        }
        x[i] = xi;
    }
}

/// The same, asking meanwhile for as many columns that come next, a cache line of each at a time: a column is
/// too short for the processor to notice by itself that it is being read. A prefetch cannot fault, behind the
/// last column neither.
template <Kind K, int Columns>
BLA_BODY void turn(real* l, int64_t step, real* x, int64_t rows, const Rotation* rotations)
{
    constexpr int64_t Line = 64 / sizeof *l;
    int64_t i = 0;
    for (; i + Line <= rows; i += Line) {
        for (int64_t q = Columns; q < 2 * Columns; ++q)
            __builtin_prefetch(l + q * step + i, 1);
        turn_rows<K, Columns>(l + i, step, x + i, Line, rotations);
    }
    turn_rows<K, Columns>(l + i, step, x + i, rows - i, rotations);
}

/// Makes the rotation of a column from its diagonal and the element of x there, and turns the diagonal.
/// False if it is refused: then nothing is changed.
template <Kind K>
BLA_BODY bool turn_diagonal(real* diagonal, double x, double tol, Rotation& rotation)
{
    const double t = x / *diagonal; // a NaN is not refused
    if (K == Kind::Hyperbolic && __builtin_fabs(t) >= 1.0 - tol)
        return false;
    const double c = __builtin_sqrt(K == Kind::Orthogonal ? t * t + 1.0 : 1.0 - t * t);
    *diagonal = *diagonal * c;
    rotation = {t, c};
    return true;
}

/// Takes the columns first..last-1 of a factor of order n; returns the number of the one that was
/// refused, counted from 1, or 0.
template <Kind K>
BLA_BODY int sweep_in_groups(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x,
                             double tol)
{
    constexpr int64_t Group = 4;
    for (int64_t j = first; j < last; j += Group) {
        const int64_t end = last - j < Group ? last : j + Group; // of the columns
        const int64_t below = end < n ? end : n;                 // first row under the square
        Rotation rotations[Group];
        int64_t k = j;
        for (; k < end; ++k) {
            real* const diagonal = l + k * step + k;
            if (!turn_diagonal<K>(diagonal, x[k], tol, rotations[k - j]))
                break;
            turn<K, 1>(diagonal + 1, step, x + k + 1, below - k - 1, &rotations[k - j]);
        }
        real *const rest = l + j * step + below, *const x_rest = x + below;
        switch (k - j) { // after a refusal the columns before it are finished
        case 1:
            turn<K, 1>(rest, step, x_rest, n - below, rotations);
            break;
        case 2:
            turn<K, 2>(rest, step, x_rest, n - below, rotations);
            break;
        case 3:
            turn<K, 3>(rest, step, x_rest, n - below, rotations);
            break;
        case 4:
            turn<K, 4>(rest, step, x_rest, n - below, rotations);
            break;
        }
        if (k < end)
            return static_cast<int>(k + 1);
    }
    return 0;
}

/// The same, one column after the other and the same code for all tiers: short columns gain nothing from
/// vectors.
template <Kind K>
[[gnu::noinline]] int sweep_plainly(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x,
                                    double tol)
{
    for (int64_t k = first; k < last; ++k) {
        real* const diagonal = l + k * step + k;
        Rotation rotation;
        if (!turn_diagonal<K>(diagonal, x[k], tol, rotation))
            return static_cast<int>(k + 1);
        turn_rows<K, 1>(diagonal + 1, step, x + k + 1, n - k - 1, &rotation);
    }
    return 0;
}

template <Kind K, bool Small>
BLA_BODY int sweep(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x, double tol)
{
    return Small ? sweep_plainly<K>(first, last, n, l, step, x, tol)
                 : sweep_in_groups<K>(first, last, n, l, step, x, tol);
}

/// Both kinds, each on its columns; returns what was refused, as above.
template <bool Small>
BLA_BODY int modify(bool add, int64_t n, int64_t leading, int64_t columns, real* l, int64_t step, real* x,
                    double tol)
{
    int refused = 0;
    for (int phase = 0; phase < 2 && refused == 0; ++phase) {
        const int64_t first = phase == 0 ? 0 : leading, last = phase == 0 ? leading : columns;
        refused = add == (phase == 0) ? sweep<Kind::Orthogonal, Small>(first, last, n, l, step, x, tol)
                                      : sweep<Kind::Hyperbolic, Small>(first, last, n, l, step, x, tol);
    }
    return refused;
}

} // namespace

BLA_TIERS_VRA(blac_cholupd_,
              (const char* job, const int* n, const int* nlead, const int* ncol, real* l, const int* ldl,
               real* x, const double* tol, int* info),
              (job, n, nlead, ncol, l, ldl, x, tol, info))
{
    *info = 0;
    const bool add = lsame_(job, "P", 1, 1);
    if (!add && !lsame_(job, "N", 1, 1))
        return;
    const int64_t leading = *nlead < *ncol ? *nlead : *ncol; // not bounded by n
    const int64_t columns = *n < *ncol ? *n : *ncol;
    if (leading < 1 && columns < 1)
        return;
    const int64_t order = *n, step = *ldl;
    if (order <= 8)
        *info = modify<true>(add, order, leading, columns, l, step, x, *tol);
    else
        Tier::apart([](int* refused, auto... all) BLA_INLINED { *refused = modify<false>(all...); }, info,
                    add, order, leading, columns, l, step, x, *tol);
}
