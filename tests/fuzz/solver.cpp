// SPDX-License-Identifier: BSD-3-Clause
// Any sequence of calls of the solver's C interface on small matrices, good and bad: each returns the status
// that a plain reading of its arguments gives; one that fails leaves the handle as it was, to the last bit;
// and what is called solved is what dense elimination finds.
#include "TOVBlaSolver.h"
#include "bytes.h"
#include "dense_system.h"
#include "solver_input.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

namespace {

using fuzz::Bytes;

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "the solver's promise is broken: %s\n", what);
        std::abort();
    }
}

struct Option
{
    const char* name;
    double most;
    bool whole;
};
constexpr Option options[] = {{"tolerance", 1, false},     {"shift", 1, false},
                              {"refinements", 1000, true}, {"panel_width", 4096, true},
                              {"ordering", 3, true},       {"memory_limit", 0x1p63, false},
                              {"fill", -1, false},         {"", -1, false}};

enum class Needs { nothing, analysis, factor, answer, unknown };
struct Quantity
{
    const char* name;
    Needs needs;
};
constexpr Quantity quantities[] = {
    {"n", Needs::analysis},
    {"entries", Needs::analysis},
    {"fronts", Needs::analysis},
    {"largest_front", Needs::analysis},
    {"factor_entries", Needs::analysis},
    {"flops", Needs::analysis},
    {"memory", Needs::analysis},
    {"ordering_used", Needs::analysis},
    {"positive_pivots", Needs::factor},
    {"negative_pivots", Needs::factor},
    {"replaced_pivots", Needs::factor},
    {"shifted_pivots", Needs::factor},
    {"structural_rank", Needs::factor},
    {"unheld_motions", Needs::factor},
    {"residual", Needs::answer},
    {"backward_error", Needs::answer},
    {"condition", Needs::answer},
    {"error_estimate", Needs::answer},
    {"refinement_steps", Needs::answer},
    {"trusted", Needs::answer},
    {"tolerance", Needs::nothing},
    {"ordering", Needs::nothing},
    {"fronts ", Needs::unknown},
};

struct Monitor
{
    int left = 0;
    bool fired = false;

    static int call(void* context, const char*, double share)
    {
        Monitor& self = *static_cast<Monitor*>(context);
        require(share >= 0.0 && share <= 1.0, "a share of the work is between nothing and all");
        self.fired = self.fired || self.left-- <= 0;
        return self.fired;
    }
};

// The handle, and what it should be by its calls so far.
class Machine
{
public:
    Machine()
    {
        require(bla_solver_create(&solver_) == BLA_SOLVER_OK && solver_, "a handle is made");
        require(bla_solver_set(solver_, "threads", 1) == BLA_SOLVER_OK, "threads are set");
        require(bla_solver_set(solver_, "record", 1) == BLA_SOLVER_OK, "tasks are recorded");
    }
    ~Machine() { bla_solver_destroy(solver_); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    void step(Bytes& bytes)
    {
        switch (bytes.number(0, 15)) {
        case 0:
            return setOption(bytes);
        case 1:
            return getQuantity(bytes);
        case 2:
            return setOrder(bytes);
        case 3:
            return setSchur(bytes);
        case 4:
        case 5:
        case 6:
            return analyse(bytes);
        case 7:
        case 8:
        case 9:
            return factorise(bytes);
        case 10:
            return solve(bytes);
        case 11:
        case 12:
        case 13:
            return refine(bytes);
        case 14:
            return readOut(bytes);
        default:
            return setMonitor(bytes);
        }
    }

private:
    // Makes a call, which must return `expected` (or `orElse`), or say that it was cancelled if it was.
    template <class Call>
    bool returns(int expected, Call call, int orElse = BLA_SOLVER_OK)
    {
        const std::vector<double> before = told();
        monitor_ = {patience_, false};
        const int status = call();
        const std::string message = bla_solver_message(solver_);
        if (monitor_.fired)
            expected = BLA_SOLVER_CANCELLED;
        if (orElse != BLA_SOLVER_OK && status == orElse)
            expected = orElse;
        if (status != expected)
            std::fprintf(stderr, "status %d instead of %d: %s\n", status, expected, message.c_str());
        require(status == expected, "the status");
        require(message.empty() == (status == BLA_SOLVER_OK), "a sentence for a failure");
        if (status != BLA_SOLVER_OK) {
            const std::vector<double> after = told();
            require(before.size() == after.size() &&
                        std::memcmp(before.data(), after.data(), before.size() * sizeof before[0]) == 0,
                    "a failure leaves the handle as it was");
        }
        return status == BLA_SOLVER_OK;
    }

    double get(const char* quantity) const
    {
        double value = -1.0;
        require(bla_solver_get(solver_, quantity, &value) == BLA_SOLVER_OK, quantity);
        return value;
    }

    // All that can be asked, and a solution.
    std::vector<double> told() const
    {
        std::vector<double> all;
        for (const Quantity& quantity : quantities) {
            double value = -1.0;
            all.push_back(bla_solver_get(solver_, quantity.name, &value));
            all.push_back(value);
        }
        require(std::none_of(all.begin(), all.end(), [](double v) { return std::isnan(v); }), "a number");
        if (!factored_)
            return all;
        require(bla_solver_set_monitor(solver_, nullptr, nullptr) == BLA_SOLVER_OK, "no monitor");
        std::vector<double> x(size(), 1.0);
        require(bla_solver_solve(solver_, 0, 1, x.data(), ld()) == BLA_SOLVER_OK, "a solution");
        all.insert(all.end(), x.begin(), x.end());
        if (symmetric()) {
            require(bla_solver_pivots(solver_, x.data()) == BLA_SOLVER_OK, "pivots");
            all.insert(all.end(), x.begin(), x.end());
        }
        if (monitored_)
            require(bla_solver_set_monitor(solver_, Monitor::call, &monitor_) == BLA_SOLVER_OK, "a monitor");
        return all;
    }

    std::size_t size() const { return static_cast<std::size_t>(pattern_.n); }
    std::int64_t ld() const { return std::max(pattern_.n, 1); }
    bool symmetric() const { return pattern_.kind != BLA_SOLVER_GENERAL; }

    void setOption(Bytes& bytes)
    {
        const Option& option = bytes.choice(options);
        const double values[] = {0, 1, 2, 3, 1e-14, 1e-6, 0.5, -1, 1e5, 1e300, std::nan(""), 20};
        const double value = bytes.choice(values);
        const bool good =
            value >= 0.0 && value <= option.most && !(option.whole && value != std::floor(value));
        if (!returns(good ? BLA_SOLVER_OK : BLA_SOLVER_BAD_ARGUMENT,
                     [&] { return bla_solver_set(solver_, option.name, value); }))
            return;
        require(get(option.name) == value, "an option is read as it was set");
        if (std::strcmp(option.name, "ordering") == 0)
            ordering_ = static_cast<int>(value);
        else if (std::strcmp(option.name, "memory_limit") == 0)
            limited_ = value > 0.0;
        else if (std::strcmp(option.name, "tolerance") == 0)
            tolerance_ = value;
    }

    void getQuantity(Bytes& bytes)
    {
        const Quantity& quantity = bytes.choice(quantities);
        double value = -1.0;
        double* const place = bytes.byte() % 8 ? &value : nullptr;
        const bool ready =
            quantity.needs == Needs::nothing || (quantity.needs == Needs::analysis && analysed_) ||
            (quantity.needs == Needs::factor && factored_) || (quantity.needs == Needs::answer && answered_);
        returns(!place || quantity.needs == Needs::unknown ? BLA_SOLVER_BAD_ARGUMENT
                : ready                                    ? BLA_SOLVER_OK
                                                           : BLA_SOLVER_NOT_READY,
                [&] { return bla_solver_get(solver_, quantity.name, place); });
    }

    void setOrder(Bytes& bytes)
    {
        const int n = bytes.number(-1, fuzz::mostUnknowns);
        std::vector<std::int32_t> order(static_cast<std::size_t>(std::max(n, 0)));
        std::iota(order.begin(), order.end(), 0);
        for (std::size_t k = order.size(); k > 1; --k)
            std::swap(order[k - 1], order[bytes.byte() % k]);
        bool good = n >= 0;
        if (n > 0 && bytes.byte() % 8 == 0) {
            order[0] = bytes.number(-1, n);
            std::vector<std::int32_t> sorted = order;
            std::sort(sorted.begin(), sorted.end());
            for (int k = 0; k < n; ++k)
                good = good && sorted[static_cast<std::size_t>(k)] == k;
        }
        const bool missing = bytes.byte() % 16 == 0;
        if (!returns(good && !(missing && n > 0) ? BLA_SOLVER_OK : BLA_SOLVER_BAD_ARGUMENT,
                     [&] { return bla_solver_set_order(solver_, n, missing ? nullptr : order.data()); }))
            return;
        order_ = order;
        ordering_ = n > 0 ? 3 : 0;
    }

    void setSchur(Bytes& bytes)
    {
        const int count = bytes.number(-1, 5);
        std::vector<std::int32_t> kept(static_cast<std::size_t>(std::max(count, 0)));
        for (std::int32_t& k : kept)
            k = bytes.number(-1, 250) % fuzz::mostUnknowns;
        const bool good = count >= 0 && std::all_of(kept.begin(), kept.end(), [](int k) { return k >= 0; });
        if (returns(good ? BLA_SOLVER_OK : BLA_SOLVER_BAD_ARGUMENT,
                    [&] { return bla_solver_set_schur(solver_, count, kept.data()); }))
            kept_ = kept;
    }

    void analyse(Bytes& bytes)
    {
        const fuzz::Pattern p = fuzz::drawPattern(bytes);
        const int odd = bytes.byte();
        const int kind = odd == 1 ? 3 : odd == 2 ? -1 : p.kind, n = odd == 3 ? -1 : p.n;
        const std::int64_t* const start = odd == 4 ? nullptr : p.start.data();
        const std::int32_t* const column = odd == 5 ? nullptr : p.column.data();
        bool good = kind == p.kind && n == p.n && start && (column || p.start.back() <= p.start.front());
        good = good && (ordering_ != 3 || static_cast<int>(order_.size()) == n);
        for (std::size_t k = 0; k < kept_.size(); ++k)
            good = good && kept_[k] < n && std::count(kept_.begin(), kept_.end(), kept_[k]) == 1;
        if (!returns(!good     ? BLA_SOLVER_BAD_ARGUMENT
                     : p.sound ? BLA_SOLVER_OK
                               : BLA_SOLVER_BAD_MATRIX,
                     [&] { return bla_solver_analyse(solver_, kind, n, start, column); }))
            return;
        pattern_ = p;
        keptThen_ = kept_;
        analysed_ = true;
        factored_ = answered_ = false;
        require(get("n") == n && get("fronts") <= n && get("largest_front") <= n &&
                    get("factor_entries") <= 1.0 * n * n && get("memory") >= 8.0 * get("factor_entries"),
                "what an analysis tells");
    }

    void factorise(Bytes& bytes)
    {
        const fuzz::Values v = analysed_ ? fuzz::drawValues(bytes, pattern_) : fuzz::Values();
        const bool missing = bytes.byte() == 1, entries = analysed_ && get("entries") > 0.0;
        const double* const value = missing ? nullptr : v.value.data();
        const int expected = !analysed_          ? BLA_SOLVER_NOT_READY
                             : !value && entries ? BLA_SOLVER_BAD_ARGUMENT
                             : !v.finite         ? BLA_SOLVER_BAD_MATRIX
                                                 : BLA_SOLVER_OK;
        const bool mayBeLarge = limited_ && expected == BLA_SOLVER_OK;
        if (!returns(
                expected, [&] { return bla_solver_factorise(solver_, value); },
                mayBeLarge ? BLA_SOLVER_OUT_OF_MEMORY : BLA_SOLVER_OK))
            return;
        factored_ = true;
        values_ = v;
        answered_ = false;
        require(get("positive_pivots") + get("negative_pivots") + get("replaced_pivots") +
                        get("shifted_pivots") ==
                    pattern_.n,
                "every pivot is counted once");
        if (v.dominant && tolerance_ <= 1e-10)
            judgeDominant(v, bytes);
    }

    // Nothing can go wrong with a dominant diagonal.
    void judgeDominant(const fuzz::Values& v, Bytes& bytes)
    {
        int negative = 0;
        for (int i = 0; i < pattern_.n; ++i)
            negative += v.dense(i, i) < 0.0;
        require(get("replaced_pivots") + get("shifted_pivots") == 0.0, "no pivot is tiny");
        if (symmetric())
            require(get("negative_pivots") == negative, "the inertia");
        std::vector<double> x(size());
        for (double& value : x)
            value = bytes.number(-8, 8);
        const bool transposed = bytes.byte() % 2;
        const fuzz::Solution exact = fuzz::solved(v.dense, x, transposed);
        if (returns(BLA_SOLVER_OK, [&] { return bla_solver_solve(solver_, transposed, 1, x.data(), ld()); }))
            require(fuzz::distance(x.data(), exact.x) <= 1e-11, "a solution");
        if (keptThen_.empty())
            return;
        const std::vector<double> wanted = fuzz::condensed(v.dense, keptThen_);
        const auto count = static_cast<std::int64_t>(keptThen_.size());
        std::vector<double> columns(wanted.size()), rows(wanted.size());
        require(bla_solver_schur(solver_, columns.data(), count) == BLA_SOLVER_OK, "a Schur complement");
        for (std::int64_t i = 0; i < count; ++i)
            for (std::int64_t j = 0; j < count; ++j)
                rows[static_cast<std::size_t>(i * count + j)] =
                    columns[static_cast<std::size_t>(i + j * count)];
        require(fuzz::distance(rows.data(), wanted) <= 1e-11, "the Schur complement");
    }

    void solve(Bytes& bytes)
    {
        const int transposed = bytes.number(0, 17) % 9 == 8 ? 2 : bytes.number(0, 1);
        const int columns = bytes.number(-1, 3);
        const std::int64_t ldb = ld() + bytes.number(0, 8) - 1;
        std::vector<double> b(static_cast<std::size_t>(std::max(columns, 0) * std::max<std::int64_t>(ldb, 1)),
                              3.0);
        const bool good = transposed < 2 && columns >= 0 && ldb >= ld();
        returns(transposed == 2 ? BLA_SOLVER_BAD_ARGUMENT
                : !factored_    ? BLA_SOLVER_NOT_READY
                : good          ? BLA_SOLVER_OK
                                : BLA_SOLVER_BAD_ARGUMENT,
                [&] { return bla_solver_solve(solver_, transposed, columns, b.data(), ldb); });
        for (int j = 0; j < columns; ++j)
            for (std::int64_t i = ld(); i < ldb; ++i)
                require(b[static_cast<std::size_t>(i + j * ldb)] == 3.0, "the gaps stay");
    }

    void refine(Bytes& bytes)
    {
        const bool others = !factored_ || bytes.byte() % 4 == 0; // than those that were factorised
        const fuzz::Values v = !analysed_ ? fuzz::Values()
                               : others   ? fuzz::drawValues(bytes, pattern_)
                                          : values_;
        const int columns = bytes.number(-1, 2);
        std::vector<double> b(size() * static_cast<std::size_t>(std::max(columns, 0)));
        for (double& value : b)
            value = bytes.number(-8, 8);
        std::vector<double> x = b;
        if (factored_ && columns >= 0 && bytes.byte() % 2)
            bla_solver_solve(solver_, 0, columns, x.data(), ld());
        const int expected = !factored_    ? BLA_SOLVER_NOT_READY
                             : columns < 0 ? BLA_SOLVER_BAD_ARGUMENT
                             : !v.finite   ? BLA_SOLVER_BAD_MATRIX
                                           : BLA_SOLVER_OK;
        if (!returns(expected, [&] {
                return bla_solver_refine(solver_, v.value.data(), columns, b.data(), ld(), x.data(), ld());
            }))
            return;
        answered_ = true;
        const std::string verdict = bla_solver_verdict(solver_);
        const bool trusted = get("trusted") == 1.0;
        require(trusted == (verdict.rfind("solved", 0) == 0) &&
                    (trusted || verdict.rfind("NOT TO BE TRUSTED: ", 0) == 0 ||
                     verdict.rfind("NOT SOLVED: ", 0) == 0),
                "a verdict");
        for (int j = 0; j < columns && trusted; ++j) {
            const std::vector<double> right(b.begin() + j * pattern_.n, b.begin() + (j + 1) * pattern_.n);
            const fuzz::Solution exact = fuzz::solved(v.dense, right);
            require(exact.regular || !v.alike, "a singular matrix is not called solved");
            const double error = fuzz::distance(x.data() + static_cast<std::size_t>(j) * size(), exact.x);
            if (exact.regular && !(error <= 10.0 * get("error_estimate"))) {
                std::fprintf(stderr, "error %g, bound %g\n", error, get("error_estimate"));
                require(false, "the bound on the error holds");
            }
        }
    }

    void readTasks(int ready)
    {
        const auto count = static_cast<std::size_t>(factored_ ? get("tasks") : 0.0);
        std::vector<bla_solver_task> tasks(count);
        std::vector<std::int64_t> start(count + 1);
        std::vector<std::int32_t> next(static_cast<std::size_t>(factored_ ? get("task_edges") : 0.0));
        if (!returns(ready,
                     [&] { return bla_solver_tasks(solver_, tasks.data(), start.data(), next.data()); }))
            return;
        for (std::size_t t = 0; t < count; ++t)
            for (std::int64_t e = start[t]; e < start[t + 1]; ++e)
                require(tasks[t].end <= tasks[next[e]].begin, "a task waits for others");
    }

    void readOut(Bytes& bytes)
    {
        std::vector<double> d(size());
        std::vector<std::int32_t> list(size());
        const int ready = factored_ ? BLA_SOLVER_OK : BLA_SOLVER_NOT_READY;
        returns(factored_ && !symmetric() ? BLA_SOLVER_BAD_ARGUMENT : ready,
                [&] { return bla_solver_pivots(solver_, d.empty() ? nullptr : d.data()); });
        returns(ready, [&] { return bla_solver_replaced(solver_, list.data()); });
        if (factored_)
            require(std::is_sorted(list.begin(), list.begin() + static_cast<int>(get("replaced_pivots"))),
                    "ascending");
        returns(ready, [&] { return bla_solver_unheld(solver_, list.data()); });
        const auto count = static_cast<std::int64_t>(keptThen_.size());
        const std::int64_t ldc = std::max<std::int64_t>(count, 1) - bytes.number(0, 1);
        std::vector<double> c(keptThen_.size() * keptThen_.size());
        returns(!factored_ || count == 0 ? BLA_SOLVER_NOT_READY
                : ldc < count            ? BLA_SOLVER_BAD_ARGUMENT
                                         : BLA_SOLVER_OK,
                [&] { return bla_solver_schur(solver_, c.data(), ldc); });
        require((*bla_solver_verdict(solver_) != '\0') == answered_, "a verdict on an answer, else none");
        readTasks(ready);
    }

    void setMonitor(Bytes& bytes)
    {
        patience_ = bytes.number(0, 20);
        monitored_ = bytes.byte() % 2;
        require(bla_solver_set_monitor(solver_, monitored_ ? Monitor::call : nullptr, &monitor_) ==
                    BLA_SOLVER_OK,
                "a monitor");
    }

    bla_solver* solver_ = nullptr;
    mutable Monitor monitor_;
    int patience_ = 0;
    bool monitored_ = false;
    int ordering_ = 0;
    bool limited_ = false;
    double tolerance_ = 1e-14;
    std::vector<int> order_, kept_, keptThen_;
    fuzz::Pattern pattern_;
    fuzz::Values values_;
    bool analysed_ = false, factored_ = false, answered_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes(data, size);
    Machine machine;
    for (int steps = bytes.number(1, 16); steps > 0; --steps)
        machine.step(bytes);
    return 0;
}
