// SPDX-License-Identifier: BSD-3-Clause
// Small sparse matrices, good and bad, drawn from the bytes of an input.
#pragma once

#include "TOVBlaSolver.h"
#include "bytes.h"
#include "dense_system.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace fuzz {

constexpr int mostUnknowns = 12;

/// Rows as the interface takes them; a value that is read belongs to one entry of the matrix, or two.
struct Pattern
{
    int kind = 0, n = 0;
    std::vector<std::int64_t> start{0};
    std::vector<std::int32_t> column;
    bool sound = true;

    bool reads(int i, int j) const
    {
        return kind == BLA_SOLVER_GENERAL || (kind == BLA_SOLVER_SYMMETRIC_LOWER ? i >= j : i <= j);
    }
    /// take(row, column, entry) for every entry that is read
    template <class Take>
    void each(Take take) const
    {
        for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
            for (auto e = static_cast<std::size_t>(start[i]); e < static_cast<std::size_t>(start[i + 1]); ++e)
                if (reads(static_cast<int>(i), column[e]))
                    take(static_cast<int>(i), static_cast<int>(column[e]), e);
    }
};

inline Pattern drawPattern(Bytes& bytes)
{
    Pattern p;
    p.kind = bytes.number(0, 2);
    p.n = bytes.number(0, mostUnknowns);
    p.start[0] = bytes.byte() % 8 ? 0 : bytes.number(0, 3);
    p.column.assign(static_cast<std::size_t>(p.start[0]), -7);
    const bool diagonal = bytes.byte() % 4;
    for (int i = 0; i < p.n; ++i) {
        if (diagonal)
            p.column.push_back(i);
        for (int e = bytes.number(0, 4); e > 0; --e)
            p.column.push_back(bytes.number(0, p.n - 1));
        p.start.push_back(static_cast<std::int64_t>(p.column.size()));
    }
    const int spoilt = bytes.byte();
    if (spoilt > 20 || p.n == 0)
        return p;
    const auto at = static_cast<std::size_t>(bytes.number(0, p.n - 1));
    if (spoilt < 7) {
        p.start[at] = p.start[at + 1] + 1;
        p.sound = false;
    } else if (spoilt == 7) {
        p.start[0] = -1;
        p.sound = false;
    } else if (p.start[at] < p.start[at + 1]) {
        p.column[static_cast<std::size_t>(p.start[at])] = spoilt < 14 ? p.n : -1;
        p.sound = false;
    }
    return p;
}

struct Values
{
    std::vector<double> value;
    Dense dense;
    bool finite = true;   // where they are read
    bool dominant = true; // the diagonal outweighs rows and columns
    bool alike = true;    // neither very large nor very small ones
};

inline Values drawValues(Bytes& bytes, const Pattern& p)
{
    Values v;
    v.value.resize(p.column.size());
    const int kind = bytes.number(0, 2);
    v.alike = kind != 2;
    for (double& x : v.value) {
        const int drawn = static_cast<std::int8_t>(bytes.byte());
        x = kind == 1 ? drawn % 3 : kind == 2 ? std::ldexp(drawn % 16, drawn) : drawn / 16.0;
    }
    if (bytes.byte() == 255 && !v.value.empty()) {
        const double odd[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL};
        v.value[bytes.byte() % v.value.size()] = bytes.choice(odd);
    }
    v.dense = Dense(p.n);
    std::vector<std::size_t> diagonal(static_cast<std::size_t>(p.n), v.value.size());
    p.each([&](int i, int j, std::size_t e) {
        v.finite = v.finite && std::isfinite(v.value[e]);
        v.dense(i, j) += v.value[e];
        if (i == j)
            diagonal[static_cast<std::size_t>(i)] = e;
        else if (p.kind != BLA_SOLVER_GENERAL)
            v.dense(j, i) += v.value[e];
    });
    for (int i = 0; i < p.n; ++i) {
        double others = 0.0;
        for (int j = 0; j < p.n; ++j)
            if (j != i)
                others += std::fabs(v.dense(i, j)) + std::fabs(v.dense(j, i));
        const std::size_t e = diagonal[static_cast<std::size_t>(i)];
        if (kind == 0 && e < v.value.size() && v.finite) { // sixteenths: nothing is rounded
            const double wanted = v.value[e] < 0.0 ? -others - 1.0 : others + 1.0;
            v.value[e] += wanted - v.dense(i, i);
            v.dense(i, i) = wanted;
        }
        v.dominant = v.dominant && std::fabs(v.dense(i, i)) > others;
    }
    v.dominant = v.dominant && v.alike;
    return v;
}

} // namespace fuzz
