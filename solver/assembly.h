// SPDX-License-Identifier: BSD-3-Clause
// What goes into the fronts before they are eliminated: the entries of A, and what the children contribute.
// Where it goes is worked out once for a pattern, and kept as lists from one factorisation to the next.
#pragma once

#include "analysis.h"
#include "sparse_matrix.h"

#include <cstdint>
#include <vector>

// The parts of a front as in front.h; right is null in a symmetric front, of which only the lower triangle is
// there.
struct FrontStorage
{
    int pivots, rest;
    double *panel, *right, *schur;
};

// The columns and rows of the pivots, and the others. The latter may be added after the elimination.
enum class Part { factor, schur };

class Assembly
{
public:
    // `a` is the matrix whose symmetrised pattern was analysed; its values are not looked at.
    Assembly(const Analysis& analysis, const SparseMatrix& a);

    // Adds the entries of A, in the sequence of the pattern, that belong to the pivots of front f, those of
    // its columns begin ... end - 1. Of a symmetric matrix only those with column <= row are read.
    void addEntries(int f, int begin, int end, const double* value, const FrontStorage& front) const;

    // Adds the contribution of front `child`, a matrix of the order of its rest, to a part of columns
    // begin ... end - 1 of the front of its parent.
    void addContribution(int child, Part part, int begin, int end, const FrontStorage& parent,
                         const double* contribution) const;

    bool symmetric() const { return symmetric_; }
    // Where the diagonal entry of an unknown stands among the entries of A, -1: nowhere.
    std::int64_t diagonal(int unknown) const { return diagonal_[unknown]; }
    double bytes() const;

private:
    // Rows i ... i + count - 1 of a contribution. In a run they lie next to each other in the parent.
    struct Segment
    {
        int i, count;
        bool run;
    };
    struct Segments
    {
        std::int64_t first; // in segments_
        int pivots, all;    // those among the parent's pivots, and all
    };

    void findEntries(const Analysis& analysis, const SparseMatrix& a);
    void findSegments(const Analysis& analysis);

    bool symmetric_;
    std::vector<std::int64_t> diagonal_;
    std::vector<std::int64_t> firstEntry_[2]; // of each front, those of the panel and those of the right part
    std::vector<std::int64_t> source_[2], target_[2];
    std::vector<std::int64_t> rows_; // of each front: where its contribution's rows start in position_
    std::vector<int> position_;      // of the rows of a contribution in the parent's front
    std::vector<Segments> split_;    // of each front's contribution
    std::vector<Segment> segments_;
};
