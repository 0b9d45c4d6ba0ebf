// SPDX-License-Identifier: BSD-3-Clause
// A square sparse matrix in compressed rows, everything counted from zero. A symmetric matrix has both halves
// stored. Columns ascend within a row and do not repeat.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct Matrix
{
    int n = 0;
    bool symmetric = false;          // the values, not only the pattern
    std::vector<std::int64_t> start; // n + 1 row pointers
    std::vector<std::int32_t> column;
    std::vector<double> value;

    std::size_t entries() const { return column.size(); }
};

// A(i, j) given in any order; entries at one place are summed.
struct Triplet
{
    int row, column;
    double value;
};
Matrix fromTriplets(int n, std::vector<Triplet> entries);

bool isSymmetric(const Matrix& a);

// A block of vectors of length n, one after the other.
struct Block
{
    int n = 0;
    int columns = 0;
    std::vector<double> value;

    Block() = default;
    Block(int length, int count) : n(length), columns(count), value(static_cast<std::size_t>(length) * count)
    {
    }
    double* column(int j) { return value.data() + static_cast<std::size_t>(n) * j; }
    const double* column(int j) const { return value.data() + static_cast<std::size_t>(n) * j; }
};

Block product(const Matrix& a, const Block& x);
