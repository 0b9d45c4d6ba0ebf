// SPDX-License-Identifier: BSD-3-Clause
#include "condense.h"

#include "stopwatch.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

// More than rounding, in an elimination that went well.
constexpr double most = 1e-10;

double residualOf(const Matrix& a, const std::vector<int>& kept, const Block& s, Library& library)
{
    Block b(a.n, 1);
    for (std::size_t k = 0; k < kept.size(); ++k)
        b.value[kept[k]] = 1.0 + static_cast<double>(k % 7);
    const Block y = library.solve(b);
    Block r = product(a, y);
    for (std::size_t j = 0; j < kept.size(); ++j)
        for (std::size_t i = 0; i < kept.size(); ++i)
            r.value[kept[i]] -= s.column(static_cast<int>(j))[i] * y.value[kept[j]];

    double norm = 0.0, largest = 0.0, worst = 0.0;
    for (int i = 0; i < a.n; ++i) {
        double row = 0.0;
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
            row += std::fabs(a.value[p]);
        norm = std::max(norm, row);
        largest = std::max(largest, std::fabs(y.value[i]));
        worst = std::isnan(r.value[i]) ? HUGE_VAL : std::max(worst, std::fabs(r.value[i]));
    }
    return worst == 0.0 ? 0.0 : worst / (norm * largest);
}

// Those that were eliminated with a pivot that is none, counted from 1.
std::string withoutPivot(const std::vector<int>& kept, const Library& library)
{
    constexpr int shown = 5;
    std::string names;
    int count = 0;
    for (int unknown : library.replaced())
        if (std::find(kept.begin(), kept.end(), unknown) == kept.end() && ++count <= shown)
            names += (count > 1 ? ", " : "") + std::to_string(unknown + 1);
    if (count == 0)
        return "";
    return (count > 1 ? "unknowns " : "unknown ") + names + (count > shown ? ", ..." : "");
}

} // namespace

Condensed condense(const Matrix& a, const std::vector<int>& kept, Library& library)
{
    Stopwatch watch;
    Condensed result;
    result.matrix = library.condensed(static_cast<int>(kept.size()));
    result.residual = residualOf(a, kept, result.matrix, library);
    const std::string unheld = withoutPivot(kept, library);
    result.trusted = unheld.empty() && result.residual <= most;
    char number[40];
    std::snprintf(number, sizeof number, "%.1e", result.residual);
    result.verdict =
        result.trusted ? "condensed"
        : !unheld.empty()
            ? "NOT TO BE TRUSTED: no pivot was found for " + unheld +
                  ": without the kept unknowns the matrix is singular, or needs exchanges of rows"
            : std::string("NOT TO BE TRUSTED: the elimination lost its digits, the matrix is off by ") +
                  number;
    result.seconds = watch.lap();
    return result;
}
