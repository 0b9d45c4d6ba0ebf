// SPDX-License-Identifier: BSD-3-Clause
#include "matrix.h"

#include <algorithm>

Matrix fromTriplets(int n, std::vector<Triplet> entries)
{
    std::stable_sort(entries.begin(), entries.end(), [](const Triplet& x, const Triplet& y) {
        return x.row != y.row ? x.row < y.row : x.column < y.column;
    });
    Matrix a;
    a.n = n;
    a.start.assign(static_cast<std::size_t>(n) + 1, 0);
    a.column.reserve(entries.size());
    a.value.reserve(entries.size());
    for (std::size_t e = 0; e < entries.size(); ++e) {
        const Triplet& t = entries[e];
        if (e > 0 && entries[e - 1].row == t.row && entries[e - 1].column == t.column) {
            a.value.back() += t.value;
            continue;
        }
        a.column.push_back(t.column);
        a.value.push_back(t.value);
        ++a.start[t.row + 1];
    }
    for (int i = 0; i < n; ++i)
        a.start[i + 1] += a.start[i];
    return a;
}

// Rows in ascending order meet the entries of each column in the sequence of its row.
bool isSymmetric(const Matrix& a)
{
    std::vector<std::int64_t> next(a.start.begin(), a.start.end() - 1);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
            const int j = a.column[p];
            const std::int64_t q = next[j]++;
            if (q >= a.start[j + 1] || a.column[q] != i || a.value[q] != a.value[p])
                return false;
        }
    return true;
}

Block product(const Matrix& a, const Block& x)
{
    Block y(a.n, x.columns);
    for (int j = 0; j < x.columns; ++j)
        for (int i = 0; i < a.n; ++i)
            for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
                y.column(j)[i] += a.value[p] * x.column(j)[a.column[p]];
    return y;
}
