// SPDX-License-Identifier: BSD-3-Clause
#include "bounds.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

// LAPACK: estimates the 1-norm of a matrix B. Asks for x := B*x (kase 1) and x := B^T*x (kase 2) until kase
// is 0; all that it remembers is in v, isgn and isave.
extern "C" void dlacn2_(const int* n, double* v, double* x, int* isgn, double* est, int* kase, int* isave);

namespace {

// A residual may come out small by chance, and what was rounded to a number was not exactly that number.
constexpr double unit = 0x1p-53;

void scaleBy(const std::vector<double>& factor, Vectors& x)
{
    std::transform(x.value.begin(), x.value.end(), factor.begin(), x.value.begin(), std::multiplies<>());
}

// The largest scales over all columns, beside max w_i*|x_i|.
Scales scalesOf(const SparseMatrix& a, const Vectors& b, const Vectors& x, const std::vector<double>& weight,
                BackwardError& backward)
{
    const std::vector<double> zero(a.n, 0.0);
    Scales largest{zero, zero}, scales{zero, zero};
    std::vector<double> work(a.n);
    backward = {unit, unit};
    for (int j = 0; j < x.columns; ++j) {
        const BackwardError error =
            backwardError(a, b.column(j), x.column(j), work.data(), weight.data(), &scales);
        backward.omega1 = std::max(backward.omega1, error.omega1);
        backward.omega2 = std::max(backward.omega2, error.omega2);
        std::transform(weight.begin(), weight.end(), x.column(j), work.begin(), std::multiplies<>());
        const double size = maxNorm(work.data(), a.n);
        if (size == 0.0 && maxNorm(b.column(j), a.n) == 0.0)
            continue; // 0 solves A*x = 0, and is exact
        for (int i = 0; i < a.n; ++i) {
            largest.first[i] = std::max(largest.first[i], scales.first[i] / size);
            largest.second[i] = std::max(largest.second[i], scales.second[i] / size);
        }
    }
    return largest;
}

// M is A for the purpose of an estimate where it finds known solutions again this well.
constexpr double small = 0x1p-7;
constexpr Effort refinements{20, 10};
// What GMRES finds with an M that is far from A counts where it is this certain: the recovery, and the
// backward error of a solution beside the estimate that follows from it. Of a singular A the product of both
// is about 1: the smallest solution with that error comes out.
constexpr double certain = 0x1p-10;

// Random signs and sizes from 1/2 to 1.
Vectors known(int n, int seed)
{
    std::mt19937_64 random(seed);
    Vectors w(n, 1);
    for (double& value : w.value) {
        const std::uint64_t bits = random();
        value = std::ldexp(static_cast<double>(bits >> 12), -53) + 0.5;
        value = bits & 1 ? -value : value;
    }
    return w;
}

// max |x - w| / max |w|
double distance(Vectors x, const Vectors& w)
{
    std::transform(x.value.begin(), x.value.end(), w.value.begin(), x.value.begin(), std::minus<>());
    return maxNorm(x.value.data(), x.n) / maxNorm(w.value.data(), w.n);
}

} // namespace

double ErrorBound::forward() const
{
    const double bound = std::max(backward.omega1 * cond1 + backward.omega2 * cond2, recovery);
    return std::isfinite(bound) ? bound : HUGE_VAL;
}

// The maximum norm of W*A^-1*S is the 1-norm of its transpose B = S*A^-T*W.
double weightedInverseNorm(const std::vector<double>& weight, const std::vector<double>& s,
                           const Inverse& inverse)
{
    const int n = static_cast<int>(s.size());
    if (std::all_of(s.begin(), s.end(), [](double v) { return v == 0.0; }))
        return 0.0;
    Vectors x(n, 1);
    std::vector<double> v(n);
    std::vector<int> sign(n);
    double estimate = 0.0;
    int kase = 0, state[3] = {};
    for (;;) {
        dlacn2_(&n, v.data(), x.value.data(), sign.data(), &estimate, &kase, state);
        if (kase == 0)
            return std::isfinite(estimate) ? estimate : HUGE_VAL;
        scaleBy(kase == 1 ? weight : s, x);
        if (!(kase == 1 ? inverse.applyTransposed : inverse.apply)(x))
            return HUGE_VAL;
        scaleBy(kase == 1 ? s : weight, x);
        if (!std::isfinite(maxNorm(x.value.data(), n))) // what is asked for might never end
            return HUGE_VAL;
    }
}

double recoveryError(const SparseMatrix& a, const Apply& solve)
{
    const Vectors w = known(a.n, 2);
    Vectors x(a.n, 1);
    multiply(a, w.value.data(), x.value.data(), 1);
    solve(x);
    return distance(x, w);
}

bool Recovery::regular() const
{
    return error <= small;
}

bool Recovery::good() const
{
    return regular() && residual <= 1e-13;
}

bool Recovery::better(const Recovery& other) const
{
    return regular() && (!other.regular() || residual < other.residual);
}

Recovery recover(const SparseMatrix& a, const Apply& solve, const Effort& effort)
{
    Recovery worst;
    for (int seed : {2, 3, 4}) { // a singular A may give one again by chance
        const Vectors w = known(a.n, seed);
        Vectors b(a.n, 1);
        multiply(a, w.value.data(), b.value.data(), 1);
        const Refined refined = solveRefined(a, b, solve, effort);
        const double error = distance(refined.x, w);
        worst.error = error <= worst.error ? worst.error : error; // NaN too
        worst.residual = refined.residual <= worst.residual ? worst.residual : refined.residual;
        if (!worst.regular())
            break;
    }
    return worst;
}

ErrorBound boundError(const SparseMatrix& a, const Vectors& b, const Vectors& x,
                      const std::vector<double>& weight, const Factorised& m)
{
    ErrorBound bound;
    const Scales scales = scalesOf(a, b, x, weight, bound.backward);
    const bool near = !m.treated && recoveryError(a, m.solve) <= small;
    const auto recovered = [&](const Effort& effort) {
        return recoveryError(a, [&](Vectors& v) { v = solveRefined(a, v, m.solve, effort).x; });
    };
    if (!near)
        bound.recovery = recovered({refinements.steps, 0});
    const bool far = !(bound.recovery <= small);
    if (far)
        bound.recovery = recovered(refinements);
    if (!std::isfinite(bound.backward.sum()) || !(bound.recovery <= (far ? certain : small))) {
        bound.cond1 = bound.cond2 = HUGE_VAL;
        return bound;
    }
    const SparseMatrix at = near || a.symmetric ? SparseMatrix() : transposed(a);
    double rough = 0.0;
    const auto solution = [near, far, &rough](const SparseMatrix& matrix, const Apply& solve) {
        return [near, far, &rough, &matrix, &solve](Vectors& v) {
            if (near) {
                solve(v);
                return true;
            }
            if (!far && solveRoughly(matrix, v, solve))
                return true;
            Refined refined = solveRefined(matrix, v, solve, refinements);
            v = std::move(refined.x);
            rough = std::max(rough, refined.backward.sum());
            return std::isfinite(rough);
        };
    };
    const Inverse inverse{solution(a, m.solve), solution(a.symmetric ? a : at, m.solveTransposed)};
    bound.cond1 = weightedInverseNorm(weight, scales.first, inverse);
    bound.cond2 = weightedInverseNorm(weight, scales.second, inverse);
    // The conditions add up to 1 at least: an estimate below comes from solutions that are none.
    if (!(rough * std::max(bound.cond1 + bound.cond2, 1.0) <= certain))
        bound.cond1 = bound.cond2 = HUGE_VAL;
    return bound;
}
