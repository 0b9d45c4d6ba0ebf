// SPDX-License-Identifier: BSD-3-Clause
// Adds the contribution of a child, a lower triangle of order `count`, into the front of its parent.
#pragma once

#include "analysis.h"

// `local[row]` is the position in the parent's front of every row of it; `panel` and `schur` as in front.h.
void extendAdd(const Front& parent, double* panel, double* schur, const int* local, const int* rows,
               int count, const double* contribution);
