// SPDX-License-Identifier: BSD-3-Clause
#include "triangles.h"

#include <algorithm>
#include <cstdint>

// Vectors of four, in two registers where the processor has none that wide. Every body below is compiled for
// both; without fused operations the results are the same.
#define BLA_BODY [[gnu::always_inline]] inline
#define BLA_WIDE __attribute__((target("avx2")))

namespace {

typedef double Four __attribute__((vector_size(32)));
typedef double FourAnywhere __attribute__((vector_size(32), aligned(8), may_alias));
constexpr int lanes = 4;

// From and to any address. A vector by value would change the calling convention with the processor.
BLA_BODY void load(Four& x, const double* p)
{
    x = *reinterpret_cast<const FourAnywhere*>(p);
}

BLA_BODY void load(double& x, const double* p)
{
    x = *p;
}

BLA_BODY void store(double* p, const Four& x)
{
    *reinterpret_cast<FourAnywhere*>(p) = x;
}

BLA_BODY void store(double* p, const double& x)
{
    *p = x;
}

bool wide()
{
    return __builtin_cpu_supports("avx2") != 0;
}

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
    double strip[stripRows * triangles::mostColumns] = {};
    for (int j = 0; j < n; ++j)
        std::copy_n(b + i + ldb * j, m - i, strip + stripRows * j);
    solveStrip(n, u, ldu, strip, stripRows);
    for (int j = 0; j < n; ++j)
        std::copy_n(strip + stripRows * j, m - i, b + i + ldb * j);
}

// v := v - sum over Columns of column q of l * x[q], for the rows of T
template <class T, int Columns>
BLA_BODY void subtractColumns(const double* l, std::int64_t ld, const double* x, double* v)
{
    T sum{}, part;
    for (int q = 0; q < Columns; ++q) {
        load(part, l + ld * q);
        sum += part * x[q];
    }
    load(part, v);
    store(v, part - sum);
}

// Columns j ... j + Columns - 1 of L.
template <int Columns>
BLA_BODY void forwardColumns(int j, int order, const double* l, const double* reciprocal, double* v)
{
    const double* const column = l + std::int64_t{order} * j;
    for (int q = 0; q < Columns; ++q) {
        for (int k = 0; k < q; ++k)
            v[j + q] -= column[j + q + std::int64_t{order} * k] * v[j + k];
        v[j + q] *= reciprocal[j + q];
    }
    int i = j + Columns;
    for (; i + lanes <= order; i += lanes)
        subtractColumns<Four, Columns>(column + i, order, v + j, v + i);
    for (; i < order; ++i)
        subtractColumns<double, Columns>(column + i, order, v + j, v + i);
}

template <int Columns>
BLA_BODY void backwardColumns(int j, int order, const double* l, const double* reciprocal, double* v)
{
    const double* const column = l + std::int64_t{order} * j;
    Four sums[Columns] = {};
    int i = j + Columns;
    for (; i + lanes <= order; i += lanes) {
        Four part, factor;
        load(factor, v + i);
        for (int q = 0; q < Columns; ++q) {
            load(part, column + i + std::int64_t{order} * q);
            sums[q] += part * factor;
        }
    }
    for (int q = Columns - 1; q >= 0; --q) {
        const double* const own = column + std::int64_t{order} * q;
        double sum = (sums[q][0] + sums[q][1]) + (sums[q][2] + sums[q][3]);
        for (int k = i; k < order; ++k)
            sum += own[k] * v[k];
        for (int k = q + 1; k < Columns; ++k)
            sum += own[j + k] * v[j + k];
        v[j + q] = (v[j + q] - sum) * reciprocal[j + q];
    }
}

BLA_BODY void forwardBlocks(int order, int pivots, const double* l, const double* reciprocal, double* v)
{
    int j = 0;
    for (; j + tileColumns <= pivots; j += tileColumns)
        forwardColumns<tileColumns>(j, order, l, reciprocal, v);
    for (; j < pivots; ++j)
        forwardColumns<1>(j, order, l, reciprocal, v);
}

BLA_BODY void backwardBlocks(int order, int pivots, const double* l, const double* reciprocal, double* v)
{
    int j = pivots;
    for (; j % tileColumns != 0; --j)
        backwardColumns<1>(j - 1, order, l, reciprocal, v);
    for (; j > 0; j -= tileColumns)
        backwardColumns<tileColumns>(j - tileColumns, order, l, reciprocal, v);
}

// Defines `name` by its body, compiled for both kinds of processor.
#define BLA_FOR_BOTH(name, body, parameters, arguments)                                                      \
    BLA_WIDE void name##Wide parameters                                                                      \
    {                                                                                                        \
        body arguments;                                                                                      \
    }                                                                                                        \
    void name##Narrow parameters                                                                             \
    {                                                                                                        \
        body arguments;                                                                                      \
    }

BLA_FOR_BOTH(strips, solveStrips, (int m, int n, const double* u, int ldu, double* b, int ldb),
             (m, n, u, ldu, b, ldb))
BLA_FOR_BOTH(forward, forwardBlocks,
             (int order, int pivots, const double* l, const double* reciprocal, double* v),
             (order, pivots, l, reciprocal, v))
BLA_FOR_BOTH(backward, backwardBlocks,
             (int order, int pivots, const double* l, const double* reciprocal, double* v),
             (order, pivots, l, reciprocal, v))

} // namespace

void triangles::solveByUpperUnit(int m, int n, const double* u, int ldu, double* b, int ldb)
{
    (wide() ? stripsWide : stripsNarrow)(m, n, u, ldu, b, ldb);
}

void triangles::forward(int order, int pivots, const double* l, const double* reciprocal, double* v)
{
    (wide() ? forwardWide : forwardNarrow)(order, pivots, l, reciprocal, v);
}

void triangles::backward(int order, int pivots, const double* l, const double* reciprocal, double* v)
{
    (wide() ? backwardWide : backwardNarrow)(order, pivots, l, reciprocal, v);
}
