// SPDX-License-Identifier: BSD-3-Clause
#include "triangles.h"

#include "vectors.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr int stripRows = 2 * lanes, tileColumns = 4;

// Columns j ... j + Columns - 1 of a strip; those before are done.
template <int Columns>
BLA_BODY void solveTile(int j, const double* u, std::int64_t ldu, double* b, std::int64_t ldb)
{
    Four x[Columns][2];
    for (int q = 0; q < Columns; ++q) {
        load(x[q][0], b + ldb * (j + q));
        load(x[q][1], b + ldb * (j + q) + lanes);
    }
    for (int k = 0; k < j; ++k) {
        Four upper, lower;
        load(upper, b + ldb * k);
        load(lower, b + ldb * k + lanes);
        for (int q = 0; q < Columns; ++q) {
            const double factor = u[k + ldu * (j + q)];
            x[q][0] -= upper * factor;
            x[q][1] -= lower * factor;
        }
    }
    for (int q = 0; q < Columns; ++q) {
        for (int k = 0; k < q; ++k) {
            const double factor = u[j + k + ldu * (j + q)];
            x[q][0] -= x[k][0] * factor;
            x[q][1] -= x[k][1] * factor;
        }
        store(b + ldb * (j + q), x[q][0]);
        store(b + ldb * (j + q) + lanes, x[q][1]);
    }
}

BLA_BODY void solveStrip(int n, const double* u, std::int64_t ldu, double* b, std::int64_t ldb)
{
    int j = 0;
    for (; j + tileColumns <= n; j += tileColumns)
        solveTile<tileColumns>(j, u, ldu, b, ldb);
    for (; j < n; ++j)
        solveTile<1>(j, u, ldu, b, ldb);
}

// The rows behind the last whole strip go through one of their own.
BLA_BODY void solveStrips(int m, int n, const double* u, std::int64_t ldu, double* b, std::int64_t ldb)
{
    int i = 0;
    for (; i + stripRows <= m; i += stripRows)
        solveStrip(n, u, ldu, b + i, ldb);
    if (i == m)
        return;
    double strip[stripRows * narrowTriangle] = {};
    for (int j = 0; j < n; ++j)
        std::copy_n(b + i + ldb * j, m - i, strip + stripRows * j);
    solveStrip(n, u, ldu, strip, stripRows);
    for (int j = 0; j < n; ++j)
        std::copy_n(strip + stripRows * j, m - i, b + i + ldb * j);
}

} // namespace

BLA_FOR_BOTH(solveByUpperUnit, solveStrips, (int m, int n, const double* u, int ldu, double* b, int ldb),
             (m, n, u, ldu, b, ldb))
