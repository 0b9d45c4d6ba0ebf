// SPDX-License-Identifier: BSD-3-Clause
#include "handle.h"

#include "blas_threads.h"
#include "bounds.h"
#include "failure.h"
#include "refine.h"
#include "stopwatch.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>
#include <thread>

namespace {

// Where replacing tiny pivots does not do, they are moved by this much: the root of the rounding unit, as
// usual in static pivoting, lets refinement take out what the shift put in.
constexpr double pivotShift = 0x1p-26;
// What counts as tiny then: whatever the shift surely moves away from zero, to half of itself at least.
constexpr double shiftTolerance = pivotShift / 2;
// What rounding makes of a pivot that is zero is below this.
constexpr double soundPivot = 0x1p-42;
// A factor that needs more than a few steps of refinement is not a good one, and the best there is may need
// much.
constexpr Effort few{5, 0}, much{20, 10};
// Cycles of GMRES for a right-hand side, where refinement is wanted at all.
constexpr int cycles = 10;
// Right-hand sides that are copied and solved for at a time.
constexpr int blockColumns = 64;

Vectors copied(const double* b, std::int64_t ld, int n, int columns)
{
    Vectors x(n, columns);
    for (int j = 0; j < columns; ++j)
        std::copy_n(b + ld * j, n, x.column(j));
    return x;
}

void copyBack(const Vectors& x, double* b, std::int64_t ld)
{
    for (int j = 0; j < x.columns; ++j)
        std::copy_n(x.column(j), x.n, b + ld * j);
}

void checkWishes(const Wishes& wishes, int n)
{
    if (wishes.ordering == Ordering::given && static_cast<int>(wishes.order.size()) != n)
        throw Failure(BLA_SOLVER_BAD_ARGUMENT,
                      "an order of " + std::to_string(n) + " unknowns is asked for, " +
                          std::to_string(wishes.order.size()) + " are given (bla_solver_set_order)");
    std::vector<char> seen(n, 0);
    for (int unknown : wishes.kept) {
        if (unknown >= n || seen[unknown])
            throw Failure(BLA_SOLVER_BAD_ARGUMENT,
                          "the unknown " + std::to_string(unknown) +
                              " to be kept is not there, or twice (bla_solver_set_schur)");
        seen[unknown] = 1;
    }
}

} // namespace

void bla_solver::analyse(Kind kind, int n, const std::int64_t* start, const int* column)
{
    Stopwatch watch;
    report("analysing", 0.0);
    Wishes asked{static_cast<Ordering>(static_cast<int>(options.ordering)), {}, kept, threads()};
    if (asked.ordering == Ordering::given)
        asked.order = order;
    checkWishes(asked, n);
    auto given = std::make_unique<const Rows>(kind, n, start, column);
    auto made = std::make_unique<const Plan>(given->pattern(), asked, patternDemands(given->pattern()));
    std::vector<double> room(given->pattern().symmetric ? given->pattern().entries() : 0);
    report("analysing", 1.0);
    scaledEntries = std::move(room);
    rows = std::move(given);
    wishes = std::move(asked);
    plan = std::move(made);
    secondsAnalyse = watch.lap();
    numbers.reset();
    answer.reset();
}

void bla_solver::factorise(const double* value)
{
    Stopwatch watch;
    report("factorising", 0.0);
    const OneBlasThread beneath;
    auto made = std::make_unique<Numbers>();
    made->threads = threads();
    std::unique_ptr<const Plan> other;
    if (!equilibrateByDiagonal(value, made->equilibrated)) {
        const SparseMatrix a = rows->matrix(value);
        made->equilibrated = a.symmetric ? equilibrateSymmetric(a)
                             : wishes.kept.empty()
                                 ? equilibrateUnsymmetric(a, plan->demands.rowOf)
                                 : equilibrateUnsymmetric(a, plan->demands.rowOf, wishes.kept);
        if (Demands demands = numericDemands(made->equilibrated); !serves(plan->demands, demands))
            other = std::make_unique<const Plan>(made->equilibrated.matrix, wishes, std::move(demands));
    }
    const Plan& used = other ? *other : *plan;
    const double bytes = this->bytes(used);
    if (options.memoryLimit > 0.0 && bytes > options.memoryLimit)
        throw Failure(BLA_SOLVER_OUT_OF_MEMORY, "a factorisation takes " + std::to_string(bytes) +
                                                    " bytes, memory_limit allows " +
                                                    std::to_string(options.memoryLimit));
    // In place of the old factor, unless what follows can fail.
    const bool inPlace = numbers && !other && !monitor && numbers->factor->threads() == threads();
    if (!inPlace)
        made->factor =
            std::make_unique<Factor>(used.analysis, *used.assembly, *used.schedule, *used.pieces, threads());
    made->replaced.reserve(rows->pattern().n);
    if (options.record > 0.0)
        made->times.emplace(used.schedule->tasks.size());

    factoriseWell(inPlace ? *numbers->factor : *made->factor, value, *made);

    if (inPlace)
        made->factor = std::move(numbers->factor);
    made->equilibrated.matrix = {};
    if (!made->shifted)
        for (const TreatedPivot& pivot : made->factor->treatedPivots())
            made->replaced.push_back(pivot.unknown);
    std::sort(made->replaced.begin(), made->replaced.end());
    made->seconds = watch.lap();
    numbers = std::move(made);
    answer.reset();
    if (other)
        plan = std::move(other);
}

int bla_solver::threads() const
{
    // More than processors would only wait for each other.
    static const int most =
        blasTakesCallers() ? static_cast<int>(std::max(std::thread::hardware_concurrency(), 1u)) : 1;
    return options.threads > 0.0 ? std::min(static_cast<int>(options.threads), most) : most;
}

const Team& bla_solver::team() const
{
    if (team_.threads() != threads())
        team_ = threads();
    return team_;
}

double bla_solver::bytes(const Plan& used) const
{
    const double entries = static_cast<double>(rows->pattern().entries());
    const double scaled = (sizeof(double) + sizeof(int)) * entries; // the equilibrated matrix
    const double vectors =
        3 * sizeof(double) + 2 * sizeof(int); // its pointers, factors and exchanges; replaced
    const double trial = used.symmetric() ? 0.0 : 8 * sizeof(double); // solutions that try the factor
    const double times =
        options.record > 0.0 ? sizeof(TaskTime) * static_cast<double>(used.schedule->tasks.size()) : 0.0;
    return rows->bytes() + used.bytes() + times +
           Factor::bytes(used.analysis, *used.schedule, used.symmetric(), threads()) + scaled +
           (vectors + trial) * n();
}

// A matrix like a definite one is equilibrated by its diagonal, its demands are those of the pattern: nothing
// of it is looked at more than once. False, and nothing made, where it is not like that.
bool bla_solver::equilibrateByDiagonal(const double* value, Equilibrated& made)
{
    if (!rows->pattern().symmetric)
        return false;
    std::vector<double> scale = diagonalScales(rows->diagonal(value));
    if (scale.empty())
        return false;
    if (!rows->scaledLower(value, scale, scaledEntries.data(), team()))
        return false;
    made.rowOf.resize(n());
    std::iota(made.rowOf.begin(), made.rowOf.end(), 0);
    made.structuralRank = n();
    made.row = scale;
    made.column = std::move(scale);
    return true;
}

// Factorises with tiny pivots replaced or shifted as asked. Where that is left to us, and the factor does not
// find known solutions again, they are shifted if that does better.
void bla_solver::factoriseWell(Factor& factor, const double* value, Numbers& made) const
{
    SparseMatrix& a = made.equilibrated.matrix; // without entries where the diagonal has equilibrated
    const bool symmetric = plan->symmetric();
    const double* const used = a.n == n() ? a.value.data() : scaledEntries.data();
    const int width = static_cast<int>(options.panelWidth);
    const PivotRule asked{options.tolerance, options.shift, width},
        shifting{shiftTolerance, pivotShift, width};
    const auto run = [&](const PivotRule& rule, const char* phase) {
        factor.factorise(used, rule, monitor ? [&](double share) { report(phase, share); } : Progress(),
                         team(), made.times ? made.times->data() : nullptr);
        made.shifted = rule.shift > 0.0;
    };
    run(asked, "factorising");
    if (n() == 0 || options.shift > 0.0 || !wishes.kept.empty())
        return;
    const bool definite = symmetric && factor.negative() == 0 && factor.treated() == 0;
    if (definite && factor.smallestPivot() > soundPivot)
        return;
    const Factorised inverse{[&](Vectors& x) { factor.solve(x, false, team()); },
                             [&](Vectors& x) { factor.solve(x, true, team()); }, true};
    try {
        if (a.n == 0)
            a = made.equilibrated.applied(rows->matrix(value));
        const Recovery first = recover(a, inverse.solve, few);
        if (first.good())
            return;
        run(shifting, "factorising with shifted pivots");
        const Recovery second = recover(a, inverse.solve, much);
        if (!first.regular() && !second.regular())
            made.unheld = findUnheldMotions(a, factor.treatedPivots(), inverse);
        if (second.better(first))
            return;
    } catch (const std::bad_alloc&) { // no memory to look into it
        if (made.factor)              // the factor of before, if there is one, can still stay
            throw;
    }
    if (made.shifted)
        run(asked, "factorising again");
}

// M = R * Q * A * C is what is factorised: A^-1 = C * M^-1 * R * Q, A^-T = Q^T * R * M^-T * C.
void bla_solver::apply(const Block& x, bool transposed, const Team& team) const
{
    const Equilibrated& e = numbers->equilibrated;
    const Border in{e.rowOf.data(), e.row.data()}, out{nullptr, e.column.data()};
    if (transposed)
        numbers->factor->solve(x, out, in, true, team);
    else
        numbers->factor->solve(x, in, out, false, team);
}

void bla_solver::solve(bool transposed, int columns, double* b, std::int64_t ldb)
{
    Stopwatch watch;
    const OneBlasThread beneath;
    const std::thread::id caller = std::this_thread::get_id();
    // Of nothing, b may be missing.
    const int blocks = n() == 0 ? 0 : (columns + blockColumns - 1) / blockColumns;
    const auto solveBlock = [&](int block, const Team& team) {
        const int j = blockColumns * block;
        if (std::this_thread::get_id() == caller)
            report("solving", static_cast<double>(j) / columns);
        apply({b + ldb * j, ldb, std::min(blockColumns, columns - j)}, transposed, team);
    };
    if (blocks == 1)
        solveBlock(0, team());
    else
        TaskGraph(blocks, {}).execute(team(), [&](int block) {
            solveBlock(block, threads() / std::clamp(blocks, 1, threads()));
        });
    numbers->secondsSolve = watch.lap();
}

void bla_solver::refine(const double* value, int columns, const double* b, std::int64_t ldb, double* x,
                        std::int64_t ldx)
{
    Stopwatch watch;
    const OneBlasThread beneath;
    auto told = std::make_unique<Answer>();
    Evidence& worst = told->evidence;
    worst.n = n();
    worst.structuralRank = numbers->equilibrated.structuralRank;
    worst.treated = numbers->factor->treated();
    worst.motions = numbers->unheld.count;
    worst.unknowns = numbers->unheld.unknowns;
    const int steps = static_cast<int>(options.refinements);
    const SparseMatrix a = rows->matrix(value), scaled = numbers->equilibrated.applied(a);
    const Factorised factorised{[&](Vectors& v) { numbers->factor->solve(v, false, team()); },
                                [&](Vectors& v) { numbers->factor->solve(v, true, team()); },
                                worst.treated > 0};
    for (int j = 0; j < columns && n() > 0; j += blockColumns) {
        report("refining", static_cast<double>(j) / columns);
        const int width = std::min(blockColumns, columns - j);
        Vectors right = copied(b + ldb * j, ldb, n(), width);
        Refined refined = refineFrom(a, right, copied(x + ldx * j, ldx, n(), width),
                                     [&](Vectors& v) {
                                         apply({v.value.data(), v.n, v.columns}, false, team());
                                     },
                                     {steps, steps > 0 && worst.motions == 0 ? cycles : 0});
        copyBack(refined.x, x + ldx * j, ldx);
        // In the equilibrated system, where neither A^-1 nor its products overflow; the error is that of x.
        numbers->equilibrated.enter(right);
        worst.unreachable = std::max(worst.unreachable, unreachable(numbers->unheld, right));
        for (int k = 0; k < width; ++k)
            for (int i = 0; i < n(); ++i)
                refined.x.column(k)[i] /= numbers->equilibrated.column[i];
        const ErrorBound bound =
            boundError(scaled, right, refined.x, numbers->equilibrated.column, factorised);
        worst.residual = std::max(worst.residual, refined.residual);
        worst.error = worst.motions > 0 ? HUGE_VAL : std::max(worst.error, bound.forward());
        told->condition = std::max(told->condition, bound.cond1 + bound.cond2);
        told->backwardError = std::max(told->backwardError, refined.backward.sum());
        told->steps = std::max(told->steps, refined.steps);
    }
    told->verdict = ::verdict(worst);
    told->seconds = watch.lap();
    answer = std::move(told);
}

void bla_solver::pivots(double* d) const
{
    const std::vector<double>& made = numbers->factor->pivots();
    const std::vector<double>& scale = numbers->equilibrated.row;
    for (int k = 0; k < n(); ++k) {
        const int unknown = plan->analysis.permutation[k];
        d[unknown] = made[k] == 1.0e36 ? made[k] : made[k] / scale[unknown] / scale[unknown];
    }
}

// The factor's front holds the kept unknowns in the order of elimination, scaled.
void bla_solver::schur(double* c, std::int64_t ldc) const
{
    const Analysis& analysis = plan->analysis;
    const Front& front = analysis.fronts[analysis.kept];
    const Equilibrated& e = numbers->equilibrated;
    const int count = front.pivots;
    for (int j = 0; j < count; ++j)
        for (int i = 0; i < count; ++i) {
            int row = analysis.inverse[wishes.kept[i]] - front.first;
            int column = analysis.inverse[wishes.kept[j]] - front.first;
            if (plan->symmetric() && row < column)
                std::swap(row, column);
            c[i + ldc * j] = numbers->factor->schur()[row + static_cast<std::size_t>(count) * column] /
                             e.row[wishes.kept[i]] / e.column[wishes.kept[j]];
        }
}

void bla_solver::report(const char* phase, double share) const
{
    if (monitor && monitor(monitorContext, phase, share) != 0)
        throw Failure(BLA_SOLVER_CANCELLED, std::string("cancelled while ") + phase);
}

void bla_solver::requireAnalysis() const
{
    if (!plan)
        throw Failure(BLA_SOLVER_NOT_READY, "nothing has been analysed yet (bla_solver_analyse)");
}

void bla_solver::requireFactor() const
{
    requireAnalysis();
    if (!numbers)
        throw Failure(BLA_SOLVER_NOT_READY, "there is no factor yet (bla_solver_factorise)");
}

void bla_solver::requireAnswer() const
{
    requireFactor();
    if (!answer)
        throw Failure(BLA_SOLVER_NOT_READY, "nothing is known of an answer yet (bla_solver_refine)");
}
