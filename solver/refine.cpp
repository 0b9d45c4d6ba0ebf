// SPDX-License-Identifier: BSD-3-Clause
#include "refine.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// A backward error of rounding alone.
constexpr double rounding = 0x1p-52;
// Above this a slow gain is a gain; below, where rounding is what is left, a step must halve the error.
constexpr double nearRounding = 1e-10;
// The most that rounding leaves, for rows however long.
constexpr double roundings = 0x1p-48;

double relativeResidual(double normA, const double* r, const double* x, const double* b, int n)
{
    const double norm = maxNorm(r, n);
    const double scale = normA * maxNorm(x, n) + maxNorm(b, n);
    const double relative = norm == 0.0 ? 0.0 : std::isfinite(scale) ? norm / scale : HUGE_VAL;
    return std::isnan(relative) ? HUGE_VAL : relative;
}

// Those columns that are named.
Vectors selected(const Vectors& v, const std::vector<int>& columns)
{
    Vectors result(v.n, static_cast<int>(columns.size()));
    for (int k = 0; k < result.columns; ++k)
        std::copy_n(v.column(columns[k]), v.n, result.column(k));
    return result;
}

} // namespace

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

Refined solveRefined(const SparseMatrix& a, const Vectors& b, const Apply& apply, const Effort& effort)
{
    Vectors x = b;
    apply(x);
    return refineFrom(a, b, std::move(x), apply, effort);
}

Refined refineFrom(const SparseMatrix& a, const Vectors& b, Vectors start, const Apply& apply,
                   const Effort& effort)
{
    Refined best;
    best.x = std::move(start);
    Vectors r(b.n, b.columns);
    std::vector<BackwardError> error(b.columns);
    for (int j = 0; j < b.columns; ++j)
        error[j] = backwardError(a, b.column(j), best.x.column(j), r.column(j));

    std::vector<int> active(b.columns);
    std::iota(active.begin(), active.end(), 0);
    std::vector<double> x(b.n), next(b.n);
    int plain = 0;
    for (int step = 1; step <= effort.steps; ++step) {
        std::erase_if(active, [&](int j) { return error[j].sum() <= rounding; });
        if (active.empty())
            break;
        Vectors correction = selected(r, active);
        apply(correction);
        plain = step;
        std::vector<int> improving;
        for (int k = 0; k < correction.columns; ++k) {
            const int j = active[k];
            std::transform(correction.column(k), correction.column(k) + b.n, best.x.column(j), x.begin(),
                           std::plus<>());
            const BackwardError reached = backwardError(a, b.column(j), x.data(), next.data());
            if (!(reached.sum() < error[j].sum()))
                continue;
            if (reached.sum() <= (error[j].sum() > nearRounding ? 0.9 : 0.5) * error[j].sum())
                improving.push_back(j);
            std::copy(x.begin(), x.end(), best.x.column(j));
            std::copy(next.begin(), next.end(), r.column(j));
            error[j] = reached;
            best.steps = step;
        }
        active = improving;
    }

    for (int j = 0; j < b.columns; ++j) {
        int steps = plain;
        for (int cycle = 0; cycle < effort.cycles && error[j].sum() > roundings; ++cycle) {
            std::copy_n(best.x.column(j), b.n, x.begin());
            steps += krylovCycle(a, b.column(j), x.data(), apply);
            const BackwardError reached = backwardError(a, b.column(j), x.data(), next.data());
            if (!(reached.sum() < error[j].sum()))
                break;
            const bool gained = reached.sum() <= 0.5 * error[j].sum();
            std::copy(x.begin(), x.end(), best.x.column(j));
            std::copy(next.begin(), next.end(), r.column(j));
            error[j] = reached;
            best.steps = std::max(best.steps, steps);
            if (!gained)
                break;
        }
    }

    const double normA = normInf(a);
    for (int j = 0; j < b.columns; ++j) {
        best.backward.omega1 = std::max(best.backward.omega1, error[j].omega1);
        best.backward.omega2 = std::max(best.backward.omega2, error[j].omega2);
        best.residual =
            std::max(best.residual, relativeResidual(normA, r.column(j), best.x.column(j), b.column(j), b.n));
    }
    return best;
}

bool solveRoughly(const SparseMatrix& a, Vectors& v, const Apply& apply)
{
    constexpr double enough = 0x1p-7;
    constexpr int most = 20;
    Vectors x = v, r(v.n, v.columns);
    apply(x);
    double before = HUGE_VAL;
    bool converged = false;
    for (int step = 0; step < most && !converged; ++step) {
        multiply(a, x.value.data(), r.value.data(), x.columns);
        std::transform(v.value.begin(), v.value.end(), r.value.begin(), r.value.begin(), std::minus<>());
        apply(r);
        double correction = 0.0;
        for (int j = 0; j < x.columns; ++j) {
            const double norm = maxNorm(r.column(j), x.n);
            const double relative = norm == 0.0 ? 0.0 : norm / maxNorm(x.column(j), x.n);
            correction = std::isnan(relative) ? HUGE_VAL : std::max(correction, relative);
        }
        if (!(correction <= 0.7 * before) || !std::isfinite(correction))
            break;
        std::transform(x.value.begin(), x.value.end(), r.value.begin(), x.value.begin(), std::plus<>());
        before = correction;
        converged = correction <= enough;
    }
    if (converged)
        v = std::move(x);
    return converged;
}
