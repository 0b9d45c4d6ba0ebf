// SPDX-License-Identifier: BSD-3-Clause
#include "solver.h"

#include "analysis.h"
#include "factor.h"
#include "scaling.h"
#include "stopwatch.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>

namespace {

// A residual above this is not one that rounding explains.
constexpr double solvedResidual = 1e-12;
// Where replacing tiny pivots does not do, they are moved by this much: the root of the rounding unit, as
// usual in static pivoting, lets refinement take out what the shift put in.
constexpr double pivotShift = 0x1p-26;

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
        factor.factorise(equilibrated_.matrix, {options_.tolerance, shift, options_.nb},
                         [&](double share) { monitor_("factorising", share); });
        Phase factorisation{watch.lap(), factor.flops()}, solution;
        monitor_("solving", 0.0);
        const auto timed = [&](Vectors& x) {
            Stopwatch inner;
            factor.solve(x);
            solution.seconds += inner.lap();
            solution.flops += 2.0 * x.columns * static_cast<double>(2 * analysis_.lowerEntries);
        };
        const Refined answer = solveRefined(
            a_, b_,
            [&](Vectors& x) {
                equilibrated_.enter(x);
                timed(x);
                equilibrated_.leave(x);
            },
            options_.refinements);
        const double seconds = watch.lap();
        const bool regular = factor.treated() == 0 || solvesAnything(factor);
        const int quality = !(answer.residual <= solvedResidual) ? 0 : regular ? 2 : 1;
        if (answered_ && !(quality > quality_ || (quality == 0 && answer.residual < outcome.answer.residual)))
            return;
        answered_ = true;
        quality_ = quality;
        outcome.answer = answer;
        outcome.factorisation = factorisation;
        outcome.solution = solution;
        outcome.refinement.seconds = seconds - solution.seconds;
        outcome.positive = factor.positive();
        outcome.negative = factor.negative();
        outcome.replaced = shift > 0.0 ? 0 : factor.treated();
        outcome.shifted = shift > 0.0 ? factor.treated() : 0;
    }

    bool solved() const { return quality_ >= 1; }
    bool regular() const { return quality_ == 2; }
    int treated() const { return outcome.replaced + outcome.shifted; }

    void judge()
    {
        char text[200];
        const double digits = -std::log10(std::max(outcome.answer.correction, 1e-16));
        if (!solved()) {
            if (equilibrated_.structuralRank < a_.n)
                std::snprintf(text, sizeof text,
                              "NOT SOLVED: the matrix is structurally singular (rank at most %d of %d)",
                              equilibrated_.structuralRank, a_.n);
            else if (treated() > 0)
                std::snprintf(
                    text, sizeof text,
                    "NOT SOLVED: %d tiny pivots, and refinement does not repair what was done to them; "
                    "the matrix is singular, or needs pivoting",
                    treated());
            else
                std::snprintf(text, sizeof text,
                              "NOT SOLVED: elimination without row exchanges is not stable for this matrix");
        } else if (!regular()) {
            std::snprintf(text, sizeof text,
                          "NOT TO BE TRUSTED: the matrix is singular to working precision; this is one of "
                          "many answers");
        } else if (digits < 1.0) {
            std::snprintf(text, sizeof text,
                          "NOT TO BE TRUSTED: so ill-conditioned that no digit is certain");
        } else if (digits < 6.0) {
            outcome.trusted = true;
            std::snprintf(text, sizeof text, "solved; ill-conditioned: about %.0f digits can be expected",
                          digits);
        } else {
            outcome.trusted = true;
            std::snprintf(text, sizeof text, "solved");
        }
        outcome.verdict = text;
    }

    Outcome outcome;

private:
    // A tiny pivot may be the matrix's fault or that of the pivot order. A random right-hand side tells: a
    // singular matrix does not reach it.
    bool solvesAnything(const Factor& factor) const
    {
        Vectors b(a_.n, 1);
        std::mt19937_64 random(2);
        for (double& v : b.value)
            v = std::ldexp(static_cast<double>(random() >> 11), -52) - 1.0;
        const Refined probe = solveRefined(
            equilibrated_.matrix, b, [&](Vectors& x) { factor.solve(x); }, options_.refinements);
        return probe.residual <= solvedResidual;
    }

    const SparseMatrix& a_;
    const Vectors& b_;
    const SolverOptions& options_;
    const Monitor& monitor_;
    Equilibrated equilibrated_;
    Analysis analysis_;
    std::unique_ptr<Factor> factor_;
    bool answered_ = false;
    int quality_ = 0; // 0: the residual is too large, 1: the matrix seems singular, 2: good
};

} // namespace

Outcome solve(const SparseMatrix& a, const Vectors& b, const SolverOptions& options, const Monitor& monitor)
{
    Attempts attempts(a, b, options, monitor);
    attempts.attempt(0.0);
    if (attempts.treated() > 0 && !(attempts.solved() && attempts.regular()))
        attempts.attempt(pivotShift);
    attempts.judge();
    return attempts.outcome;
}
