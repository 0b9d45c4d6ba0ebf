// SPDX-License-Identifier: BSD-3-Clause
#include "krylov.h"

#include "backward_error.h"
#include "hessenberg.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

namespace {

constexpr int longest = Hessenberg::longest;
// A residual beside its scales that needs no more work.
constexpr double rounding = 0x1p-54;

double product(const std::vector<double>& x, const std::vector<double>& y)
{
    return std::inner_product(x.begin(), x.end(), y.begin(), 0.0);
}

// y := y + alpha*x
void add(double alpha, const std::vector<double>& x, std::vector<double>& y)
{
    std::transform(x.begin(), x.end(), y.begin(), y.begin(),
                   [alpha](double xi, double yi) { return yi + alpha * xi; });
}

// y := y / |y|, and |y|; a y of nothing stays
double normalise(std::vector<double>& y)
{
    const double norm = std::sqrt(product(y, y));
    if (norm > 0.0)
        for (double& value : y)
            value /= norm;
    return norm;
}

} // namespace

int krylovCycle(const SparseMatrix& a, const double* b, double* x, const Apply& apply)
{
    const int n = a.n;
    Scales s{std::vector<double>(n), std::vector<double>(n)};
    std::vector<double> r(n);
    backwardError(a, b, x, r.data(), nullptr, &s);
    std::transform(s.first.begin(), s.first.end(), s.second.begin(), s.first.begin(), std::plus<>());
    const auto unscale = [&](std::vector<double>& y) { // an equation of nothing but zeros holds
        std::transform(y.begin(), y.end(), s.first.begin(), y.begin(),
                       [](double value, double scale) { return scale > 0.0 ? value / scale : 0.0; });
    };
    unscale(r);
    const double norm = normalise(r);
    Hessenberg hessenberg(norm);
    std::vector<std::vector<double>> v, z;
    for (double left = norm; left > rounding && std::isfinite(left) && hessenberg.columns() < longest;) {
        Vectors next(n, 1);
        std::transform(s.first.begin(), s.first.end(), r.begin(), next.value.begin(), std::multiplies<>());
        v.push_back(r);
        apply(next);
        multiply(a, next.value.data(), r.data(), 1);
        z.push_back(std::move(next.value));
        unscale(r);
        double h[longest + 1];
        for (std::size_t k = 0; k < v.size(); ++k) {
            h[k] = product(v[k], r);
            add(-h[k], v[k], r);
        }
        h[v.size()] = normalise(r);
        if (!std::isfinite(h[v.size()]))
            break;
        left = hessenberg.append(h);
    }
    const double* y = hessenberg.solve();
    for (int k = 0; k < hessenberg.columns(); ++k)
        for (int i = 0; i < n; ++i)
            x[i] += y[k] * z[k][i];
    return static_cast<int>(z.size());
}
