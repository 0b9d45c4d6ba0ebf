// SPDX-License-Identifier: BSD-3-Clause
#include "krylov.h"

#include "backward_error.h"

#include <algorithm>
#include <cmath>

namespace {

// Vectors of a cycle.
constexpr int longest = 30;
// A residual beside its scales that needs no more work.
constexpr double rounding = 0x1p-54;

double product(const double* x, const double* y, int n)
{
    double sum = 0.0;
    for (int i = 0; i < n; ++i)
        sum += x[i] * y[i];
    return sum;
}

// y := y + alpha*x
void add(double alpha, const double* x, double* y, int n)
{
    for (int i = 0; i < n; ++i)
        y[i] += alpha * x[i];
}

// y := y / |y|, and |y|; a y of nothing stays
double normalise(double* y, int n)
{
    const double norm = std::sqrt(product(y, y, n));
    if (norm > 0.0)
        std::transform(y, y + n, y, [norm](double value) { return value / norm; });
    return norm;
}

// The least-squares problem min |norm*e1 - H*y| of a Hessenberg matrix that grows by columns, kept triangular
// by rotations.
class Hessenberg
{
public:
    explicit Hessenberg(double norm) { right_[0] = norm; }

    // `h` of columns() + 2 entries; the norm that y leaves now.
    double append(double* h)
    {
        for (int i = 0; i < columns_; ++i)
            rotate(i, h[i], h[i + 1]);
        const double length = std::hypot(h[columns_], h[columns_ + 1]);
        cosine_[columns_] = length > 0.0 ? h[columns_] / length : 1.0;
        sine_[columns_] = length > 0.0 ? h[columns_ + 1] / length : 0.0;
        rotate(columns_, h[columns_], h[columns_ + 1]);
        std::copy_n(h, columns_ + 1, triangle_[columns_]);
        right_[columns_ + 1] = 0.0;
        rotate(columns_, right_[columns_], right_[columns_ + 1]);
        ++columns_;
        return std::fabs(right_[columns_]);
    }
    int columns() const { return columns_; }
    // y, of columns() entries
    const double* solve()
    {
        for (int k = columns_ - 1; k >= 0; --k) {
            right_[k] = triangle_[k][k] == 0.0 ? 0.0 : right_[k] / triangle_[k][k];
            for (int i = 0; i < k; ++i)
                right_[i] -= triangle_[k][i] * right_[k];
        }
        return right_;
    }

private:
    void rotate(int k, double& above, double& below) const
    {
        const double turned = cosine_[k] * above + sine_[k] * below;
        below = cosine_[k] * below - sine_[k] * above;
        above = turned;
    }

    int columns_ = 0;
    double triangle_[longest][longest], right_[longest + 1], cosine_[longest], sine_[longest];
};

} // namespace

int krylovCycle(const SparseMatrix& a, const double* b, double* x, const Apply& apply)
{
    const int n = a.n;
    Vectors v(n, longest + 1), z(n, longest), one(n, 1);
    Scales s{std::vector<double>(n), std::vector<double>(n)};
    backwardError(a, b, x, v.column(0), nullptr, &s);
    std::transform(s.first.begin(), s.first.end(), s.second.begin(), s.first.begin(), std::plus<>());
    const auto unscale = [&](double* y) {
        for (int i = 0; i < n; ++i)
            y[i] = s.first[i] > 0.0 ? y[i] / s.first[i] : 0.0;
    };
    unscale(v.column(0));
    const double norm = normalise(v.column(0), n);
    Hessenberg hessenberg(norm);
    int solves = 0;
    for (double left = norm; solves < longest && left > rounding && std::isfinite(left);) {
        const double* last = v.column(solves);
        double* next = v.column(solves + 1);
        std::transform(s.first.begin(), s.first.end(), last, one.value.begin(), std::multiplies<>());
        apply(one);
        std::copy_n(one.column(0), n, z.column(solves));
        multiply(a, one.value.data(), next, 1);
        unscale(next);
        double h[longest + 1];
        for (int k = 0; k <= solves; ++k) {
            h[k] = product(v.column(k), next, n);
            add(-h[k], v.column(k), next, n);
        }
        h[++solves] = normalise(next, n);
        if (!std::isfinite(h[solves]))
            break;
        left = hessenberg.append(h);
    }
    const double* y = hessenberg.solve();
    for (int k = 0; k < hessenberg.columns(); ++k)
        add(y[k], z.column(k), x, n);
    return solves;
}
