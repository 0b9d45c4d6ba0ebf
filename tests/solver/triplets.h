// SPDX-License-Identifier: BSD-3-Clause
// Sparse matrices as tests write them down, and their comparison.
#pragma once

#include "sparse_matrix.h"

#include <algorithm>
#include <vector>

// A(i, j) given in any order; entries at one place are summed.
struct Triplet
{
    int row, column;
    double value;
};

inline SparseMatrix fromTriplets(int n, std::vector<Triplet> entries)
{
    std::stable_sort(entries.begin(), entries.end(), [](const Triplet& x, const Triplet& y) {
        return x.row != y.row ? x.row < y.row : x.column < y.column;
    });
    SparseMatrix a;
    a.n = n;
    a.start.assign(n + 1, 0);
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

inline bool equal(const SparseMatrix& a, const SparseMatrix& b)
{
    return a.start == b.start && a.column == b.column && a.value == b.value;
}
