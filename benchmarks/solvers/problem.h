// SPDX-License-Identifier: BSD-3-Clause
// What every contender is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The upper triangle of a symmetric matrix in compressed rows, counted from 0; columns ascend, so that the
// diagonal comes first. By columns the same arrays are the lower triangle.
struct Problem
{
    int n = 0;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> column;
    std::vector<double> value;
};

// As the arrays lie in memory. Throw std::runtime_error where that fails.
void write(const Problem& problem, const std::string& path);
Problem read(const std::string& path);

// y := A*x for `columns` vectors of length n, one after the other
void multiply(const Problem& a, int columns, const double* x, double* y);

// max |b - A*x| / (|A|*|x| + |b|) over the columns, maximum norms
double backwardError(const Problem& a, int columns, const double* x, const double* b);
