// SPDX-License-Identifier: BSD-3-Clause
// Static condensation: what is left of a matrix for some unknowns where all others are eliminated.
#pragma once

#include "library.h"
#include "matrix.h"

#include <string>
#include <vector>

struct Condensed
{
    Block matrix;          // of the unknowns kept, in their order
    double residual = 0.0; // see condense()
    double seconds = 0.0;
    std::string verdict; // "condensed", or "NOT TO BE TRUSTED: " and why
    bool trusted = false;
};

// The Schur complement S of `kept`, of which `library` has the factorisation of A.
//
// It is tried on a motion y of the whole system that is driven at the kept unknowns k alone: A*y is S*y(k)
// there and zero elsewhere, be A singular or not. The residual is max |A*y - S*y(k)| / (|A|*|y|).
Condensed condense(const Matrix& a, const std::vector<int>& kept, Library& library);
