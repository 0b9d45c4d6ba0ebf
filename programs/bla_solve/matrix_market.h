// SPDX-License-Identifier: BSD-3-Clause
// Matrix Market files, read in one pass: memory and time go with the size of the file, not with the numbers
// in its header. Readers throw InputError with one line that names the file (and the line in it) when the
// file is not what is asked for.
#pragma once

#include "matrix.h"

#include <string>

// A real square matrix, coordinate or array format, general, symmetric or skew-symmetric. Entries given more
// than once are summed, zeros given by coordinates are kept. `symmetric` is set when the values are
// symmetric, whatever the header says. A large matrix with fewer entries than rows is refused, being
// singular.
Matrix readMatrix(const std::string& path);

// Right-hand sides: a real file of n rows, one or several columns.
Block readVectors(const std::string& path, int n);

// As an array, of a symmetric one the lower triangle; throws OutputError.
void writeVectors(const std::string& path, const Block& x);
void writeSymmetric(const std::string& path, const Block& x);
