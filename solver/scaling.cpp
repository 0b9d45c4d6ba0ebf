// SPDX-License-Identifier: BSD-3-Clause
#include "scaling.h"

#include "dense.h"
#include "matching.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>

namespace {

// So that the product of two is a number, and a product with it is rounded nowhere but at the very end.
constexpr double mostExponent = 511.0;
// A matched entry of at least 2^-this, where the best ones are 1, is good enough to stay where it is.
constexpr double goodEnough = 10.0;

double nearestPowerOfTwo(double logarithm) // to the base 2
{
    return std::exp2(std::clamp(std::round(logarithm), -mostExponent, mostExponent));
}

int exponentOf(double d) // 1/2 <= |d| / 2^exponent < 1
{
    if (const auto biased = std::bit_cast<std::uint64_t>(d) >> 52 & 0x7ff; biased > 0)
        return static_cast<int>(biased) - 1022;
    int exponent; // of a denormal number
    std::frexp(d, &exponent);
    return exponent;
}

double powerOfTwo(int exponent) // -1022 ... 1023
{
    return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

// Whether the pairs known from other values are still good beside those of a new matching.
bool stillGood(const SparseMatrix& a, const Matching& matching, const std::vector<int>& known)
{
    if (static_cast<int>(known.size()) != a.n || matching.size < a.n)
        return false;
    for (int j = 0; j < a.n; ++j) {
        const int i = known[j];
        double entry = 0.0;
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] == j)
                entry = std::fabs(a.value[p]);
        if (!(std::log2(entry) + matching.rowLogarithm[i] + matching.columnLogarithm[j] >= -goodEnough))
            return false;
    }
    return true;
}

// Row i is that of number rowOf[i].
SparseMatrix withRows(const SparseMatrix& a, const std::vector<int>& rowOf)
{
    SparseMatrix m;
    m.n = a.n;
    m.symmetric = a.symmetric;
    m.start.reserve(a.start.size());
    m.column.reserve(a.entries());
    m.value.reserve(a.entries());
    m.start.push_back(0);
    for (int from : rowOf) {
        const auto begin = a.start[from], end = a.start[from + 1];
        m.column.insert(m.column.end(), a.column.begin() + begin, a.column.begin() + end);
        m.value.insert(m.value.end(), a.value.begin() + begin, a.value.begin() + end);
        m.start.push_back(static_cast<std::int64_t>(m.column.size()));
    }
    return m;
}

} // namespace

SparseMatrix Equilibrated::applied(SparseMatrix a) const
{
    if (!std::is_sorted(rowOf.begin(), rowOf.end()))
        a = withRows(a, rowOf);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            a.value[p] *= row[i] * column[a.column[p]];
    return a;
}

std::vector<double> diagonalScales(const std::vector<double>& diagonal)
{
    std::vector<double> s(diagonal.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (diagonal[i] == 0.0 || !std::isfinite(diagonal[i]))
            return {};
        const int half = exponentOf(diagonal[i]) >> 1; // rounded down
        if (std::abs(half) > static_cast<int>(mostExponent))
            return {};
        s[i] = powerOfTwo(-half);
    }
    return s;
}

// Rows and columns are divided by the square roots of the row maxima, as often as that changes something, six
// times at most (Ruiz, 2001).
Equilibrated equilibrateSymmetric(const SparseMatrix& a)
{
    Equilibrated e;
    e.rowOf.resize(a.n);
    std::iota(e.rowOf.begin(), e.rowOf.end(), 0);
    std::vector<double> s(a.n, 1.0), largest(a.n);
    bool changed = true;
    for (int sweep = 0; sweep < 6 && changed; ++sweep) {
        for (int i = 0; i < a.n; ++i) {
            largest[i] = 0.0;
            for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
                largest[i] = std::max(largest[i], std::fabs(a.value[p]) * (s[a.column[p]] * s[i]));
        }
        changed = false;
        for (int i = 0; i < a.n; ++i) {
            e.structuralRank += sweep == 0 && largest[i] > 0.0;
            if (largest[i] > 0.0 && (largest[i] < 0.5 || largest[i] > 2.0)) {
                const double before = s[i];
                s[i] = nearestPowerOfTwo(std::log2(s[i]) - 0.5 * std::log2(largest[i]));
                changed = changed || s[i] != before;
            }
        }
    }
    e.row = e.column = s;
    e.matrix = e.applied(a);
    return e;
}

Equilibrated equilibrateUnsymmetric(const SparseMatrix& a, const std::vector<int>& known)
{
    const Matching matching = matchLargest(a);
    Equilibrated e;
    e.rowOf = stillGood(a, matching, known) ? known : matching.rowOf;
    e.structuralRank = matching.size;
    e.row.resize(a.n);
    e.column.resize(a.n);
    for (int i = 0; i < a.n; ++i) {
        e.row[i] = nearestPowerOfTwo(matching.rowLogarithm[e.rowOf[i]]);
        e.column[i] = nearestPowerOfTwo(matching.columnLogarithm[i]);
    }
    e.matrix = e.applied(a);
    return e;
}

void Equilibrated::enter(Vectors& b) const
{
    if (!std::is_sorted(rowOf.begin(), rowOf.end())) {
        std::vector<double> moved(b.n);
        for (int j = 0; j < b.columns; ++j) {
            for (int i = 0; i < b.n; ++i)
                moved[i] = b.column(j)[rowOf[i]];
            std::copy(moved.begin(), moved.end(), b.column(j));
        }
    }
    dense::scaleRows(b.n, b.columns, b.value.data(), b.n, row.data());
}
