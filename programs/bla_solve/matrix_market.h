// SPDX-License-Identifier: BSD-3-Clause
// Matrix Market files. Every function throws InputError with one line that names the file (and the line in
// it) when the file is not what is asked for.
#pragma once

#include "sparse_matrix.h"

#include <string>

// A real square matrix, coordinate or array format, general, symmetric or skew-symmetric. `symmetric` is
// set when the values are symmetric, whatever the header says.
SparseMatrix readMatrix(const std::string& path);

// Right-hand sides: a real file of n rows, one or several columns.
Vectors readVectors(const std::string& path, int n);

void writeVectors(const std::string& path, const Vectors& x);
