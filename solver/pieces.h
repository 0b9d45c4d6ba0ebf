// SPDX-License-Identifier: BSD-3-Clause
// The tree in pieces for the solution: each branch of the schedule is one, each front above them another. A
// piece works in a vector of its own: the rows of its pivots, followed by those outside of it. The panel of a
// front that would keep all others waiting is cut into tiles.
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

    Tiling tiling; // of its only front, if that is cut; of width 0 else

    int pivots() const { return end - begin; }
    bool tiled() const { return tiling.width > 0; }
};

// A task of the solution.
struct Step
{
    enum class Kind {
        all,   // of a piece
        begin, // of a piece that is tiled: what comes from its children, or from its parent
        tile,  // (row, column) of its panel
        turn   // nothing: all pieces are up
    };
    Kind kind;
    bool up;
    int piece, row, column;
};

struct Pieces
{
    Pieces(const Analysis& analysis, const Schedule& schedule, bool symmetric);

    std::vector<Piece> pieces; // children before parents
    std::vector<int> at;
    std::vector<int> local;  // the rows of the fronts, as in Analysis::rows, in the vectors of their pieces
    std::int64_t length = 0; // of the vector of all
    // Up: each piece. Nothing, when all are: answers may overwrite what any of them asks. Down: the pieces
    // once more, the last one first.
    std::vector<Step> steps;
    TaskGraph graph;

    double bytes() const;

private:
    void addSteps(const Analysis& analysis);
};
