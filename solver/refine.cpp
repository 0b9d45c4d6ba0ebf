// SPDX-License-Identifier: BSD-3-Clause
#include "refine.h"

#include <algorithm>
#include <cmath>

namespace {

// A NaN anywhere makes the norm infinite.
double maxNorm(const double* x, int n)
{
    double norm = 0.0;
    for (int i = 0; i < n; ++i) {
        if (std::isnan(x[i]))
            return HUGE_VAL;
        norm = std::max(norm, std::fabs(x[i]));
    }
    return norm;
}

// What rounding leaves of a residual.
constexpr double roundingResidual = 0x1p-51;

// r := b - A*x; returns the relative residual
double residual(const SparseMatrix& a, double normA, const Vectors& b, const Vectors& x, Vectors& r)
{
    multiply(a, x.value.data(), r.value.data(), x.columns);
    double worst = 0.0;
    for (int j = 0; j < x.columns; ++j) {
        for (int i = 0; i < x.n; ++i)
            r.column(j)[i] = b.column(j)[i] - r.column(j)[i];
        const double norm = maxNorm(r.column(j), x.n);
        const double scale = normA * maxNorm(x.column(j), x.n) + maxNorm(b.column(j), x.n);
        const double relative = norm == 0.0 ? 0.0 : std::isfinite(scale) ? norm / scale : HUGE_VAL;
        worst = std::max(worst, std::isnan(relative) ? HUGE_VAL : relative);
    }
    return worst;
}

} // namespace

Refined solveRefined(const SparseMatrix& a, const Vectors& b, const std::function<void(Vectors&)>& apply,
                     int maxSteps)
{
    const double normA = normInf(a);
    Refined best;
    best.x = b;
    apply(best.x);
    Vectors r(b.n, b.columns), x;
    best.residual = residual(a, normA, b, best.x, r);
    bool known = false; // the correction is that of an answer which is right up to rounding
    for (int step = 1; step <= maxSteps && best.residual > 0.0; ++step) {
        apply(r);
        x = best.x;
        double correction = 0.0;
        for (int j = 0; j < x.columns; ++j) {
            correction = std::max(correction, maxNorm(r.column(j), x.n) / maxNorm(x.column(j), x.n));
            for (int i = 0; i < x.n; ++i)
                x.column(j)[i] += r.column(j)[i];
        }
        const double reached = residual(a, normA, b, x, r);
        // Where nothing but rounding is left to correct, one correction may be small by chance.
        best.correction = known ? std::max(best.correction, correction) : correction;
        known = best.residual <= roundingResidual;
        if (!(reached < best.residual))
            break;
        const bool slow = reached > 0.5 * best.residual;
        best.x = x;
        best.residual = reached;
        best.steps = step;
        if (slow)
            break;
    }
    return best;
}
