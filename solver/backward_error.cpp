// SPDX-License-Identifier: BSD-3-Clause
#include "backward_error.h"

#include <algorithm>
#include <cmath>

namespace {

// r/s, where nothing beside nothing is no error and what is not finite is not a number to trust.
double quotient(double r, double s)
{
    const double q = r == 0.0 ? 0.0 : r / s;
    return std::isfinite(s) && !std::isnan(q) ? q : HUGE_VAL;
}

} // namespace

BackwardError backwardError(const SparseMatrix& a, const double* b, const double* x, double* r,
                            const double* weight, Scales* scales)
{
    double largest = 0.0;
    for (int i = 0; i < a.n; ++i) {
        const double size = std::fabs(x[i]) * (weight ? weight[i] : 1.0);
        largest = std::isnan(size) ? HUGE_VAL : std::max(largest, size);
    }
    const double enough = 1000.0 * 0x1p-53 * a.n;
    BackwardError error;
    for (int i = 0; i < a.n; ++i) {
        double product = 0.0, moduli = 0.0, row = 0.0, entry = 0.0;
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p) {
            const int j = a.column[p];
            const double term = a.value[p] * x[j];
            const double modulus = std::fabs(a.value[p]) / (weight ? weight[j] : 1.0);
            product += term;
            moduli += std::fabs(term);
            row += modulus;
            entry = std::max(entry, modulus);
        }
        r[i] = b[i] - product;
        const double s = moduli + std::fabs(b[i]);
        const bool first = s > enough * (entry * largest + std::fabs(b[i]));
        const double other = moduli + row * largest;
        double& omega = first ? error.omega1 : error.omega2;
        omega = std::max(omega, quotient(std::fabs(r[i]), first ? s : other));
        if (scales) {
            scales->first[i] = first ? s : 0.0;
            scales->second[i] = first ? 0.0 : other;
        }
    }
    return error;
}
