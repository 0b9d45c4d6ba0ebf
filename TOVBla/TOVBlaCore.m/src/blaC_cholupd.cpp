// SPDX-License-Identifier: BSD-3-Clause
// L·S·Lᵀ := L·S·Lᵀ ± x·xᵀ on the leading ncol columns of L, S = diag(+1 for nlead columns, then -1): a plane
// rotation a column, orthogonal where the signs of S and ± agree, hyperbolic where not.
//
// An element is divided by the cosine: multiplying with its reciprocal would give other last bits. What takes
// time is to wait: for a division, and for the rotation of a column, which needs what the column before made
// of its first element. So that element is turned first and the next rotation made at once, while the rest of
// the column follows. Columns too long for the first cache go four at a time, so that x and its rotations
// stay in registers. Whatever the order, an element of L or x goes through the same operations.
#include "blas.h"
#include "tiers.h"

namespace {

enum class Kind { Orthogonal, Hyperbolic };

struct Rotation
{
    double t, c;
};

/// Turns an element of a column and the element of x in its row, or as many of both as a vector holds.
template <Kind K, class Number>
BLA_BODY void turn(Number& element, Number& xi, const Rotation& rotation)
{
    const double t = rotation.t, c = rotation.c;
    element = K == Kind::Orthogonal ? (t * xi + element) / c : (element - t * xi) / c;
    xi = xi * c - element * t;
}

/// Turns rows of a column, one after the other.
template <Kind K>
BLA_BODY void turn_rows(real* column, real* x, int64_t rows, const Rotation& rotation)
{
    BLA_NO_OVERLAP
    for (int64_t i = 0; i < rows; ++i) {
        double element = column[i], xi = x[i];
        turn<K>(element, xi, rotation);
        column[i] = element;
        x[i] = xi;
    }
}

/// The same without vectors: x was stored element by element, and a vector loaded over two such stores waits
/// until they have reached the cache.
template <Kind K>
BLA_BODY void turn_rows_singly(real* column, real* x, int64_t rows, const Rotation& rotation)
{
    for (int64_t i = 0; i < rows; ++i) {
        double element = column[i], xi = x[i];
        turn<K>(element, xi, rotation);
        __asm__("" : "+x"(xi)); // a scalar, says this to the compiler
        column[i] = element;
        x[i] = xi;
    }
}

/// As many rows as a register of the tier holds, from or to a caller's array.
template <class Tier>
struct Rows
{
    typedef double Vector __attribute__((vector_size(Tier::Lanes * sizeof(double))));

    BLA_BODY void load(Vector& to, const real* from) { __builtin_memcpy(&to, from, sizeof to); }
    BLA_BODY void store(real* to, const Vector& from) { __builtin_memcpy(to, &from, sizeof from); }
};

/// Turns that many rows of a column; xi is x of these rows.
template <class Tier, Kind K>
BLA_BODY void turn_vector(real* column, typename Rows<Tier>::Vector& xi, const Rotation& rotation)
{
    typename Rows<Tier>::Vector element;
    Rows<Tier>::load(element, column);
    turn<K>(element, xi, rotation);
    Rows<Tier>::store(column, element);
}

template <class Tier, Kind K>
BLA_BODY void turn_vector(real* column, real* x, const Rotation& rotation)
{
    typename Rows<Tier>::Vector xi;
    Rows<Tier>::load(xi, x);
    turn_vector<Tier, K>(column, xi, rotation);
    Rows<Tier>::store(x, xi);
}

/// Turns the rest of a column, asking meanwhile for the same rows of the next, a cache line at a time: a
/// column is too short for the processor to notice by itself that it is being read. A prefetch cannot fault,
/// behind the last column neither.
template <class Tier, Kind K>
BLA_BODY void turn_column(real* column, int64_t step, real* x, int64_t rows, const Rotation& rotation)
{
    constexpr int64_t Lanes = Tier::Lanes, Line = 64 / sizeof *column;
    int64_t i = 0;
    for (; i + Line <= rows; i += Line) {
        __builtin_prefetch(column + step + i, 1);
        for (int64_t lane = 0; lane < Line; lane += Lanes)
            turn_vector<Tier, K>(column + i + lane, x + i + lane, rotation);
    }
    for (; i + Lanes <= rows; i += Lanes)
        turn_vector<Tier, K>(column + i, x + i, rotation);
    turn_rows<K>(column + i, x + i, rows - i, rotation);
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

/// Turns `rows` rows of four columns, many of them. Column q takes the vector of rows that column q-1 took a
/// step before: the four divisions of a step do not wait for one another.
template <class Tier, Kind K>
BLA_BODY void turn_four(real* l, int64_t step, real* x, int64_t rows, const Rotation (&rotations)[4])
{
    constexpr int64_t Lanes = Tier::Lanes;
    using Vector = typename Rows<Tier>::Vector;
    const auto enter = [=](int q, int64_t i, Vector& xi)
                           BLA_INLINED { turn_vector<Tier, K>(l + q * step + i, xi, rotations[q]); };
    Vector behind[4]; // x of the rows that are q vectors behind, on their way into column q
    for (int v = 0; v < 3; ++v) {
        Vector& xi = behind[3 - v];
        Rows<Tier>::load(xi, x + v * Lanes);
        for (int q = 0; q < 3 - v; ++q)
            enter(q, v * Lanes, xi);
    }
    int64_t i = 3 * Lanes;
    for (; i + Lanes <= rows; i += Lanes) {
        for (int64_t q = 4; q < 8; ++q)
            __builtin_prefetch(l + q * step + i, 1);
        Vector xi;
        Rows<Tier>::load(xi, x + i);
        enter(0, i, xi);
        for (int q = 1; q < 4; ++q)
            enter(q, i - q * Lanes, behind[q]);
        Rows<Tier>::store(x + i - 3 * Lanes, behind[3]);
        behind[3] = behind[2];
        behind[2] = behind[1];
        behind[1] = xi;
    }
    for (int v = 3; v > 0; --v) {
        for (int q = v; q < 4; ++q)
            enter(q, i - v * Lanes, behind[v]);
        Rows<Tier>::store(x + i - v * Lanes, behind[v]);
    }
    for (int q = 0; q < 4; ++q)
        turn_rows<K>(l + q * step + i, x + i, rows - i, rotations[q]);
}

/// Takes columns from `first` on, four at a time while they are long; moves `first` behind those it took.
/// Returns the number of the one that was refused, counted from 1, or 0.
template <class Tier, Kind K>
BLA_BODY int sweep_in_fours(int64_t& first, int64_t last, int64_t n, real* l, int64_t step, real* x,
                            double tol)
{
    constexpr int64_t Long = 512;
    for (; first + 4 <= last && n - first > Long; first += 4) {
        const int64_t below = first + 4; // first row under the square on the diagonal
        real *const rest = l + first * step + below, *const x_rest = x + below;
        Rotation rotations[4];
        for (int64_t q = 0; q < 4; ++q) {
            const int64_t k = first + q;
            real* const diagonal = l + k * step + k;
            if (!turn_diagonal<K>(diagonal, x[k], tol, rotations[q])) {
                for (int64_t p = 0; p < q; ++p) // the columns before it are finished
                    turn_column<Tier, K>(rest + p * step, step, x_rest, n - below, rotations[p]);
                return static_cast<int>(k + 1);
            }
            turn_rows<K>(diagonal + 1, x + k + 1, below - k - 1, rotations[q]);
        }
        turn_four<Tier, K>(rest, step, x_rest, n - below, rotations);
    }
    return 0;
}

/// Takes the columns first..last-1, each rotation made before the rest of the column in front of it is turned
/// by rest(column, x, rows, rotation). Returns as above.
template <Kind K, class Rest>
BLA_BODY int sweep_ahead(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x, double tol,
                         Rest rest)
{
    if (first >= last)
        return 0;
    Rotation rotation, following;
    if (!turn_diagonal<K>(l + first * step + first, x[first], tol, rotation))
        return static_cast<int>(first + 1);
    for (int64_t k = first + 1; k < last; ++k, rotation = following) {
        real* const before = l + (k - 1) * step;
        if (k < n) // there may be more columns than rows
            turn_rows<K>(before + k, x + k, 1, rotation);
        const bool taken = turn_diagonal<K>(before + step + k, x[k], tol, following);
        rest(before + k + 1, x + k + 1, n - k - 1, rotation);
        if (!taken)
            return static_cast<int>(k + 1);
    }
    rest(l + (last - 1) * step + last, x + last, n - last, rotation);
    return 0;
}

/// The same code for all tiers: short columns lose by vectors.
template <Kind K>
[[gnu::noinline]] int sweep_plainly(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x,
                                    double tol)
{
    return sweep_ahead<K>(first, last, n, l, step, x, tol,
                          [](real* column, real* from, int64_t rows, const Rotation& rotation)
                              BLA_INLINED { turn_rows_singly<K>(column, from, rows, rotation); });
}

template <class Tier, Kind K, bool Small>
BLA_BODY int sweep(int64_t first, int64_t last, int64_t n, real* l, int64_t step, real* x, double tol)
{
    if constexpr (Small)
        return sweep_plainly<K>(first, last, n, l, step, x, tol);
    const int refused = sweep_in_fours<Tier, K>(first, last, n, l, step, x, tol);
    if (refused)
        return refused;
    return sweep_ahead<K>(first, last, n, l, step, x, tol,
                          [step](real* column, real* from, int64_t rows, const Rotation& rotation)
                              BLA_INLINED { turn_column<Tier, K>(column, step, from, rows, rotation); });
}

/// Both kinds, each on its columns; returns what was refused, as above.
template <class Tier, bool Small>
BLA_BODY int modify(bool add, int64_t n, int64_t leading, int64_t columns, real* l, int64_t step, real* x,
                    double tol)
{
    int refused = 0;
    for (int phase = 0; phase < 2 && refused == 0; ++phase) {
        const int64_t first = phase == 0 ? 0 : leading, last = phase == 0 ? leading : columns;
        refused = add == (phase == 0) ? sweep<Tier, Kind::Orthogonal, Small>(first, last, n, l, step, x, tol)
                                      : sweep<Tier, Kind::Hyperbolic, Small>(first, last, n, l, step, x, tol);
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
        *info = modify<Tier, true>(add, order, leading, columns, l, step, x, *tol);
    else
        Tier::apart([](int* refused, auto... all) BLA_INLINED { *refused = modify<Tier, false>(all...); },
                    info, add, order, leading, columns, l, step, x, *tol);
}
