// SPDX-License-Identifier: BSD-3-Clause
#include "assembly.h"

#include "dense.h"
#include "storage.h"

#include <algorithm>
#include <tuple>

namespace {

// Shorter runs are added entry by entry: neighbours of them make one segment together.
constexpr int longRun = 12;
// Below this number of entries a call costs more than it adds.
constexpr int smallBlock = 64;

enum Place { inPanel, inRight };

// Where the columns of a part of the parent's front start: column j, row i at data[i + ld*j]
struct Target
{
    double* data;
    std::int64_t ld;
};

// For every entry of a symmetric matrix the place of the one with column <= row that equals it.
std::vector<std::int64_t> lowerPlaces(const SparseMatrix& a)
{
    std::vector<std::int64_t> lower(a.entries()), next(a.n); // of each row: its first entry without a place
    for (int i = 0; i < a.n; ++i) {
        std::int64_t p = a.start[i];
        for (; p < a.start[i + 1] && a.column[p] <= i; ++p) {
            lower[p] = p;
            if (a.column[p] < i)
                lower[next[a.column[p]]++] = p;
        }
        next[i] = p;
    }
    return lower;
}

// The entries of each front by the places they go to, column by column.
void sortByTarget(const std::vector<std::int64_t>& first, std::vector<std::int64_t>& source,
                  std::vector<std::int64_t>& target)
{
    std::vector<std::pair<std::int64_t, std::int64_t>> entries;
    for (std::size_t f = 0; f + 1 < first.size(); ++f) {
        entries.clear();
        for (std::int64_t e = first[f]; e < first[f + 1]; ++e)
            entries.emplace_back(target[e], source[e]);
        std::sort(entries.begin(), entries.end());
        for (std::int64_t e = first[f]; e < first[f + 1]; ++e)
            std::tie(target[e], source[e]) = entries[e - first[f]];
    }
}

} // namespace

Assembly::Assembly(const Analysis& analysis, const SparseMatrix& a)
    : symmetric_(a.symmetric), diagonal_(a.n, -1)
{
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] == i)
                diagonal_[i] = p;
    findEntries(analysis, a);
    findSegments(analysis);
}

// The entries in the pivots' columns on and below the diagonal and, unsymmetric, in their rows behind it.
void Assembly::findEntries(const Analysis& analysis, const SparseMatrix& a)
{
    // Of a general matrix the columns are listed first, by the places of their entries in its rows.
    std::vector<std::int64_t> start, place;
    std::vector<int> row;
    if (!a.symmetric) {
        start.assign(a.start.size(), 0);
        row.resize(a.entries());
        place.resize(a.entries());
        for (int j : a.column)
            ++start[j + 1];
        for (int j = 0; j < a.n; ++j)
            start[j + 1] += start[j];
        std::vector<std::int64_t> next = start;
        for (int i = 0; i < a.n; ++i)
            for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p) {
                const std::int64_t q = next[a.column[p]]++;
                row[q] = i;
                place[q] = p;
            }
    }

    const std::vector<std::int64_t> lower = a.symmetric ? lowerPlaces(a) : std::vector<std::int64_t>();
    std::vector<int> local(a.n);
    for (const Front& front : analysis.fronts) {
        for (Place where : {inPanel, inRight})
            firstEntry_[where].push_back(static_cast<std::int64_t>(source_[where].size()));
        const int* rows = analysis.rowsOf(front);
        for (int i = 0; i < front.order; ++i)
            local[rows[i]] = i;
        const auto add = [&](Place where, std::int64_t source, std::int64_t target) {
            source_[where].push_back(source);
            target_[where].push_back(target);
        };
        for (int k = 0; k < front.pivots; ++k) {
            const int old = analysis.permutation[front.first + k];
            const std::int64_t column = static_cast<std::int64_t>(front.order) * k;
            const auto below = [&](int otherOld, std::int64_t source) {
                const int other = analysis.inverse[otherOld];
                if (other >= front.first + k)
                    add(inPanel, source, local[other] + column);
            };
            if (a.symmetric) {
                for (std::int64_t p = a.start[old]; p < a.start[old + 1]; ++p)
                    below(a.column[p], lower[p]);
                continue;
            }
            for (std::int64_t q = start[old]; q < start[old + 1]; ++q)
                below(row[q], place[q]);
            for (std::int64_t p = a.start[old]; p < a.start[old + 1]; ++p) {
                const int other = analysis.inverse[a.column[p]];
                if (other <= front.first + k)
                    continue;
                const std::int64_t at = local[other];
                if (at < front.pivots)
                    add(inPanel, p, k + front.order * at);
                else
                    add(inRight, p, k + front.pivots * (at - front.pivots));
            }
        }
    }
    for (Place where : {inPanel, inRight}) {
        firstEntry_[where].push_back(static_cast<std::int64_t>(source_[where].size()));
        if (!a.symmetric) // else they come column by column
            sortByTarget(firstEntry_[where], source_[where], target_[where]);
    }
}

// Cuts the rows of every contribution into runs and what lies between them. No segment crosses the border
// between the parent's pivots and its other rows.
void Assembly::findSegments(const Analysis& analysis)
{
    std::vector<int> local(analysis.n);
    std::vector<std::vector<int>> children(analysis.fronts.size());
    for (std::size_t f = 0; f < analysis.fronts.size(); ++f) {
        rows_.push_back(static_cast<std::int64_t>(position_.size()));
        position_.resize(position_.size() + analysis.fronts[f].rest());
        if (analysis.fronts[f].parent >= 0)
            children[analysis.fronts[f].parent].push_back(static_cast<int>(f));
    }
    split_.resize(analysis.fronts.size());
    for (std::size_t f = 0; f < analysis.fronts.size(); ++f) {
        const Front& parent = analysis.fronts[f];
        const int* rows = analysis.rowsOf(parent);
        for (int i = 0; i < parent.order; ++i)
            local[rows[i]] = i;
        for (int c : children[f]) {
            const Front& child = analysis.fronts[c];
            const int* from = analysis.rowsOf(child) + child.pivots;
            int* at = position_.data() + rows_[c];
            const int count = child.rest();
            for (int i = 0; i < count; ++i)
                at[i] = local[from[i]];
            Segments split{static_cast<std::int64_t>(segments_.size()), 0, 0};
            for (int i = 0, end = 1; i < count; i = end++) {
                while (end < count && at[end] == at[end - 1] + 1 && at[end] != parent.pivots)
                    ++end;
                const bool run = end - i >= longRun;
                const bool border = i == 0 || (at[i] >= parent.pivots && at[i - 1] < parent.pivots);
                if (run || border || segments_.back().run)
                    segments_.push_back({i, end - i, run});
                else
                    segments_.back().count += end - i;
                if (at[i] < parent.pivots)
                    split.pivots = static_cast<int>(segments_.size() - split.first);
            }
            split.all = static_cast<int>(segments_.size() - split.first);
            split_[c] = split;
        }
    }
}

void Assembly::addEntries(int f, int begin, int end, const double* value, const FrontStorage& front) const
{
    const auto add = [&](Place where, std::int64_t first, std::int64_t last, double* to) {
        const auto target = target_[where].begin();
        const auto within = target + firstEntry_[where][f], behind = target + firstEntry_[where][f + 1];
        const auto from = std::lower_bound(within, behind, first),
                   until = std::lower_bound(from, behind, last);
        for (auto e = from; e != until; ++e)
            to[*e] += value[source_[where][e - target]];
    };
    const std::int64_t pivots = front.pivots, order = pivots + front.rest;
    add(inPanel, order * std::min<std::int64_t>(begin, pivots), order * std::min<std::int64_t>(end, pivots),
        front.panel);
    if (front.right)
        add(inRight, pivots * std::max<std::int64_t>(begin - pivots, 0),
            pivots * std::max<std::int64_t>(end - pivots, 0), front.right);
}

void Assembly::addContribution(int child, Part part, int begin, int end, const FrontStorage& parent,
                               const double* contribution) const
{
    const int pivots = parent.pivots, rest = parent.rest;
    const int* const at = position_.data() + rows_[child];
    const Segments& split = split_[child];
    const Segment* const segments = segments_.data() + split.first;
    // of the contribution: the next child's rows start where its own end
    const int count = static_cast<int>((static_cast<std::size_t>(child) + 1 < rows_.size()
                                            ? rows_[child + 1]
                                            : static_cast<std::int64_t>(position_.size())) -
                                       rows_[child]);

    const auto addTriangle = [&](const Segment& s, const Target& target) {
        const double* from = contribution + s.i + static_cast<std::int64_t>(count) * s.i;
        if (s.run) {
            dense::addTriangle(s.count, target.data + at[s.i] * (target.ld + 1), static_cast<int>(target.ld),
                               from, count);
            return;
        }
        for (int j = 0; j < s.count; ++j, from += count) {
            double* to = target.data + target.ld * at[s.i + j];
            for (int i = j; i < s.count; ++i)
                to[at[s.i + i]] += from[i];
        }
    };
    const auto addRectangle = [&](const Segment& r, const Segment& c, const Target& target) {
        const double* from = contribution + r.i + static_cast<std::int64_t>(count) * c.i;
        if (r.run && c.run && r.count * static_cast<std::int64_t>(c.count) >= smallBlock) {
            dense::addRectangle(r.count, c.count, target.data + at[r.i] + target.ld * at[c.i],
                                static_cast<int>(target.ld), from, count);
            return;
        }
        for (int j = 0; j < c.count; ++j, from += count) {
            double* to = target.data + target.ld * at[c.i + j];
            if (r.run)
                for (int i = 0; i < r.count; ++i)
                    to[at[r.i] + i] += from[i];
            else
                for (int i = 0; i < r.count; ++i)
                    to[at[r.i + i]] += from[i];
        }
    };

    const bool symmetric = !parent.right;
    const Target left{parent.panel, pivots + rest},
        right{symmetric ? nullptr : parent.right - std::int64_t{pivots} * pivots, pivots},
        schur{parent.schur - pivots * (std::int64_t{rest} + 1), rest};
    const int first = static_cast<int>(std::lower_bound(at, at + count, begin) - at),
              last = static_cast<int>(std::lower_bound(at + first, at + count, end) - at);
    for (int c = part == Part::factor ? 0 : split.pivots; c < split.all && segments[c].i < last; ++c) {
        const Segment& whole = segments[c];
        const int low = std::max(whole.i, first), high = std::min(whole.i + whole.count, last);
        if (low >= high)
            continue;
        const Segment columns{low, high - low, whole.run};
        if (part == Part::factor && c >= split.pivots) {
            for (int r = 0; r < split.pivots && !symmetric; ++r)
                addRectangle(segments[r], columns, right);
            continue;
        }
        const Target& target = part == Part::factor ? left : schur;
        if (symmetric) {
            addTriangle(columns, target);
            if (high < whole.i + whole.count)
                addRectangle({high, whole.i + whole.count - high, whole.run}, columns, target);
        }
        const int top = symmetric ? c + 1 : part == Part::factor ? 0 : split.pivots;
        for (int r = top; r < split.all; ++r)
            addRectangle(segments[r], columns, target);
    }
}

double Assembly::bytes() const
{
    double sum = storageOf(diagonal_) + storageOf(rows_) + storageOf(position_) + storageOf(split_) +
                 storageOf(segments_);
    for (Place where : {inPanel, inRight})
        sum += storageOf(firstEntry_[where]) + storageOf(source_[where]) + storageOf(target_[where]);
    return sum;
}
