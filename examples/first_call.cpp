// SPDX-License-Identifier: BSD-3-Clause
// Factorise a small symmetric matrix and solve a system with it.
#include <TOVBlaModule.h>

#include <cstdio>

int main()
{
    // Column-major; only the lower triangle is read.
    double a[9] = {4, 1, 2, //
                   0, 5, 1, //
                   0, 0, 6};
    double x[3] = {12, 14, 22}; // the right-hand side, then the solution (1, 2, 3)
    double d[3], dinv[3];
    const int n = 3, columns = 1;
    const double tolerance = 1e-14, one = 1.0;

    // A = L*D*L^T: a holds L*D from the diagonal down, and L^T (unit diagonal) above it.
    blac_selim_small_(&n, a, &n, d, dinv, &tolerance);
    blac_dtrsm_("L", "L", "N", "N", &n, &columns, &one, a, &n, x, &n); // x := (L*D)^-1 * x
    blac_dtrsm_("L", "U", "N", "U", &n, &columns, &one, a, &n, x, &n); // x := L^-T * x

    std::printf("pivots   %g %g %g\n", d[0], d[1], d[2]);
    std::printf("solution %g %g %g\n", x[0], x[1], x[2]);
    for (int i = 0; i < n; ++i)
        if (!(x[i] > i + 1 - 1e-14 && x[i] < i + 1 + 1e-14))
            return 1;
    return 0;
}
