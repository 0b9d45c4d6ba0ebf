// SPDX-License-Identifier: BSD-3-Clause
#include "columns.h"

#include "vectors.h"

#include <algorithm>
#include <cstdint>

namespace {

// Columns of the panel that are taken at once. Each of their unknowns waits for the one before: what it takes
// from that has its own reciprocal in it beforehand, and it waits for a product and a difference only.
constexpr int together = 4;
// Sums are made of as many terms at a time: the error of a long one grows with the number of its parts.
constexpr int chunk = 32;

// Asks for a cache line of each of the columns to come, one for every line that is used: the processor itself
// looks no further than the end of a page.
constexpr int line = 8;

template <int Columns>
BLA_BODY void fetch(const double* l, std::int64_t ld)
{
    for (int q = 0; q < Columns; ++q)
        __builtin_prefetch(l + ld * q, 0, 2);
}

// One right-hand side: vectors run along the rows.

// w := w + sum over Columns of column q of l * x[q], for the rows of T
template <class T, int Columns>
BLA_BODY void addColumns(const double* l, std::int64_t ld, const double* x, double* w)
{
    T sum{}, part;
    for (int q = 0; q < Columns; ++q) {
        load(part, l + ld * q);
        sum += part * x[q];
    }
    load(part, w);
    store(w, part + sum);
}

// Columns j ... j + Columns - 1 of a part.
template <int Columns>
BLA_BODY void forwardColumns(const PanelPart& part, int j, int order, const double* l,
                             const double* reciprocal, double* v, double* w)
{
    const double* const column = l + std::int64_t{order} * j;
    for (int q = 0; q < Columns && part.diagonal(); ++q) {
        double x = (v[j + q] - w[j + q]) * reciprocal[j + q];
        for (int k = 0; k < q; ++k)
            x -= column[j + q + std::int64_t{order} * k] * reciprocal[j + q] * v[j + k];
        v[j + q] = x;
    }
    const double* const next = column + std::int64_t{order} * Columns;
    int i = part.diagonal() ? j + Columns : part.top;
    for (; i + line <= part.bottom; i += line) {
        fetch<Columns>(next + i, order);
        for (int k = i; k < i + line; k += lanes)
            addColumns<Four, Columns>(column + k, order, v + j, w + k);
    }
    for (; i + lanes <= part.bottom; i += lanes)
        addColumns<Four, Columns>(column + i, order, v + j, w + i);
    for (; i < part.bottom; ++i)
        addColumns<double, Columns>(column + i, order, v + j, w + i);
}

template <int Columns>
BLA_BODY void backwardColumns(const PanelPart& part, int j, int order, const double* l,
                              const double* reciprocal, double* v, double* s)
{
    const double* const column = l + std::int64_t{order} * j;
    const double* const next = column - std::int64_t{order} * Columns;
    Four sums[Columns] = {};
    const int first = part.diagonal() ? j + Columns : part.top;
    int i = first;
    for (const int whole = part.bottom - (part.bottom - i) % lanes; i < whole;) {
        Four parts[Columns] = {};
        for (const int end = std::min(i + chunk * lanes, whole); i < end; i += lanes) {
            Four term, factor;
            load(factor, v + i);
            if ((i - first) % line == 0)
                fetch<Columns>(next + i, order);
            for (int q = 0; q < Columns; ++q) {
                load(term, column + i + std::int64_t{order} * q);
                parts[q] += term * factor;
            }
        }
        for (int q = 0; q < Columns; ++q)
            sums[q] += parts[q];
    }
    double sum[Columns];
    for (int q = 0; q < Columns; ++q)
        sum[q] = (sums[q][0] + sums[q][1]) + (sums[q][2] + sums[q][3]);
    for (; i < part.bottom; ++i)
        for (int q = 0; q < Columns; ++q)
            sum[q] += column[i + std::int64_t{order} * q] * v[i];
    for (int q = 0; q < Columns && s; ++q)
        sum[q] += s[j + q];
    if (!part.diagonal()) {
        std::copy_n(sum, Columns, s + j);
        return;
    }
    double x[Columns];
    for (int q = Columns - 1; q >= 0; --q) {
        x[q] = (v[j + q] - sum[q]) * reciprocal[j + q];
        for (int k = Columns - 1; k > q; --k) // the one that comes last is taken last
            x[q] -= column[j + k + std::int64_t{order} * q] * reciprocal[j + q] * x[k];
    }
    // At once, as they are read: the processor hands on no parts that it would have to put together.
    if constexpr (Columns == lanes)
        store(v + j, Four{x[0], x[1], x[2], x[3]});
    else
        std::copy_n(x, Columns, v + j);
}

BLA_BODY void forwardOne(const PanelPart& part, int order, const double* l, const double* reciprocal,
                         double* v, double* w)
{
    int j = part.left;
    for (; j + together <= part.right; j += together)
        forwardColumns<together>(part, j, order, l, reciprocal, v, w);
    for (; j < part.right; ++j)
        forwardColumns<1>(part, j, order, l, reciprocal, v, w);
}

BLA_BODY void backwardOne(const PanelPart& part, int order, const double* l, const double* reciprocal,
                          double* v, double* s)
{
    int j = part.right;
    for (; (j - part.left) % together != 0; --j)
        backwardColumns<1>(part, j - 1, order, l, reciprocal, v, s);
    for (; j > part.left; j -= together)
        backwardColumns<together>(part, j - together, order, l, reciprocal, v, s);
}

// Several: vectors run along a row of V, `ld` apart, Count of them.

template <class T, int Count, int Columns>
BLA_BODY void forwardGroup(const PanelPart& part, int j, int order, const double* l, const double* reciprocal,
                           double* v, double* w, std::int64_t ld)
{
    const double* const column = l + std::int64_t{order} * j;
    T x[Columns][Count];
    for (int q = 0; q < Columns; ++q)
        for (int g = 0; g < Count; ++g) {
            const std::int64_t at = ld * (j + q) + lanesOf<T> * g;
            T sum;
            load(x[q][g], v + at);
            if (!part.diagonal())
                continue;
            load(sum, w + at);
            x[q][g] = (x[q][g] - sum) * reciprocal[j + q];
            for (int k = 0; k < q; ++k)
                x[q][g] -= x[k][g] * (column[j + q + std::int64_t{order} * k] * reciprocal[j + q]);
            store(v + at, x[q][g]);
        }
    const double* const next = column + std::int64_t{order} * Columns;
    const int first = part.diagonal() ? j + Columns : part.top;
    for (int i = first; i < part.bottom; ++i) {
        if ((i - first) % line == 0)
            fetch<Columns>(next + i, order);
        for (int g = 0; g < Count; ++g) {
            double* const row = w + ld * i + lanesOf<T> * g;
            T before, sum{};
            for (int q = 0; q < Columns; ++q)
                sum += x[q][g] * column[i + std::int64_t{order} * q];
            load(before, row);
            store(row, before + sum);
        }
    }
}

template <class T, int Count, int Columns>
BLA_BODY void backwardGroup(const PanelPart& part, int j, int order, const double* l,
                            const double* reciprocal, double* v, double* s, std::int64_t ld)
{
    const double* const column = l + std::int64_t{order} * j;
    const double* const next = column - std::int64_t{order} * Columns;
    T x[Columns][Count], sums[Columns][Count] = {};
    for (int first = part.diagonal() ? j + Columns : part.top; first < part.bottom; first += chunk) {
        T parts[Columns][Count] = {};
        for (int i = first; i < std::min(first + chunk, part.bottom); ++i) {
            if ((i - first) % line == 0)
                fetch<Columns>(next + i, order);
            for (int g = 0; g < Count; ++g) {
                T row;
                load(row, v + ld * i + lanesOf<T> * g);
                for (int q = 0; q < Columns; ++q)
                    parts[q][g] += row * column[i + std::int64_t{order} * q];
            }
        }
        for (int q = 0; q < Columns; ++q)
            for (int g = 0; g < Count; ++g)
                sums[q][g] += parts[q][g];
    }
    for (int q = 0; q < Columns && s; ++q)
        for (int g = 0; g < Count; ++g) {
            double* const own = s + ld * (j + q) + lanesOf<T> * g;
            T before;
            load(before, own);
            sums[q][g] += before;
            if (!part.diagonal())
                store(own, sums[q][g]);
        }
    for (int q = Columns - 1; q >= 0 && part.diagonal(); --q)
        for (int g = 0; g < Count; ++g) {
            double* const own = v + ld * (j + q) + lanesOf<T> * g;
            load(x[q][g], own);
            x[q][g] = (x[q][g] - sums[q][g]) * reciprocal[j + q];
            for (int k = Columns - 1; k > q; --k)
                x[q][g] -= x[k][g] * (column[j + k + std::int64_t{order} * q] * reciprocal[j + q]);
            store(own, x[q][g]);
        }
}

template <class T, int Count>
BLA_BODY void forwardSeveral(const PanelPart& part, int order, const double* l, const double* reciprocal,
                             double* v, double* w, std::int64_t ld)
{
    int j = part.left;
    for (; j + together <= part.right; j += together)
        forwardGroup<T, Count, together>(part, j, order, l, reciprocal, v, w, ld);
    for (; j < part.right; ++j)
        forwardGroup<T, Count, 1>(part, j, order, l, reciprocal, v, w, ld);
}

template <class T, int Count>
BLA_BODY void backwardSeveral(const PanelPart& part, int order, const double* l, const double* reciprocal,
                              double* v, double* s, std::int64_t ld)
{
    int j = part.right;
    for (; (j - part.left) % together != 0; --j)
        backwardGroup<T, Count, 1>(part, j - 1, order, l, reciprocal, v, s, ld);
    for (; j > part.left; j -= together)
        backwardGroup<T, Count, together>(part, j - together, order, l, reciprocal, v, s, ld);
}

template <class Widest>
BLA_BODY void forward(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                      double* w, int width)
{
    if (width == 1)
        return forwardOne(part, order, l, reciprocal, v, w);
    int g = 0;
    for (; g + 2 * lanes <= width; g += 2 * lanes)
        forwardSeveral<Widest, 2 * lanes / lanesOf<Widest>>(part, order, l, reciprocal, v + g, w + g, width);
    if (g < width)
        forwardSeveral<Four, 1>(part, order, l, reciprocal, v + g, w + g, width);
}

template <class Widest>
BLA_BODY void backward(const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
                       double* s, int width)
{
    if (width == 1)
        return backwardOne(part, order, l, reciprocal, v, s);
    int g = 0;
    for (; g + 2 * lanes <= width; g += 2 * lanes)
        backwardSeveral<Widest, 2 * lanes / lanesOf<Widest>>(part, order, l, reciprocal, v + g,
                                                             s ? s + g : nullptr, width);
    if (g < width)
        backwardSeveral<Four, 1>(part, order, l, reciprocal, v + g, s ? s + g : nullptr, width);
}

} // namespace

BLA_FOR_ALL(solveForward, forward,
            (const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
             double* w, int width),
            (part, order, l, reciprocal, v, w, width))
BLA_FOR_ALL(solveBackward, backward,
            (const PanelPart& part, int order, const double* l, const double* reciprocal, double* v,
             double* s, int width),
            (part, order, l, reciprocal, v, s, width))
