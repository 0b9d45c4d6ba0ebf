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

Pieces::Pieces(const Analysis& analysis, const Schedule& schedule)
{
    std::vector<int> pieceOf(analysis.fronts.size());
    for (int f = 0, first = 0; f < static_cast<int>(analysis.fronts.size()); ++f) {
        const int branch = schedule.branchOf[f];
        pieceOf[f] = static_cast<int>(pieces.size());
        if (branch >= 0 && f != schedule.branches[branch].last)
            continue;
        const Front& front = analysis.fronts[f];
        pieces.push_back(
            {first, f, analysis.fronts[first].first, front.first + front.pivots, 0, 0, 0, 0, -1, {}});
        first = f + 1;
    }

    const int count = static_cast<int>(pieces.size());
    const auto down = [&](int p) { return 2 * count - p; };
    std::vector<std::pair<int, int>> edges;
    std::vector<double> work(2 * pieces.size() + 1, 0.0);
    std::vector<std::vector<int>> outside(pieces.size());
    local.resize(analysis.rows.size());
    for (int p = 0; p < count; ++p) {
        Piece& piece = pieces[p];
        outside[p] = rowsOutside(analysis, piece);
        piece.outside = static_cast<int>(outside[p].size());
        int largestFront = 0;
        for (int f = piece.first; f <= piece.last; ++f) {
            const Front& front = analysis.fronts[f];
            for (std::int64_t i = front.rows; i < front.rows + front.order; ++i)
                local[i] = placeOf(analysis.rows[i], piece, outside[p]);
            largestFront = std::max(largestFront, front.order);
            work[p] += workOf(front);
        }
        piece.home = length;
        piece.front = piece.home + aligned(piece.pivots() + piece.outside);
        length = piece.front + aligned(largestFront);
        work[down(p)] = work[p];
        if (const int parent = analysis.fronts[piece.last].parent; parent >= 0) {
            const int q = piece.parent = pieceOf[parent];
            pieces[q].children.push_back(p);
            edges.emplace_back(p, q);
            edges.emplace_back(down(q), down(p));
        } else {
            edges.emplace_back(p, count);
            edges.emplace_back(count, down(p));
        }
    }
    for (int p = 0; p < count; ++p) {
        pieces[p].at = static_cast<std::int64_t>(at.size());
        for (int row : outside[p])
            at.push_back(placeOf(row, pieces[pieces[p].parent], outside[pieces[p].parent]));
    }
    graph = TaskGraph(2 * count + 1, std::move(edges), work);
}

double Pieces::bytes() const
{
    return storageOf(pieces) + storageOf(at) + storageOf(local) + graph.bytes();
}
