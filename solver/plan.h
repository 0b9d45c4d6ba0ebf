// SPDX-License-Identifier: BSD-3-Clause
// How a matrix will be factorised: decided by its pattern, and by its numbers where they ask for another
// order than the pattern told.
#pragma once

#include "analysis.h"
#include "assembly.h"
#include "pieces.h"
#include "scaling.h"
#include "schedule.h"
#include "sparse_matrix.h"

#include <memory>
#include <vector>

// What the caller asks for.
struct Wishes
{
    Ordering ordering = Ordering::choose;
    std::vector<int> order; // of Ordering::given
    std::vector<int> kept;  // unknowns of the Schur complement
    int threads = 1;
};

// What the numbers ask for.
struct Demands
{
    std::vector<char>
        late; // symmetric: unknowns without a diagonal entry, eliminated behind their neighbours
    std::vector<int> rowOf; // general: the row in the place of each
};

struct Plan
{
    Plan(const SparseMatrix& pattern, const Wishes& wishes, Demands demands);

    Demands demands;
    Analysis analysis;
    std::unique_ptr<const Assembly> assembly;
    std::unique_ptr<const Schedule> schedule;
    std::unique_ptr<const Pieces> pieces;

    bool symmetric() const { return assembly->symmetric(); }
    double factorEntries() const;
    double flops() const;
    double bytes() const; // its own
};

// What there is to demand without numbers.
Demands patternDemands(const SparseMatrix& pattern);
// What a matrix with numbers demands, given how it was equilibrated.
Demands numericDemands(const Equilibrated& equilibrated);
// Whether a plan made for some demands serves others.
bool serves(const Demands& plan, const Demands& demands);
