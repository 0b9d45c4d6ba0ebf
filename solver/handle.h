// SPDX-License-Identifier: BSD-3-Clause
// What a handle of the C interface holds: options, the rows given, the plan of their factorisation, the
// factor, and what is known of the answers. Calls have checked arguments; they throw, and then leave the
// handle as it was.
#pragma once

#include "TOVBlaSolver.h"
#include "factor.h"
#include "options.h"
#include "plan.h"
#include "rows.h"
#include "scaling.h"
#include "unheld.h"
#include "verdict.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// A sentence, kept without asking for memory.
class Message
{
public:
    void clear() { text_[0] = '\0'; }
    void set(const char* text) { std::strncpy(text_, text, sizeof text_ - 1); }
    const char* text() const { return text_; }

private:
    char text_[1024] = "";
};

// What the numbers of the last factorisation made.
struct Numbers
{
    Equilibrated equilibrated; // its matrix without values
    std::unique_ptr<Factor> factor;
    bool shifted = false;
    int threads = 0;
    std::optional<std::vector<TaskTime>> times; // of the tasks of the schedule, where they are recorded
    UnheldMotions unheld;
    std::vector<int> replaced; // ascending
    double seconds = 0.0, secondsSolve = -1.0;
};

// What the last refinement told.
struct Answer
{
    Evidence evidence;
    std::string verdict;
    int steps = 0;
    double backwardError = 0.0, condition = 0.0, seconds = 0.0;
};

struct bla_solver
{
    void analyse(Kind kind, int n, const std::int64_t* start, const int* column);
    void factorise(const double* value);
    void solve(bool transposed, int columns, double* b, std::int64_t ldb);
    void refine(const double* value, int columns, const double* b, std::int64_t ldb, double* x,
                std::int64_t ldx);
    void pivots(double* d) const;
    void schur(double* c, std::int64_t ldc) const;
    void tasks(bla_solver_task* tasks, std::int64_t* start, std::int32_t* next) const;
    double quantity(const char* name) const;

    // Throw Failure where that is missing.
    void requireAnalysis() const;
    void requireFactor() const;
    void requireTasks() const;
    void requireAnswer() const;

    // What the handle holds at most while it factorises, plan and factor included.
    double bytes(const Plan& used) const;
    int n() const { return rows->pattern().n; }

    mutable Message message;
    Options options;
    std::vector<int> order, kept; // as set
    int (*monitor)(void* context, const char* phase, double share) = nullptr;
    void* monitorContext = nullptr;

    std::unique_ptr<const Rows> rows;
    Wishes wishes; // those of the analysis
    std::unique_ptr<const Plan> plan;
    double secondsAnalyse = 0.0;
    std::unique_ptr<Numbers> numbers;
    std::unique_ptr<const Answer> answer;

private:
    // Throws Failure where the monitor asks for it.
    void report(const char* phase, double share) const;
    bool equilibrateByDiagonal(const double* value, Equilibrated& made);
    void factoriseWell(Factor& factor, const double* value, Numbers& made) const;
    void apply(const Block& x, bool transposed, const Team& team) const;
    int threads() const;
    const Team& team() const; // of so many

    mutable Team team_ = 1;
    std::vector<double> scaledEntries; // room for those that equilibrateByDiagonal makes
};
