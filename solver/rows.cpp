// SPDX-License-Identifier: BSD-3-Clause
#include "rows.h"

#include "failure.h"
#include "storage.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <string>

namespace {

// Entries of the matrix that are scaled in one task: some microseconds.
constexpr std::int64_t entriesTogether = 1 << 13;

// An entry of the matrix, before equal places are joined, and the entry given that it comes from.
struct Entry
{
    int row, column;
    std::int64_t source;
};

void check(int n, const std::int64_t* start, const int* column)
{
    if (start[0] < 0)
        throw Failure(BLA_SOLVER_BAD_MATRIX, "the first row pointer is negative");
    for (int i = 0; i < n; ++i)
        if (start[i + 1] < start[i])
            throw Failure(BLA_SOLVER_BAD_MATRIX, "the row pointers descend at row " + std::to_string(i));
    for (int i = 0; i < n; ++i)
        for (std::int64_t e = start[i]; e < start[i + 1]; ++e)
            if (column[e] < 0 || column[e] >= n)
                throw Failure(BLA_SOLVER_BAD_MATRIX, "row " + std::to_string(i) + " has an entry in column " +
                                                         std::to_string(column[e]) + ", outside the matrix");
}

// Calls take(row, column, source) for every entry of the matrix, row by row of what was given.
template <class Take>
void forEntries(Kind kind, int n, const std::int64_t* start, const int* column, Take take)
{
    for (int i = 0; i < n; ++i)
        for (std::int64_t e = start[i]; e < start[i + 1]; ++e) {
            const int j = column[e];
            if ((kind == Kind::symmetricLower && j > i) || (kind == Kind::symmetricUpper && j < i))
                continue;
            take(i, j, e);
            if (kind != Kind::general && i != j)
                take(j, i, e);
        }
}

// The entries sorted by column, stably: by rows within a column, as they were given within a place. A second
// counting sort by row then leaves them by row, column and sequence.
std::vector<Entry> byColumn(Kind kind, int n, const std::int64_t* start, const int* column)
{
    std::vector<std::int64_t> next(static_cast<std::size_t>(n) + 1, 0);
    forEntries(kind, n, start, column, [&](int, int j, std::int64_t) { ++next[j + 1]; });
    for (int j = 0; j < n; ++j)
        next[j + 1] += next[j];
    std::vector<Entry> entries(next[n]);
    forEntries(kind, n, start, column, [&](int i, int j, std::int64_t e) { entries[next[j]++] = {i, j, e}; });
    return entries;
}

} // namespace

Rows::Rows(Kind kind, int n, const std::int64_t* start, const int* column)
{
    check(n, start, column);
    const std::vector<Entry> entries = byColumn(kind, n, start, column);
    std::vector<std::int64_t> next(static_cast<std::size_t>(n) + 1, 0);
    for (const Entry& e : entries)
        ++next[e.row + 1];
    for (int i = 0; i < n; ++i)
        next[i + 1] += next[i];
    const std::vector<std::int64_t> begin = next;
    source_.resize(entries.size());
    pattern_.column.resize(entries.size());
    for (const Entry& e : entries) {
        pattern_.column[next[e.row]] = e.column;
        source_[next[e.row]++] = e.source;
    }

    pattern_.n = n;
    pattern_.symmetric = kind != Kind::general;
    pattern_.start.assign(1, 0);
    pattern_.start.reserve(begin.size());
    std::int64_t kept = 0;
    for (int i = 0; i < n; ++i) {
        for (std::int64_t s = begin[i]; s < begin[i + 1]; ++s) {
            if (s > begin[i] && pattern_.column[s] == pattern_.column[kept - 1])
                continue;
            pattern_.column[kept++] = pattern_.column[s];
            first_.push_back(s);
        }
        pattern_.start.push_back(kept);
    }
    if (pattern_.symmetric)
        for (int i = 0; i < n; ++i)
            lowerEnd_.push_back(std::upper_bound(pattern_.column.begin() + pattern_.start[i],
                                                 pattern_.column.begin() + pattern_.start[i + 1], i) -
                                pattern_.column.begin());
    pattern_.column.resize(kept);
    if (kept == static_cast<std::int64_t>(source_.size()))
        first_ = {};
    else
        first_.push_back(static_cast<std::int64_t>(source_.size()));
}

double Rows::entry(const double* value, std::int64_t p) const
{
    if (first_.empty())
        return value[source_[p]];
    double sum = value[source_[first_[p]]];
    for (std::int64_t s = first_[p] + 1; s < first_[p + 1]; ++s)
        sum += value[source_[s]];
    return sum;
}

std::vector<double> Rows::diagonal(const double* value) const
{
    std::vector<double> d(pattern_.n, 0.0);
    for (int i = 0; i < pattern_.n; ++i)
        if (const std::int64_t end = lowerEnd_[i]; end > pattern_.start[i] && pattern_.column[end - 1] == i)
            d[i] = entry(value, end - 1);
    return d;
}

bool Rows::scaledLower(const double* value, const std::vector<double>& scale, double* scaled,
                       const Team& team) const
{
    const auto entries = static_cast<std::int64_t>(pattern_.entries()),
               groups = entries / entriesTogether + 1;
    const auto rowAt = [&](std::int64_t group) { // the first with none but entries from there on
        const auto row =
            std::lower_bound(pattern_.start.begin(), pattern_.start.end() - 1, group * entriesTogether);
        return static_cast<int>(row - pattern_.start.begin());
    };
    std::atomic<bool> bounded = true;
    TaskGraph(static_cast<int>(groups), {}).execute(team, [&](int group) {
        if (!scaledRows(rowAt(group), rowAt(group + 1), value, scale.data(), scaled))
            bounded = false;
    });
    return bounded;
}

bool Rows::scaledRows(int first, int last, const double* value, const double* scale, double* scaled) const
{
    std::int64_t beyond = 0;
    const auto scaleRow = [&](int i, const auto& entryAt) {
        for (std::int64_t p = pattern_.start[i]; p < lowerEnd_[i]; ++p) {
            scaled[p] = entryAt(p) * (scale[i] * scale[pattern_.column[p]]);
            beyond += std::fabs(scaled[p]) <= 2.0 ? 0 : 1;
        }
    };
    for (int i = first; i < last; ++i)
        if (first_.empty())
            scaleRow(i, [&](std::int64_t p) { return value[source_[p]]; });
        else
            scaleRow(i, [&](std::int64_t p) { return entry(value, p); });
    return beyond == 0;
}

SparseMatrix Rows::matrix(const double* value) const
{
    SparseMatrix a = pattern_;
    const std::int64_t entries = static_cast<std::int64_t>(a.column.size());
    a.value.resize(entries);
    double finite = 0.0; // stays zero as long as every value is finite
    for (std::int64_t p = 0; p < entries; ++p) {
        a.value[p] = entry(value, p);
        finite += a.value[p] * 0.0;
    }
    if (std::isnan(finite))
        throw Failure(BLA_SOLVER_BAD_MATRIX, "a value of the matrix is not finite");
    return a;
}

double Rows::bytes() const
{
    return storageOf(pattern_.start) + storageOf(pattern_.column) + storageOf(lowerEnd_) +
           storageOf(source_) + storageOf(first_);
}
