// SPDX-License-Identifier: BSD-3-Clause
// Ordering and symbolic factorisation: which unknowns are eliminated together, in which front, and where each
// front's contribution goes. CHOLMOD does the work (with METIS and AMD beneath); this keeps what the
// numerical factorisation needs.
#pragma once

#include "sparse_matrix.h"

#include <cstdint>
#include <vector>

struct Front
{
    int first;          // first pivot; pivots first ... first + pivots - 1 belong to this front
    int pivots;         // unknowns eliminated here
    int order;          // rows of the front; the first `pivots` are the pivots
    int parent;         // front that takes the contribution, -1: none
    int depth;          // distance to the root of the assembly tree
    std::int64_t rows;  // where its row numbers start in Analysis::rows
    std::int64_t panel; // where its (order x pivots) panel starts in the factor
    std::int64_t right; // where its (pivots x rest) rows start, unsymmetric factors only

    int rest() const { return order - pivots; }
    double flops() const; // of the symmetric elimination, products and sums counted each
};

struct Analysis
{
    int n = 0;
    std::vector<int> permutation; // new to old
    std::vector<int> inverse;     // old to new
    std::vector<Front> fronts;    // children before parents
    std::vector<int> rows;        // new numbers, ascending within a front
    const char* ordering = "";

    int largestFront = 0;
    std::int64_t panelEntries = 0, rightEntries = 0; // storage of the factor
    std::int64_t lowerEntries = 0;                   // entries of L on and below the diagonal
    double flops = 0.0;                              // of the symmetric factorisation
    std::int64_t stack[2] = {0, 0};                  // contributions alive at once, by parity of depth

    const int* rowsOf(const Front& f) const { return rows.data() + f.rows; }
};

// The pattern of `a` must be symmetric. Unknowns in `late` are eliminated after all their neighbours that are
// not: where a diagonal entry is zero, that gives the pivot a chance to become something else.
Analysis analyse(const SparseMatrix& a, const std::vector<char>& late);
