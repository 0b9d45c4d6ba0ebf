// SPDX-License-Identifier: BSD-3-Clause
// The caller's rows, and the matrix that is made of them: columns ascending, entries at one place added in
// the sequence given, both halves of a symmetric matrix. What goes where is worked out once; new values are
// then only gathered.
#pragma once

#include "sparse_matrix.h"
#include "task_graph.h"

#include <cstdint>
#include <vector>

enum class Kind { symmetricLower, symmetricUpper, general };

class Rows
{
public:
    Rows() = default;
    // Row i has the entries start[i] ... start[i + 1] - 1. Throws Failure where the rows make no matrix.
    Rows(Kind kind, int n, const std::int64_t* start, const int* column);

    // The matrix with the pattern and `value`, an array of as many entries as were given. Throws Failure
    // where a value that is read is not finite, or becomes so where entries are added.
    SparseMatrix matrix(const double* value) const;

    // Of a symmetric matrix: its diagonal, zero where there is no entry.
    std::vector<double> diagonal(const double* value) const;
    // Of a symmetric matrix: scaled[p] := scale[i] * a(i, j) * scale[j] for the entries with j <= i, p their
    // places in the pattern. Whether all are at most 2 in magnitude, and so finite.
    bool scaledLower(const double* value, const std::vector<double>& scale, double* scaled,
                     const Team& team) const;

    const SparseMatrix& pattern() const { return pattern_; } // without values
    double bytes() const;

private:
    double entry(const double* value, std::int64_t p) const;
    bool scaledRows(int first, int last, const double* value, const double* scale, double* scaled) const;

    SparseMatrix pattern_;
    std::vector<std::int64_t> lowerEnd_; // of a symmetric matrix: where the entries with j <= i of row i end
    std::vector<std::int64_t> source_;   // the entries given, in the sequence of those of the matrix
    std::vector<std::int64_t> first_;    // where those of each entry start in source_; empty: one each
};
