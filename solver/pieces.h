// SPDX-License-Identifier: BSD-3-Clause
// The tree in pieces for the solution: each branch of the schedule is one, each front above them another. A
// piece works in a vector of its own, the rows of its pivots followed by those outside of it.
#pragma once

#include "analysis.h"
#include "schedule.h"
#include "task_graph.h"

#include <cstdint>
#include <vector>

struct Piece
{
    int first, last;           // fronts
    int begin, end;            // pivots
    std::int64_t outside;      // where the rows outside start in Pieces::rows, and what they get in all such
    int count;                 // of those
    int largestFront;          // its order
    std::vector<int> children; // pieces
};

struct Pieces
{
    Pieces(const Analysis& analysis, const Schedule& schedule);

    std::vector<Piece> pieces; // children before parents
    std::vector<int> rows;     // the rows outside of each piece, ascending
    std::vector<int> at;       // their places in the vector of the piece that has their parent
    std::vector<int> local;    // the rows of the fronts, as in Analysis::rows, in the vectors of their pieces
    TaskGraph graph;           // up: each piece; down: the pieces once more, the last one first

    double bytes() const;
};
