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
        pieces.push_back({first, f, analysis.fronts[first].first, front.first + front.pivots, 0, 0, 0, {}});
        first = f + 1;
    }

    local.resize(analysis.rows.size());
    const int count = static_cast<int>(pieces.size());
    std::vector<std::pair<int, int>> edges;
    std::vector<double> work(2 * pieces.size(), 0.0);
    const auto down = [&](int p) { return 2 * count - 1 - p; };
    for (int p = 0; p < count; ++p) {
        Piece& piece = pieces[p];
        piece.outside = static_cast<std::int64_t>(rows.size());
        for (int f = piece.first; f <= piece.last; ++f) {
            const Front& front = analysis.fronts[f];
            const int* own = analysis.rowsOf(front);
            piece.largestFront = std::max(piece.largestFront, front.order);
            work[p] += workOf(front);
            if (front.parent < 0 || front.parent > piece.last)
                rows.insert(rows.end(), own + front.pivots, own + front.order);
        }
        const auto outside = rows.begin() + piece.outside;
        std::sort(outside, rows.end());
        rows.erase(std::unique(outside, rows.end()), rows.end());
        piece.count = static_cast<int>(rows.end() - outside);
        for (int f = piece.first; f <= piece.last; ++f) {
            const Front& front = analysis.fronts[f];
            for (std::int64_t i = front.rows; i < front.rows + front.order; ++i)
                local[i] = analysis.rows[i] < piece.end
                               ? analysis.rows[i] - piece.begin
                               : piece.end - piece.begin +
                                     static_cast<int>(
                                         std::lower_bound(outside, rows.end(), analysis.rows[i]) - outside);
        }
        if (const int parent = analysis.fronts[piece.last].parent; parent >= 0) {
            const int q = pieceOf[parent];
            pieces[q].children.push_back(p);
            edges.emplace_back(p, q);
            edges.emplace_back(down(q), down(p));
        } else {
            edges.emplace_back(p, down(p));
        }
        work[down(p)] = work[p];
    }
    at.resize(rows.size());
    for (const Piece& parent : pieces)
        for (int c : parent.children) {
            const auto outside = rows.begin() + parent.outside, end = outside + parent.count;
            for (std::int64_t i = pieces[c].outside; i < pieces[c].outside + pieces[c].count; ++i)
                at[i] = rows[i] < parent.end
                            ? rows[i] - parent.begin
                            : parent.end - parent.begin +
                                  static_cast<int>(std::lower_bound(outside, end, rows[i]) - outside);
        }
    graph = TaskGraph(2 * count, std::move(edges), work);
}

double Pieces::bytes() const
{
    return storageOf(pieces) + storageOf(rows) + storageOf(at) + storageOf(local) + graph.bytes();
}
