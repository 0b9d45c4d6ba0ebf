// SPDX-License-Identifier: BSD-3-Clause
#include "scaling.h"

#include "dense.h"
#include "matching.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

double nearestPowerOfTwo(double logarithm) // to the base 2
{
    return std::exp2(std::clamp(std::round(logarithm), -1000.0, 1000.0));
}

void scaleEntries(Equilibrated& e)
{
    for (int i = 0; i < e.matrix.n; ++i)
        for (int p = e.matrix.start[i]; p < e.matrix.start[i + 1]; ++p)
            e.matrix.value[p] = std::ldexp(e.matrix.value[p],
                                           std::ilogb(e.row[i]) + std::ilogb(e.column[e.matrix.column[p]]));
}

} // namespace

// Rows and columns are divided by the square roots of the row maxima, a few times over (Ruiz, 2001).
Equilibrated equilibrateSymmetric(const SparseMatrix& a)
{
    Equilibrated e;
    e.matrix = a;
    e.rowOf.resize(a.n);
    std::iota(e.rowOf.begin(), e.rowOf.end(), 0);
    std::vector<double> s(a.n, 1.0), largest(a.n);
    for (int sweep = 0; sweep < 6; ++sweep) {
        for (int i = 0; i < a.n; ++i) {
            largest[i] = 0.0;
            for (int p = a.start[i]; p < a.start[i + 1]; ++p)
                largest[i] = std::max(largest[i], std::fabs(a.value[p]) * s[a.column[p]] * s[i]);
        }
        for (int i = 0; i < a.n; ++i) {
            e.structuralRank += sweep == 0 && largest[i] > 0.0;
            if (largest[i] > 0.0)
                s[i] = nearestPowerOfTwo(std::log2(s[i]) - 0.5 * std::log2(largest[i]));
        }
    }
    e.row = e.column = s;
    scaleEntries(e);
    return e;
}

Equilibrated equilibrateUnsymmetric(const SparseMatrix& a)
{
    const Matching matching = matchLargest(a);
    Equilibrated e;
    e.rowOf = matching.rowOf;
    e.structuralRank = matching.size;
    e.row.resize(a.n);
    e.column.resize(a.n);
    e.matrix.n = a.n;
    e.matrix.start.push_back(0);
    for (int i = 0; i < a.n; ++i) {
        const int old = e.rowOf[i];
        e.row[i] = nearestPowerOfTwo(matching.rowLogarithm[old]);
        e.column[i] = nearestPowerOfTwo(matching.columnLogarithm[i]);
        e.matrix.column.insert(e.matrix.column.end(), a.column.begin() + a.start[old],
                               a.column.begin() + a.start[old + 1]);
        e.matrix.value.insert(e.matrix.value.end(), a.value.begin() + a.start[old],
                              a.value.begin() + a.start[old + 1]);
        e.matrix.start.push_back(static_cast<int>(e.matrix.column.size()));
    }
    scaleEntries(e);
    return e;
}

void Equilibrated::enter(Vectors& b) const
{
    std::vector<double> moved(b.n);
    for (int j = 0; j < b.columns; ++j) {
        for (int i = 0; i < b.n; ++i)
            moved[i] = b.column(j)[rowOf[i]];
        std::copy(moved.begin(), moved.end(), b.column(j));
    }
    dense::scaleRows(b.n, b.columns, b.value.data(), b.n, row.data());
}

void Equilibrated::leave(Vectors& x) const
{
    dense::scaleRows(x.n, x.columns, x.value.data(), x.n, column.data());
}

void Equilibrated::enterTransposed(Vectors& b) const
{
    leave(b);
}

void Equilibrated::leaveTransposed(Vectors& x) const
{
    dense::scaleRows(x.n, x.columns, x.value.data(), x.n, row.data());
    std::vector<double> moved(x.n);
    for (int j = 0; j < x.columns; ++j) {
        for (int i = 0; i < x.n; ++i)
            moved[rowOf[i]] = x.column(j)[i];
        std::copy(moved.begin(), moved.end(), x.column(j));
    }
}
