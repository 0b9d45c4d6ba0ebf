// SPDX-License-Identifier: BSD-3-Clause
#include "sparse_matrix.h"

#include <TOVBlaModule.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

SparseMatrix transposed(const SparseMatrix& a)
{
    SparseMatrix t;
    t.n = a.n;
    t.symmetric = a.symmetric;
    t.start.assign(a.n + 1, 0);
    t.column.resize(a.entries());
    t.value.resize(a.value.size());
    for (int j : a.column)
        ++t.start[j + 1];
    for (int i = 0; i < a.n; ++i)
        t.start[i + 1] += t.start[i];
    std::vector<std::int64_t> next(t.start.begin(), t.start.end() - 1);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
            const std::int64_t q = next[a.column[p]]++;
            t.column[q] = i;
            if (!a.value.empty())
                t.value[q] = a.value[p];
        }
    return t;
}

SparseMatrix symmetrisedPattern(const SparseMatrix& a, const SparseMatrix& transposedA)
{
    SparseMatrix s;
    s.n = a.n;
    s.symmetric = true;
    s.start.push_back(0);
    for (int i = 0; i < a.n; ++i) {
        std::set_union(a.column.begin() + a.start[i], a.column.begin() + a.start[i + 1],
                       transposedA.column.begin() + transposedA.start[i],
                       transposedA.column.begin() + transposedA.start[i + 1], std::back_inserter(s.column));
        s.start.push_back(static_cast<std::int64_t>(s.column.size()));
    }
    s.value.assign(s.column.size(), 1.0);
    return s;
}

double normInf(const SparseMatrix& a)
{
    double norm = 0.0;
    for (int i = 0; i < a.n; ++i) {
        double sum = 0.0;
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            sum += std::fabs(a.value[p]);
        norm = std::max(norm, sum);
    }
    return norm;
}

// The module counts entries in 32 bits: some rows at a time, for some columns of X.
void multiply(const SparseMatrix& a, const double* x, double* y, int columns)
{
    constexpr int mostRows = 128, mostColumns = 8;
    int start[mostRows + 1];
    double block[mostRows * mostColumns];
    for (int i = 0, rows = 0; i < a.n; i += rows) {
        start[0] = 0;
        for (rows = 0; rows < std::min(mostRows, a.n - i); ++rows) {
            const std::int64_t end = a.start[i + rows + 1] - a.start[i];
            if (end > std::numeric_limits<int>::max()) // not in the first row, which is shorter
                break;
            start[rows + 1] = static_cast<int>(end);
        }
        for (int j = 0; j < columns; j += mostColumns) {
            const int width = std::min(mostColumns, columns - j);
            const std::size_t first = static_cast<std::size_t>(a.n) * j;
            blac_sparse_umv_(a.value.data() + a.start[i], x + first, start, a.column.data() + a.start[i],
                             block, &rows, &a.n, &width);
            for (int k = 0; k < width; ++k)
                std::copy_n(block + rows * k, rows, y + i + first + static_cast<std::size_t>(a.n) * k);
        }
    }
}
