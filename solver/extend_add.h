// SPDX-License-Identifier: BSD-3-Clause
// Adds the contribution of a child front, a matrix of order `count`, into the front of its parent.
#pragma once

// The parts of the parent's front as in front.h; right is null in a symmetric front, of which only the lower
// triangle is added.
struct FrontStorage
{
    int pivots, rest;
    double *panel, *right, *schur;
};

// What takes part in the elimination is added before it, the rest may as well come afterwards.
enum class Part { factor, schur };

// `local[row]` is the position in the parent's front of every row of it; `rows` are those of the child.
void extendAdd(Part part, const FrontStorage& parent, const int* local, const int* rows, int count,
               const double* contribution);
