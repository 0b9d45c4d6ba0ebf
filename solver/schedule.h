// SPDX-License-Identifier: BSD-3-Clause
// The factorisation as tasks, cut by the shape of the tree alone and never by the number of threads:
// branches, whose fronts are eliminated one after the other, and tiles of the fronts above them. Every number
// is made by the same operations in the same sequence, whoever does them and whenever.
#pragma once

#include "analysis.h"
#include "task_graph.h"

#include <algorithm>
#include <cstdint>
#include <vector>

// Subtrees next to each other: the fronts first ... last. Contributions within wait on two stacks, one for
// each parity of the depth.
struct Branch
{
    int first, last;
    std::int64_t stack[2];
};

// The rows and columns of a front in tiles; none holds pivots and others.
struct Tiling
{
    int pivots = 0, order = 0, width = 0;

    int pivotTiles() const { return (pivots + width - 1) / width; }
    int tiles() const { return pivotTiles() + (order - pivots + width - 1) / width; }
    int begin(int tile) const
    {
        return tile <= pivotTiles() ? std::min(tile * width, pivots) : pivots + (tile - pivotTiles()) * width;
    }
    int end(int tile) const
    {
        return tile < pivotTiles() ? std::min((tile + 1) * width, pivots)
                                   : std::min(begin(tile) + width, order);
    }
};

// Where the tree is cut; the bits depend on it.
struct Cuts
{
    // A branch is so much of the work at most that 16 threads have enough of them, and worth the switch.
    double parts = 64.0, leastBranch = 2e6;
    // Tiles are large enough for the rate of products, and few.
    int leastTile = 256, mostTiles = 24;
    // A front with a part of the factor's entries like this is cut into tiles for the solution, as large at
    // least; those of an unsymmetric one are not.
    double solutionParts = 20.0;
    int leastSolutionTile = 256;
    // From here on threads are worth their start, which changes no bit: flops of a factorisation, and entries
    // of the factor times right-hand sides of a solution.
    double leastFactorised = 2e6, leastSolved = 4e5;
};

struct Task
{
    enum class Kind {
        branch,    // number `front` of the branches
        assemble,  // tile column j of a front: entries and contributions
        keep,      // the front of the unknowns that are kept, before it is eliminated
        eliminate, // tile (k, k)
        lower,     // tile (i, k), with tile (k, k)
        upper,     // tile (k, j), with tile (k, k); unsymmetric fronts only
        update,    // tile (i, j), with (i, k) and (k, j)
        finish     // nothing: the contribution of the front is there
    };
    Kind kind;
    int front, i, j, k;
};

struct Schedule
{
    Schedule(const Analysis& analysis, bool symmetric, const Cuts& cuts = {});

    Cuts cuts;
    std::vector<Branch> branches;
    std::vector<std::vector<int>> children; // of the fronts above
    std::vector<int> branchOf;              // of each front; -1: one of those above
    std::vector<Task> tasks;                // each behind all that it waits for
    TaskGraph graph;
    std::vector<std::int64_t> contribution; // of a front above, or a root of a branch: where its own lies
    std::int64_t contributions = 0;         // entries of all
    std::int64_t stack[2] = {0, 0};         // the most of all branches

    double bytes() const;
};

// How the rows and columns of a front above the branches are tiled.
Tiling tilingOf(const Front& front, const Cuts& cuts);
// Of a task on a tile, but for terms of lower order.
double flopsOf(const Task& task, const Tiling& tiling, bool symmetric);
