// SPDX-License-Identifier: BSD-3-Clause
// A weighted bipartite matching by shortest augmenting paths (Duff and Koster, 2001): entry a(i,j) costs
// log2(largest of column j) - log2|a(i,j)| >= 0, and dual variables u, v with cost(i,j) >= u(i) + v(j),
// equality on the matched pairs, keep the reduced costs of Dijkstra's algorithm nonnegative.
#include "matching.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

class Matcher
{
public:
    explicit Matcher(const SparseMatrix& a)
        : columns_(transposed(a)), largest_(a.n, -infinite), u_(a.n, 0.0), v_(a.n, 0.0), rowOf_(a.n, -1),
          columnOf_(a.n, -1), distance_(a.n, infinite), from_(a.n), settled_(a.n, 0)
    {
        for (int j = 0; j < a.n; ++j) {
            for (std::int64_t p = columns_.start[j]; p < columns_.start[j + 1]; ++p)
                largest_[j] = std::max(largest_[j], std::log2(std::fabs(columns_.value[p])));
            for (std::int64_t p = columns_.start[j]; p < columns_.start[j + 1]; ++p)
                columns_.value[p] = largest_[j] - std::log2(std::fabs(columns_.value[p]));
        }
    }

    Matching run()
    {
        Matching m;
        const int n = columns_.n;
        for (int j = 0; j < n; ++j) // a free row at no cost, where there is one
            for (std::int64_t p = columns_.start[j]; p < columns_.start[j + 1] && rowOf_[j] < 0; ++p)
                if (columns_.value[p] == 0.0 && columnOf_[columns_.column[p]] < 0)
                    match(columns_.column[p], j);
        for (int j = 0; j < n; ++j)
            if (rowOf_[j] < 0 && largest_[j] > -infinite)
                augment(j);

        m.rowLogarithm = u_;
        m.columnLogarithm.resize(n);
        for (int j = 0, free = 0; j < n; ++j) {
            m.columnLogarithm[j] = largest_[j] > -infinite ? v_[j] - largest_[j] : 0.0;
            if (rowOf_[j] >= 0) {
                ++m.size;
            } else {
                while (columnOf_[free] >= 0)
                    ++free;
                match(free, j);
            }
        }
        m.rowOf = rowOf_;
        return m;
    }

private:
    void match(int row, int column)
    {
        rowOf_[column] = row;
        columnOf_[row] = column;
    }

    // The cheapest path of alternating pairs from `first` to a free row; none leaves everything as it was.
    void augment(int first)
    {
        using Candidate = std::pair<double, int>;
        std::priority_queue<Candidate, std::vector<Candidate>, std::greater<>> queue;
        for (int i : touched_) {
            distance_[i] = infinite;
            settled_[i] = 0;
        }
        touched_.clear();
        std::vector<int> done;
        double length = 0.0;
        int free = -1;
        for (int j = first; free < 0;) {
            for (std::int64_t p = columns_.start[j]; p < columns_.start[j + 1]; ++p) {
                const int i = columns_.column[p];
                const double d = length + std::max(columns_.value[p] - u_[i] - v_[j], 0.0);
                if (!settled_[i] && d < distance_[i]) { // an entry of zero costs infinitely much: never taken
                    if (distance_[i] == infinite)
                        touched_.push_back(i);
                    distance_[i] = d;
                    from_[i] = j;
                    queue.push({d, i});
                }
            }
            int row = -1;
            while (!queue.empty() && row < 0) {
                if (!settled_[queue.top().second])
                    row = queue.top().second;
                queue.pop();
            }
            if (row < 0)
                return;
            length = distance_[row];
            settled_[row] = 1;
            if (columnOf_[row] < 0)
                free = row;
            else {
                done.push_back(row);
                j = columnOf_[row];
            }
        }

        for (int i : done) {
            u_[i] += distance_[i] - length;
            v_[columnOf_[i]] -= distance_[i] - length;
        }
        v_[first] += length;
        for (int row = free;;) {
            const int column = from_[row], next = rowOf_[column];
            match(row, column);
            if (column == first)
                break;
            row = next;
        }
    }

    SparseMatrix columns_; // costs by column
    std::vector<double> largest_, u_, v_;
    std::vector<int> rowOf_, columnOf_;
    std::vector<double> distance_;
    std::vector<int> from_;
    std::vector<char> settled_;
    std::vector<int> touched_; // rows reached by the last search
};

} // namespace

Matching matchLargest(const SparseMatrix& a)
{
    return Matcher(a).run();
}
