// SPDX-License-Identifier: BSD-3-Clause
#include "solver.h"

#include "analysis.h"
#include "factor.h"
#include "scaling.h"
#include "stopwatch.h"
#include "verdict.h"

#include <memory>

namespace {

// Where replacing tiny pivots does not do, they are moved by this much: the root of the rounding unit, as
// usual in static pivoting, lets refinement take out what the shift put in.
constexpr double pivotShift = 0x1p-26;
// What counts as tiny then: whatever the shift surely moves away from zero, to half of itself at least.
constexpr double shiftTolerance = pivotShift / 2;

std::vector<char> zeroDiagonal(const SparseMatrix& a)
{
    std::vector<char> zero(a.n, 1);
    for (int i = 0; i < a.n; ++i)
        for (int p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] == i && a.value[p] != 0.0)
                zero[i] = 0;
    return zero;
}

class Attempts
{
public:
    Attempts(const SparseMatrix& a, const Vectors& b, const SolverOptions& options, const Monitor& monitor)
        : a_(a), b_(b), options_(options), monitor_(monitor)
    {
        Stopwatch watch;
        monitor_("analysing", 0.0);
        equilibrated_ = options.symmetric ? equilibrateSymmetric(a) : equilibrateUnsymmetric(a);
        const SparseMatrix& m = equilibrated_.matrix;
        if (m.symmetric)
            analysis_ = analyse(m, zeroDiagonal(m));
        else
            analysis_ = analyse(symmetrisedPattern(m, transposed(m)), std::vector<char>(m.n, 0));
        outcome.ordering = analysis_.ordering;
        outcome.fronts = static_cast<int>(analysis_.fronts.size());
        outcome.largestFront = analysis_.largestFront;
        outcome.factorEntries = m.symmetric ? analysis_.lowerEntries : 2 * analysis_.lowerEntries - m.n;
        outcome.analysis.seconds = watch.lap();
    }

    // Factorises and solves; keeps the answer if it is the first or better than the one before.
    void attempt(double shift)
    {
        Stopwatch watch;
        if (!factor_)
            factor_ = std::make_unique<Factor>(analysis_, equilibrated_.matrix.symmetric);
        Factor& factor = *factor_;
        factor.factorise(equilibrated_.matrix,
                         {shift > 0.0 ? shiftTolerance : options_.tolerance, shift, options_.nb},
                         [&](double share) { monitor_("factorising", share); });
        Outcome tried = outcome;
        tried.factorisation = {watch.lap(), factor.flops()};
        tried.solution = {};
        monitor_("solving", 0.0);
        const Factorised inverse{[&](Vectors& x) { factor.solve(x); },
                                 [&](Vectors& x) { factor.solve(x, true); }, factor.treated() > 0};
        tried.answer = solveRefined(
            a_, b_,
            [&](Vectors& x) {
                equilibrated_.enter(x);
                Stopwatch inner;
                factor.solve(x);
                tried.solution.seconds += inner.lap();
                tried.solution.flops += 2.0 * x.columns * static_cast<double>(2 * analysis_.lowerEntries);
                equilibrated_.leave(x);
            },
            options_.refinements);
        tried.positive = factor.positive();
        tried.negative = factor.negative();
        tried.replaced = shift > 0.0 ? 0 : factor.treated();
        tried.shifted = shift > 0.0 ? factor.treated() : 0;
        tried.bound = bound(tried.answer.x, inverse);
        if (shift > 0.0 && judge(evidence(tried)) != Quality::trusted)
            tried.unheld = outcome.unheld =
                findUnheldMotions(equilibrated_.matrix, entered(b_), factor.treatedPivots(), inverse);
        tried.refinement.seconds = watch.lap() - tried.solution.seconds;
        if (!answered_ || better(evidence(tried), evidence(outcome)))
            outcome = tried;
        answered_ = true;
    }

    bool trusted() const { return judge(evidence(outcome)) == Quality::trusted; }

    void conclude()
    {
        outcome.trusted = trusted();
        outcome.verdict = verdict(evidence(outcome));
    }

    Outcome outcome;

private:
    Vectors entered(Vectors b) const
    {
        equilibrated_.enter(b);
        return b;
    }

    // In the equilibrated system, where neither A^-1 nor its products overflow; the error is that of x.
    ErrorBound bound(const Vectors& x, const Factorised& m) const
    {
        Vectors y = x;
        for (int j = 0; j < y.columns; ++j)
            for (int i = 0; i < y.n; ++i)
                y.column(j)[i] /= equilibrated_.column[i];
        return boundError(equilibrated_.matrix, entered(b_), y, equilibrated_.column, m);
    }

    Evidence evidence(const Outcome& o) const
    {
        return {a_.n,
                equilibrated_.structuralRank,
                o.answer.residual,
                o.bound.forward(),
                o.replaced + o.shifted,
                o.unheld};
    }

    const SparseMatrix& a_;
    const Vectors& b_;
    const SolverOptions& options_;
    const Monitor& monitor_;
    Equilibrated equilibrated_;
    Analysis analysis_;
    std::unique_ptr<Factor> factor_;
    bool answered_ = false;
};

} // namespace

Outcome solve(const SparseMatrix& a, const Vectors& b, const SolverOptions& options, const Monitor& monitor)
{
    Attempts attempts(a, b, options, monitor);
    attempts.attempt(0.0);
    if (!attempts.trusted())
        attempts.attempt(pivotShift);
    attempts.conclude();
    return attempts.outcome;
}
