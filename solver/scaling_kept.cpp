// SPDX-License-Identifier: BSD-3-Clause
// Equilibration where unknowns are kept. Their Schur complement is A(k,k) - A(k,e)*A(e,e)^-1*A(e,k) only as
// long as no row of e changes places with one of k: what is eliminated is matched and scaled by itself, and
// what is kept then takes the factors that bring its entries to one at most.
#include "matching.h"
#include "scaling.h"

#include <algorithm>
#include <cmath>

namespace {

// A(e,e), and the unit matrix in the place of A(k,k).
SparseMatrix uncoupled(const SparseMatrix& a, const std::vector<char>& isKept)
{
    SparseMatrix m;
    m.n = a.n;
    m.start.push_back(0);
    for (int i = 0; i < a.n; ++i) {
        for (std::int64_t p = a.start[i]; p < a.start[i + 1] && !isKept[i]; ++p)
            if (!isKept[a.column[p]]) {
                m.column.push_back(a.column[p]);
                m.value.push_back(a.value[p]);
            }
        if (isKept[i]) {
            m.column.push_back(i);
            m.value.push_back(1.0);
        }
        m.start.push_back(static_cast<std::int64_t>(m.column.size()));
    }
    return m;
}

// The power of two that brings entries of this size to about one.
double factorFor(double largest)
{
    return largest > 0.0 ? std::exp2(std::clamp(-std::round(std::log2(largest)), -511.0, 511.0)) : 1.0;
}

} // namespace

Equilibrated equilibrateUnsymmetric(const SparseMatrix& a, const std::vector<int>& known,
                                    const std::vector<int>& kept)
{
    std::vector<char> isKept(a.n, 0);
    for (int k : kept)
        isKept[k] = 1;
    Equilibrated e = equilibrateUnsymmetric(uncoupled(a, isKept), known);
    e.structuralRank = matchLargest(a).size;

    // columns by the rows of e, then rows by all columns
    std::vector<double> largest(a.n, 0.0);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[e.rowOf[i]]; p < a.start[e.rowOf[i] + 1] && !isKept[i]; ++p)
            largest[a.column[p]] = std::max(largest[a.column[p]], std::fabs(a.value[p]) * e.row[i]);
    for (int k : kept)
        e.column[k] = factorFor(largest[k]);
    for (int k : kept) {
        double row = 0.0;
        for (std::int64_t p = a.start[k]; p < a.start[k + 1]; ++p)
            row = std::max(row, std::fabs(a.value[p]) * e.column[a.column[p]]);
        e.row[k] = factorFor(row);
    }
    e.matrix = e.applied(a);
    return e;
}
