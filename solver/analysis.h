// SPDX-License-Identifier: BSD-3-Clause
// Ordering and symbolic factorisation: which unknowns are eliminated together, in which front, and where each
// front's contribution goes.
#pragma once

#include "pattern.h"

#include <cstdint>
#include <vector>

// `choose` takes METIS for more than 30000 unknowns, else the sparser of METIS and AMD. METIS gives way to
// AMD where the pattern has more entries than METIS can count.
enum class Ordering { choose = 0, metis = 1, amd = 2, given = 3 };

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
    std::vector<int> permutation;         // new to old
    std::vector<int> inverse;             // old to new
    std::vector<Front> fronts;            // children before parents
    std::vector<int> rows;                // new numbers, ascending within a front
    Ordering ordering = Ordering::choose; // the one that was taken
    int kept = -1;                        // the front of the unknowns that are kept, -1: there are none

    int largestFront = 0;
    std::int64_t panelEntries = 0, rightEntries = 0; // storage of the factor
    std::int64_t lowerEntries = 0;                   // entries of L on and below the diagonal
    double flops = 0.0;                              // of the symmetric factorisation

    double bytes() const;
    const int* rowsOf(const Front& f) const { return rows.data() + f.rows; }
};

struct AnalysisOptions
{
    Ordering ordering = Ordering::choose;
    // Of Ordering::given: order[k] is eliminated k-th, or in another sequence with the same arithmetic: what
    // does not depend on each other may change places, and so may the unknowns of a front.
    const std::int32_t* order = nullptr;
    // Unknowns that are eliminated last, in a front of their own.
    std::vector<std::int32_t> kept;
    int threads = 1; // for orders made beside each other
};

// Unknowns marked in `late` (which may be empty) are eliminated after all their neighbours that are not:
// where a diagonal entry is zero, that gives the pivot a chance to become something else. A given order
// stands as it is. Throws std::invalid_argument if the order is none, std::bad_alloc, and std::runtime_error
// if METIS fails.
Analysis analyse(const Pattern& pattern, const std::vector<char>& late, const AnalysisOptions& options = {});
