// SPDX-License-Identifier: BSD-3-Clause
#include "problem.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace {

template <class T>
void put(std::ostream& out, const std::vector<T>& data)
{
    out.write(reinterpret_cast<const char*>(data.data()),
              static_cast<std::streamsize>(data.size() * sizeof(T)));
}

template <class T>
void get(std::istream& in, std::vector<T>& data, std::size_t count)
{
    data.resize(count);
    in.read(reinterpret_cast<char*>(data.data()), static_cast<std::streamsize>(count * sizeof(T)));
}

} // namespace

void write(const Problem& problem, const std::string& path)
{
    std::ofstream out(path, std::ios::binary);
    put(out, std::vector<int>{problem.n});
    put(out, problem.start);
    put(out, problem.column);
    put(out, problem.value);
    if (!out.flush())
        throw std::runtime_error(path + " cannot be written");
}

Problem read(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<int> n;
    Problem problem;
    get(in, n, 1);
    if (in) {
        problem.n = n[0];
        get(in, problem.start, std::size_t{1} + n[0]);
    }
    if (in) {
        get(in, problem.column, problem.start.back());
        get(in, problem.value, problem.start.back());
    }
    if (!in)
        throw std::runtime_error(path + " is not a problem");
    return problem;
}

void multiply(const Problem& a, int columns, const double* x, double* y)
{
    std::fill_n(y, std::int64_t{a.n} * columns, 0.0);
    for (int j = 0; j < columns; ++j, x += a.n, y += a.n)
        for (int i = 0; i < a.n; ++i)
            for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
                y[i] += a.value[p] * x[a.column[p]];
                if (a.column[p] != i)
                    y[a.column[p]] += a.value[p] * x[i];
            }
}

double backwardError(const Problem& a, int columns, const double* x, const double* b)
{
    std::vector<double> rowSum(a.n, 0.0), product(std::size_t{1} * a.n * columns);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
            rowSum[i] += std::abs(a.value[p]);
            if (a.column[p] != i)
                rowSum[a.column[p]] += std::abs(a.value[p]);
        }
    const double norm = *std::max_element(rowSum.begin(), rowSum.end());
    multiply(a, columns, x, product.data());
    double worst = 0.0;
    for (int j = 0; j < columns; ++j) {
        double difference = 0.0, normX = 0.0, normB = 0.0;
        for (std::int64_t i = std::int64_t{a.n} * j; i < std::int64_t{a.n} * (j + 1); ++i) {
            // Written so that a NaN is the worst there is.
            if (!(std::abs(b[i] - product[i]) <= difference))
                difference = std::abs(b[i] - product[i]);
            normX = std::max(normX, std::abs(x[i]));
            normB = std::max(normB, std::abs(b[i]));
        }
        const double error = difference / (norm * normX + normB);
        if (!(error <= worst))
            worst = error;
    }
    return worst;
}
