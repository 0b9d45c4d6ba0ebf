// SPDX-License-Identifier: BSD-3-Clause
// What bla_solver_get knows, by name.
#include "failure.h"
#include "handle.h"

#include <cstring>

namespace {

struct Quantity
{
    const char* name;
    void (bla_solver::*require)() const;
    double (*value)(const bla_solver&);
};

constexpr auto analysis = &bla_solver::requireAnalysis;
constexpr auto factor = &bla_solver::requireFactor;
constexpr auto answer = &bla_solver::requireAnswer;

double whole(std::size_t count)
{
    return static_cast<double>(count);
}

int orderingUsed(const Analysis& a)
{
    return static_cast<int>(a.ordering);
}

std::size_t recorded(const bla_solver& s)
{
    return s.numbers->times ? s.numbers->times->size() : 0;
}

double solveSeconds(const bla_solver& s)
{
    if (s.numbers->secondsSolve < 0.0)
        throw Failure(BLA_SOLVER_NOT_READY, "nothing has been solved yet (bla_solver_solve)");
    return s.numbers->secondsSolve;
}

using S = const bla_solver&;
constexpr Quantity known[] = {
    {"n", analysis, [](S s) { return static_cast<double>(s.n()); }},
    {"entries", analysis, [](S s) { return whole(s.rows->pattern().entries()); }},
    {"fronts", analysis, [](S s) { return whole(s.plan->analysis.fronts.size()); }},
    {"largest_front", analysis, [](S s) { return static_cast<double>(s.plan->analysis.largestFront); }},
    {"factor_entries", analysis, [](S s) { return s.plan->factorEntries(); }},
    {"flops", analysis, [](S s) { return s.plan->flops(); }},
    {"memory", analysis, [](S s) { return s.bytes(*s.plan); }},
    {"ordering_used", analysis, [](S s) { return static_cast<double>(orderingUsed(s.plan->analysis)); }},
    {"seconds_analyse", analysis, [](S s) { return s.secondsAnalyse; }},
    {"positive_pivots", factor, [](S s) { return static_cast<double>(s.numbers->factor->positive()); }},
    {"negative_pivots", factor, [](S s) { return static_cast<double>(s.numbers->factor->negative()); }},
    {"replaced_pivots", factor, [](S s) { return whole(s.numbers->replaced.size()); }},
    {"shifted_pivots", factor,
     [](S s) { return s.numbers->shifted ? static_cast<double>(s.numbers->factor->treated()) : 0.0; }},
    {"structural_rank", factor,
     [](S s) { return static_cast<double>(s.numbers->equilibrated.structuralRank); }},
    {"unheld_motions", factor, [](S s) { return static_cast<double>(s.numbers->unheld.count); }},
    {"threads_used", factor, [](S s) { return static_cast<double>(s.numbers->threads); }},
    {"tasks", factor, [](S s) { return whole(recorded(s)); }},
    {"task_edges", factor,
     [](S s) { return recorded(s) > 0 ? whole(s.plan->schedule->graph.edges()) : 0.0; }},
    {"seconds_factorise", factor, [](S s) { return s.numbers->seconds; }},
    {"seconds_solve", factor, solveSeconds},
    {"residual", answer, [](S s) { return s.answer->evidence.residual; }},
    {"backward_error", answer, [](S s) { return s.answer->backwardError; }},
    {"condition", answer, [](S s) { return s.answer->condition; }},
    {"error_estimate", answer, [](S s) { return s.answer->evidence.error; }},
    {"refinement_steps", answer, [](S s) { return static_cast<double>(s.answer->steps); }},
    {"trusted", answer, [](S s) { return judge(s.answer->evidence) == Quality::trusted ? 1.0 : 0.0; }},
    {"seconds_refine", answer, [](S s) { return s.answer->seconds; }},
};

} // namespace

double bla_solver::quantity(const char* name) const
{
    if (const double* option = options.find(name))
        return *option;
    for (const Quantity& quantity : known)
        if (std::strcmp(name, quantity.name) == 0) {
            (this->*quantity.require)();
            return quantity.value(*this);
        }
    std::string names;
    for (const Quantity& quantity : known)
        names += (names.empty() ? "" : ", ") + std::string(quantity.name);
    throw Failure(BLA_SOLVER_BAD_ARGUMENT, "there is no quantity '" + std::string(name) + "' but " + names);
}
