// SPDX-License-Identifier: BSD-3-Clause
#include "pieces.h"

#include "storage.h"

#include <algorithm>

namespace {

// Entries of the factor, and what finding a row takes, by about the time of as many.
double workOf(const Front& front)
{
    return front.pivots * (front.order - 0.5 * front.pivots) + 8.0 * front.order;
}

// The rows of its fronts that are pivots of none of them, ascending.
std::vector<int> rowsOutside(const Analysis& analysis, const Piece& piece)
{
    std::vector<int> rows;
    for (int f = piece.first; f <= piece.last; ++f) {
        const Front& front = analysis.fronts[f];
        const int* own = analysis.rowsOf(front);
        if (front.parent < 0 || front.parent > piece.last)
            rows.insert(rows.end(), own + front.pivots, own + front.order);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

// Where the next rows start, behind so many: with a cache line, of however many right-hand sides.
std::int64_t aligned(std::int64_t count)
{
    return (count + 7) / 8 * 8;
}

// Where a row is in the vector of a piece.
int placeOf(int row, const Piece& piece, const std::vector<int>& outside)
{
    if (row < piece.end)
        return row - piece.begin;
    const auto found = std::lower_bound(outside.begin(), outside.end(), row);
    return piece.pivots() + static_cast<int>(found - outside.begin());
}

} // namespace

Pieces::Pieces(const Analysis& analysis, const Schedule& schedule, bool symmetric)
{
    std::vector<int> pieceOf(analysis.fronts.size());
    for (int f = 0, first = 0; f < static_cast<int>(analysis.fronts.size()); ++f) {
        const int branch = schedule.branchOf[f];
        pieceOf[f] = static_cast<int>(pieces.size());
        if (branch >= 0 && f != schedule.branches[branch].last)
            continue;
        const Front& front = analysis.fronts[f];
        pieces.push_back(
            {first, f, analysis.fronts[first].first, front.first + front.pivots, 0, 0, 0, 0, -1, {}, {}});
        first = f + 1;
    }

    std::vector<std::vector<int>> outside(pieces.size());
    local.resize(analysis.rows.size());
    for (int p = 0; p < static_cast<int>(pieces.size()); ++p) {
        Piece& piece = pieces[p];
        outside[p] = rowsOutside(analysis, piece);
        piece.outside = static_cast<int>(outside[p].size());
        int largestFront = 0;
        for (int f = piece.first; f <= piece.last; ++f) {
            const Front& front = analysis.fronts[f];
            for (std::int64_t i = front.rows; i < front.rows + front.order; ++i)
                local[i] = placeOf(analysis.rows[i], piece, outside[p]);
            largestFront = std::max(largestFront, front.order);
        }
        const Front& last = analysis.fronts[piece.last];
        const Tiling tiling = tilingOf(last, {.leastTile = schedule.cuts.leastSolutionTile, .mostTiles = 8});
        if (symmetric && schedule.branchOf[piece.last] < 0 && tiling.tiles() > 2 &&
            workOf(last) * schedule.cuts.solutionParts >= static_cast<double>(analysis.panelEntries))
            piece.tiling = tiling;
        piece.home = length;
        piece.front = piece.home + aligned(piece.pivots() + piece.outside);
        length = piece.front + aligned(largestFront);
        if (last.parent >= 0) {
            piece.parent = pieceOf[last.parent];
            pieces[piece.parent].children.push_back(p);
        }
    }
    for (int p = 0; p < static_cast<int>(pieces.size()); ++p) {
        pieces[p].at = static_cast<std::int64_t>(at.size());
        for (int row : outside[p])
            at.push_back(placeOf(row, pieces[pieces[p].parent], outside[pieces[p].parent]));
    }
    addSteps(analysis);
}

namespace {

// Steps, their work, and which waits for which.
struct Builder
{
    std::vector<Step>& steps;
    std::vector<double> work = {};
    std::vector<std::pair<int, int>> edges = {};

    int add(const Step& step, double entries, const std::vector<int>& before)
    {
        const int made = static_cast<int>(steps.size());
        steps.push_back(step);
        work.push_back(entries);
        for (int other : before)
            edges.emplace_back(other, made);
        return made;
    }
};

double entriesOf(const Tiling& tiling, int i, int k)
{
    const double columns = tiling.end(k) - tiling.begin(k);
    return i == k ? 0.5 * columns * columns : columns * (tiling.end(i) - tiling.begin(i));
}

// What a step waits for, of two others and the first one of its piece, which both are or wait for.
std::vector<int> latest(int first, int one, int other)
{
    if (one == other || other == first)
        return {one};
    return one == first ? std::vector<int>{other} : std::vector<int>{one, other};
}

// The steps of a tiled piece, up: each tile waits for the triangle of its columns, and for what was added to
// its rows before. What the parent waits for.
std::vector<int> addUp(Builder& builder, int p, const Tiling& tiling, const std::vector<int>& before)
{
    using Kind = Step::Kind;
    const int begin = builder.add({Kind::begin, true, p, -1, -1}, 0.0, before);
    std::vector<int> last(tiling.tiles(), begin);
    for (int k = 0; k < tiling.pivotTiles(); ++k)
        for (int i = k; i < tiling.tiles(); ++i)
            last[i] = builder.add({Kind::tile, true, p, i, k}, entriesOf(tiling, i, k),
                                  latest(begin, last[i], last[k]));
    last.erase(last.begin(), last.begin() + std::min(tiling.pivotTiles(), tiling.tiles() - 1));
    return last;
}

// Down: a triangle waits for the tiles below, each of which waits for its rows, and for the one below it.
// What the children wait for.
int addDown(Builder& builder, int p, const Tiling& tiling, const std::vector<int>& before)
{
    using Kind = Step::Kind;
    const int begin = builder.add({Kind::begin, false, p, -1, -1}, 0.0, before);
    std::vector<int> solved(tiling.tiles(), begin);
    for (int k = tiling.pivotTiles() - 1; k >= 0; --k) {
        int last = solved[k];
        for (int i = tiling.tiles() - 1; i >= k; --i)
            last = builder.add({Kind::tile, false, p, i, k}, entriesOf(tiling, i, k),
                               latest(begin, last, solved[i]));
        solved[k] = last;
    }
    return solved[0];
}

} // namespace

void Pieces::addSteps(const Analysis& analysis)
{
    using Kind = Step::Kind;
    const int count = static_cast<int>(pieces.size());
    const auto work = [&](const Piece& piece) {
        double entries = 0.0;
        for (int f = piece.first; f <= piece.last; ++f)
            entries += workOf(analysis.fronts[f]);
        return entries;
    };
    Builder builder{steps};
    std::vector<int> roots;
    std::vector<std::vector<int>> up(pieces.size());
    for (int p = 0; p < count; ++p) {
        std::vector<int> before;
        for (int child : pieces[p].children)
            before.insert(before.end(), up[child].begin(), up[child].end());
        if (pieces[p].tiled())
            up[p] = addUp(builder, p, pieces[p].tiling, before);
        else
            up[p] = {builder.add({Kind::all, true, p, -1, -1}, work(pieces[p]), before)};
        if (pieces[p].parent < 0)
            roots.insert(roots.end(), up[p].begin(), up[p].end());
    }
    const int turn = builder.add({Kind::turn, false, -1, -1, -1}, 0.0, roots);
    std::vector<int> down(pieces.size());
    for (int p = count - 1; p >= 0; --p) {
        const std::vector<int> before{pieces[p].parent < 0 ? turn : down[pieces[p].parent]};
        if (pieces[p].tiled())
            down[p] = addDown(builder, p, pieces[p].tiling, before);
        else
            down[p] = builder.add({Kind::all, false, p, -1, -1}, work(pieces[p]), before);
    }
    graph = TaskGraph(static_cast<int>(steps.size()), std::move(builder.edges), builder.work);
}

double Pieces::bytes() const
{
    return storageOf(pieces) + storageOf(steps) + storageOf(at) + storageOf(local) + graph.bytes();
}
