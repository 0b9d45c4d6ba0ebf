// SPDX-License-Identifier: BSD-3-Clause
#include "scaling.h"

#include <algorithm>
#include <cmath>

double nearestPowerOfTwo(double x)
{
    return std::exp2(std::clamp(std::round(std::log2(x)), -500.0, 500.0));
}

// Simultaneous scaling of rows and columns by the inverse square roots of the row maxima (Ruiz, 2001).
std::vector<double> equilibrate(const SparseMatrix& a)
{
    std::vector<double> s(a.n, 1.0), largest(a.n);
    for (int sweep = 0; sweep < 6; ++sweep) {
        for (int i = 0; i < a.n; ++i) {
            largest[i] = 0.0;
            for (int p = a.start[i]; p < a.start[i + 1]; ++p)
                largest[i] = std::max(largest[i], std::fabs(a.value[p]) * s[a.column[p]] * s[i]);
        }
        for (int i = 0; i < a.n; ++i)
            if (largest[i] > 0.0)
                s[i] = nearestPowerOfTwo(s[i] / std::sqrt(largest[i]));
    }
    return s;
}
