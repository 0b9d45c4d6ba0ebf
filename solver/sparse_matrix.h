// SPDX-License-Identifier: BSD-3-Clause
// A square sparse matrix in compressed rows, everything counted from zero. A symmetric matrix has both
// halves stored, so that a row is also a column. Columns ascend within a row and do not repeat.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct SparseMatrix
{
    int n = 0;
    bool symmetric = false;          // the values, not only the pattern
    std::vector<std::int64_t> start; // n + 1 row pointers
    std::vector<int> column;
    std::vector<double> value;

    std::size_t entries() const { return column.size(); }
};

// Also of a pattern without values.
SparseMatrix transposed(const SparseMatrix& a);
// The pattern of A + A^T, every value 1.
SparseMatrix symmetrisedPattern(const SparseMatrix& a, const SparseMatrix& transposedA);

// max over i of the sum over j of |a(i,j)|
double normInf(const SparseMatrix& a);

// Y := A*X for columns columns of length n, one after the other
void multiply(const SparseMatrix& a, const double* x, double* y, int columns);

// A block of vectors of length n, one after the other.
struct Vectors
{
    int n = 0;
    int columns = 0;
    std::vector<double> value;

    Vectors() = default;
    Vectors(int length, int count)
        : n(length), columns(count), value(static_cast<std::size_t>(length) * count)
    {
    }
    double* column(int j) { return value.data() + static_cast<std::size_t>(n) * j; }
    const double* column(int j) const { return value.data() + static_cast<std::size_t>(n) * j; }
};
