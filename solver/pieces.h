// SPDX-License-Identifier: BSD-3-Clause
// The tree in pieces for the solution: each branch of the schedule is one, each front above them another. A
// piece works in a vector of its own: the rows of its pivots, followed by those outside of it.
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
    int outside;               // rows outside
    std::int64_t at;           // where their places in the vector of the parent start in Pieces::at
    std::int64_t home;         // where its own starts in the vector of all,
    std::int64_t front;        // and behind it room for the rows of one front
    int parent;                // the piece with the parent of its last front, or -1
    std::vector<int> children; // pieces

    int pivots() const { return end - begin; }
};

struct Pieces
{
    Pieces(const Analysis& analysis, const Schedule& schedule);

    std::vector<Piece> pieces; // children before parents
    std::vector<int> at;
    std::vector<int> local;  // the rows of the fronts, as in Analysis::rows, in the vectors of their pieces
    std::int64_t length = 0; // of the vector of all
    // Up: each piece. Nothing, when all are: answers may overwrite what any of them asks. Down: the pieces
    // once more, the last one first.
    TaskGraph graph;

    double bytes() const;
};
