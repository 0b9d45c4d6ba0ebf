// SPDX-License-Identifier: BSD-3-Clause
// Fronts of order 3 through the eliminations, with what each array holds before and after.
#include <TOVBlaModule.h>

#include <cstdio>
#include <cstring>

namespace {

bool same(const char* what, const double* actual, const double* expected, int count)
{
    const bool equal = std::memcmp(actual, expected, sizeof(double) * static_cast<std::size_t>(count)) == 0;
    std::printf("%-32s %s\n", what, equal ? "as shown" : "DIFFERS");
    return equal;
}

bool symmetric()
{
    //! [symmetric]
    // A = L·D·Lᵀ. Columns stand in lines here, as in memory; 99 is never read.
    double a[9] = {4,  2,  -1,    // a11 a21 a31
                   99, 3,  0.5,   //     a22 a32
                   99, 99, 8.75}; //         a33
    double d[3], dinv[3];
    const int n = 3;
    const double tol = 1e-14;
    blac_selim_small_(&n, a, &n, d, dinv, &tol);

    const double factors[9] = {4,     2,   -1, // p1       l21·p1  l31·p1
                               0.5,   2,   1,  // l21      p2      l32·p2
                               -0.25, 0.5, 8}; // l31      l32     p3
    const double pivots[3] = {4, 2, 8}, reciprocals[3] = {0.25, 0.5, 0.125};
    //! [symmetric]
    return same("selim_small: front", a, factors, 9) && same("selim_small: d", d, pivots, 3) &&
           same("selim_small: dinv", dinv, reciprocals, 3);
}

bool symmetric_in_panels()
{
    //! [panels]
    // The same front in panels of two columns: the multipliers of the last row are not copied above the
    // diagonal, because they lie outside the diagonal block of their panel.
    double a[9] = {4,  2,  -1,    //
                   99, 3,  0.5,   //
                   99, 99, 8.75}; //
    double d[3], dinv[3];
    const int n = 3, nb = 2;
    const double tol = 1e-14;
    blac_selim_(&n, &nb, &tol, a, &n, d, dinv);

    const double factors[9] = {4,   2,  -1, // p1       l21·p1  l31·p1
                               0.5, 2,  1,  // l21      p2      l32·p2
                               99,  99, 8}; // untouched        p3
    //! [panels]
    return same("selim, nb = 2: front", a, factors, 9);
}

bool unsymmetric()
{
    //! [unsymmetric]
    // A = L·D·U. All of the square is read.
    double a[9] = {4, 2,   -1,   // a11 a21 a31
                   1, 2.5, 0.75, // a12 a22 a32
                   2, -1,  6.5}; // a13 a23 a33
    double d[3], dinv[3];
    const int n = 3;
    const double tol = 1e-14;
    blac_uelim_small_(&n, a, &n, d, dinv, &tol);

    const double factors[9] = {4,    2,  -1, // p1       l21·p1  l31·p1
                               0.25, 2,  1,  // u12      p2      l32·p2
                               0.5,  -1, 8}; // u13      u23     p3
    const double pivots[3] = {4, 2, 8};
    //! [unsymmetric]
    return same("uelim_small: front", a, factors, 9) && same("uelim_small: d", d, pivots, 3);
}

bool tiny_pivot()
{
    //! [tiny]
    // The first pivot is smaller than tol. It becomes 1e36: its unknown is out of the game, and the rest of
    // the front is eliminated as if row and column 1 were not there.
    double a[9] = {1e-20, 2,  -1, //
                   99,    4,  2,  //
                   99,    99, 5}; //
    double d[3], dinv[3];
    const int n = 3;
    const double tol = 1e-14;
    blac_selim_small_(&n, a, &n, d, dinv, &tol);

    const double pivots[3] = {1e36, 4, 4}, reciprocals[3] = {1e-36, 0.25, 0.25};
    //! [tiny]
    return same("replaced pivot: d", d, pivots, 3) && same("replaced pivot: dinv", dinv, reciprocals, 3);
}

bool regularised()
{
    //! [regularised]
    // A tiny pivot is moved up by reg(1) = 1 here (down, were negpiv(1) = 1). What was factorised is A + E
    // with E = diag(-dcorr) = diag(1, 0, 0).
    double a[9] = {0,  2,  -1, //
                   99, 5,  2,  //
                   99, 99, 5}; //
    double d[3], dinv[3], dcorr[3];
    const double tol[3] = {1e-14, 1e-14, 1e-14}, reg[3] = {1, 1, 1};
    const int negpiv[3] = {0, 0, 0};
    const int n = 3, nb = 3;
    blac_selim_reg_(&n, &nb, a, &n, d, dinv, tol, negpiv, reg, dcorr);

    const double pivots[3] = {1, 1, -12}, corrections[3] = {-1, 0, 0};
    //! [regularised]
    return same("shifted pivot: d", d, pivots, 3) && same("shifted pivot: dcorr", dcorr, corrections, 3);
}

} // namespace

int main()
{
    return symmetric() && symmetric_in_panels() && unsymmetric() && tiny_pivot() && regularised() ? 0 : 1;
}
