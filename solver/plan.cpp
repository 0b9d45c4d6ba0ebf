// SPDX-License-Identifier: BSD-3-Clause
#include "plan.h"

#include "storage.h"

#include <numeric>

namespace {

std::vector<char> withoutDiagonal(const SparseMatrix& a)
{
    std::vector<char> without(a.n, 1);
    for (int i = 0; i < a.n; ++i)
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] == i && (a.value.empty() || a.value[p] != 0.0))
                without[i] = 0;
    return without;
}

} // namespace

Plan::Plan(const SparseMatrix& pattern, const Wishes& wishes, Demands asked) : demands(std::move(asked))
{
    const SparseMatrix both =
        pattern.symmetric ? SparseMatrix() : symmetrisedPattern(pattern, transposed(pattern));
    const SparseMatrix& whole = pattern.symmetric ? pattern : both;
    AnalysisOptions options;
    options.ordering = wishes.ordering;
    options.order = wishes.order.data();
    options.kept = wishes.kept;
    options.threads = wishes.threads;
    analysis = analyse(Pattern{whole.n, whole.start.data(), whole.column.data()}, demands.late, options);
    assembly = std::make_unique<const Assembly>(analysis, pattern);
    schedule = std::make_unique<const Schedule>(analysis, pattern.symmetric);
    pieces = std::make_unique<const Pieces>(analysis, *schedule, assembly->symmetric());
}

double Plan::factorEntries() const
{
    const double lower = static_cast<double>(analysis.lowerEntries);
    return symmetric() ? lower : 2.0 * lower - analysis.n;
}

double Plan::flops() const
{
    return symmetric() ? analysis.flops : 2.0 * analysis.flops;
}

double Plan::bytes() const
{
    return storageOf(demands.late) + storageOf(demands.rowOf) + analysis.bytes() + assembly->bytes() +
           schedule->bytes() + pieces->bytes();
}

Demands patternDemands(const SparseMatrix& pattern)
{
    Demands demands;
    if (pattern.symmetric) {
        demands.late = withoutDiagonal(pattern);
    } else {
        demands.rowOf.resize(pattern.n);
        std::iota(demands.rowOf.begin(), demands.rowOf.end(), 0);
    }
    return demands;
}

Demands numericDemands(const Equilibrated& equilibrated)
{
    Demands demands;
    if (equilibrated.matrix.symmetric)
        demands.late = withoutDiagonal(equilibrated.matrix);
    else
        demands.rowOf = equilibrated.rowOf;
    return demands;
}

bool serves(const Demands& plan, const Demands& demands)
{
    for (std::size_t i = 0; i < demands.late.size(); ++i)
        if (demands.late[i] && !plan.late[i])
            return false;
    return plan.rowOf == demands.rowOf;
}
