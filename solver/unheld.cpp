// SPDX-License-Identifier: BSD-3-Clause
#include "unheld.h"

#include "dense.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// |A*z| beside |A|*|z|: what elimination and shifts of 2^-26 leave of zero.
constexpr double nothing = 0x1p-46;
// Solutions and memory that an explanation may cost.
constexpr int mostPivots = 256;
constexpr std::int64_t mostEntries = std::int64_t{1} << 26;

// The right singular vectors of K as rows, those of the smallest singular values last.
std::vector<double> rightSingularVectors(int t, std::vector<double> k)
{
    std::vector<double> values(t), vectors(static_cast<std::size_t>(t) * t);
    const int size = 10 * t;
    std::vector<double> work(size);
    int info = 0;
    const char none = 'N', all = 'A';
    blac_dgesvd_(&none, &all, &t, &t, k.data(), &t, values.data(), nullptr, &t, vectors.data(), &t,
                 work.data(), &size, &info);
    return info == 0 ? vectors : std::vector<double>();
}

// Rows of B (rows x columns, by columns, `columns` of them independent) that make up a nonsingular matrix, by
// elimination with complete pivoting.
std::vector<int> independentRows(int rows, int columns, std::vector<double> b)
{
    std::vector<int> chosen;
    std::vector<char> done(columns, 0);
    const auto at = [&](int i, int j) -> double& { return b[i + static_cast<std::size_t>(rows) * j]; };
    for (int step = 0; step < columns; ++step) {
        int row = 0, column = -1;
        for (int j = 0; j < columns; ++j)
            for (int i = 0; i < rows && !done[j]; ++i)
                if (column < 0 || std::fabs(at(i, j)) > std::fabs(at(row, column)))
                    row = i, column = j;
        chosen.push_back(row);
        done[column] = 1;
        for (int j = 0; j < columns; ++j) {
            const double factor = done[j] ? 0.0 : at(row, j) / at(row, column);
            for (int i = 0; i < rows && !done[j]; ++i)
                at(i, j) = i == row ? 0.0 : at(i, j) - factor * at(i, column);
        }
    }
    return chosen;
}

bool vanishes(const SparseMatrix& a, double normA, const std::vector<double>& z)
{
    std::vector<double> product(a.n);
    multiply(a, z.data(), product.data(), 1);
    const double size = maxNorm(z.data(), a.n);
    return size > 0.0 && std::isfinite(size) && maxNorm(product.data(), a.n) <= nothing * normA * size;
}

} // namespace

UnheldMotions findUnheldMotions(const SparseMatrix& a, const std::vector<TreatedPivot>& treated,
                                const Apply& apply)
{
    UnheldMotions motions;
    const int t = static_cast<int>(treated.size());
    if (t == 0 || t > mostPivots || std::int64_t{t} * a.n > mostEntries)
        return motions;
    Vectors w(a.n, t);
    for (int j = 0; j < t; ++j)
        w.column(j)[treated[j].unknown] = 1.0;
    apply(w);
    std::vector<double> k(static_cast<std::size_t>(t) * t);
    for (int j = 0; j < t; ++j)
        for (int i = 0; i < t; ++i) {
            const double value = (i == j) - treated[i].shift * w.column(j)[treated[i].unknown];
            if (!std::isfinite(value))
                return motions;
            k[i + static_cast<std::size_t>(t) * j] = value;
        }
    const std::vector<double> u = rightSingularVectors(t, k);

    const double normA = normInf(a);
    std::vector<double> found, z(a.n), mine(t);
    for (int row = t - 1; row >= 0 && !u.empty(); --row) {
        std::fill(z.begin(), z.end(), 0.0);
        for (int j = 0; j < t; ++j)
            for (int i = 0; i < a.n; ++i)
                z[i] += w.column(j)[i] * u[row + static_cast<std::size_t>(t) * j];
        if (!vanishes(a, normA, z))
            break;
        const double size = maxNorm(z.data(), a.n);
        for (int j = 0; j < t; ++j)
            found.push_back(z[treated[j].unknown] / size);
        ++motions.count;
    }
    for (int row : independentRows(t, motions.count, found))
        motions.unknowns.push_back(treated[row].unknown);
    std::sort(motions.unknowns.begin(), motions.unknowns.end());
    return motions;
}
