// SPDX-License-Identifier: BSD-3-Clause
// The entries of a Matrix Market file, in one pass over its lines.
#pragma once

#include "matrix_market_header.h"

#include <functional>

// Called for each value, in the order of the file, row and column from 0; the other triangle of a symmetric
// or skew-symmetric file comes with the stored one, entry by entry.
using TakeEntry = std::function<void(int row, int column, double value)>;

// `lines` stands on the size line. Stops at the first line that is not what the header promises.
void readEntries(const TextFile& text, Lines& lines, const Header& header, const TakeEntry& take);
