// SPDX-License-Identifier: BSD-3-Clause
// Small dense systems in a format twice as long: what an answer is held against.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace fuzz {

__extension__ typedef __float128 Long;

class Dense
{
public:
    explicit Dense(int order = 0) : n(order), a_(static_cast<std::size_t>(order) * order, 0.0) {}
    double& operator()(int i, int j) { return a_[static_cast<std::size_t>(i) * n + j]; }
    double operator()(int i, int j) const { return a_[static_cast<std::size_t>(i) * n + j]; }

    int n;

private:
    std::vector<double> a_;
};

struct Solution
{
    bool regular = true; // no pivot vanished beside the largest
    std::vector<double> x;
};

/// By Gauss's elimination with complete pivoting.
inline Solution solved(const Dense& a, const std::vector<double>& b, bool transposed = false)
{
    const int n = a.n;
    const auto at = [n](int i, int j) { return static_cast<std::size_t>(i) * (n + 1) + j; };
    const auto size = [](Long v) { return v < 0 ? -v : v; };
    std::vector<Long> m(static_cast<std::size_t>(n) * (n + 1));
    std::vector<int> unknown(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        unknown[static_cast<std::size_t>(i)] = i;
        m[at(i, n)] = b[static_cast<std::size_t>(i)];
        for (int j = 0; j < n; ++j)
            m[at(i, j)] = transposed ? a(j, i) : a(i, j);
    }
    Solution s{true, std::vector<double>(static_cast<std::size_t>(n), 0.0)};
    Long first = 0;
    for (int k = 0; k < n; ++k) {
        int row = k, column = k;
        for (int i = k; i < n; ++i)
            for (int j = k; j < n; ++j)
                if (size(m[at(i, j)]) > size(m[at(row, column)]))
                    row = i, column = j;
        first = k == 0 ? size(m[at(row, column)]) : first;
        if (size(m[at(row, column)]) <= first * 1e-28) {
            s.regular = false;
            return s;
        }
        for (int j = 0; j <= n; ++j)
            std::swap(m[at(k, j)], m[at(row, j)]);
        for (int i = 0; i < n; ++i)
            std::swap(m[at(i, k)], m[at(i, column)]);
        std::swap(unknown[static_cast<std::size_t>(k)], unknown[static_cast<std::size_t>(column)]);
        for (int i = k + 1; i < n; ++i) {
            const Long factor = m[at(i, k)] / m[at(k, k)];
            for (int j = k; j <= n; ++j)
                m[at(i, j)] -= factor * m[at(k, j)];
        }
    }
    std::vector<Long> x(static_cast<std::size_t>(n));
    for (int k = n - 1; k >= 0; --k) {
        Long sum = m[at(k, n)];
        for (int j = k + 1; j < n; ++j)
            sum -= m[at(k, j)] * x[static_cast<std::size_t>(j)];
        x[static_cast<std::size_t>(k)] = sum / m[at(k, k)];
        s.x[static_cast<std::size_t>(unknown[static_cast<std::size_t>(k)])] =
            static_cast<double>(x[static_cast<std::size_t>(k)]);
    }
    return s;
}

/// What is left of A for `kept` where all others are eliminated, one by one; by rows.
inline std::vector<double> condensed(const Dense& a, const std::vector<int>& kept)
{
    const int n = a.n;
    const auto at = [n](int i, int j) { return static_cast<std::size_t>(i) * n + j; };
    std::vector<Long> m(static_cast<std::size_t>(n) * n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            m[at(i, j)] = a(i, j);
    std::vector<char> open(static_cast<std::size_t>(n), 1);
    for (int k = 0; k < n; ++k) {
        if (std::find(kept.begin(), kept.end(), k) != kept.end())
            continue;
        open[static_cast<std::size_t>(k)] = 0;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                if (open[static_cast<std::size_t>(i)] && open[static_cast<std::size_t>(j)])
                    m[at(i, j)] -= m[at(i, k)] * m[at(k, j)] / m[at(k, k)];
    }
    std::vector<double> c;
    for (int i : kept)
        for (int j : kept)
            c.push_back(static_cast<double>(m[at(i, j)]));
    return c;
}

/// max |x - y| / max |y|, 0 where both vanish
inline double distance(const double* x, const std::vector<double>& y)
{
    double difference = 0.0, norm = 0.0;
    for (std::size_t i = 0; i < y.size(); ++i) {
        difference = std::isnan(x[i]) ? HUGE_VAL : std::max(difference, std::fabs(x[i] - y[i]));
        norm = std::max(norm, std::fabs(y[i]));
    }
    return difference == 0.0 ? 0.0 : difference / norm;
}

} // namespace fuzz
