// SPDX-License-Identifier: BSD-3-Clause
// Multifrontal factorisation P*A*P^T = L*D*L^T or L*D*U, P the order of the analysis, A equilibrated.
#pragma once

#include "analysis.h"
#include "assembly.h"
#include "columns.h"
#include "front.h"
#include "pieces.h"
#include "schedule.h"
#include "workspace.h"

#include <functional>
#include <mutex>
#include <vector>

// Called now and then with the share of the work that is done, on the thread that factorises. May throw,
// which leaves the factor unusable.
using Progress = std::function<void(double)>;

// A tiny pivot that was replaced or shifted. What was factorised is A with `shift` added to the diagonal
// entry of `unknown`, counted as A counts.
struct TreatedPivot
{
    int unknown;
    double shift;
};

// Right-hand sides, or solutions in their place: vectors ld apart.
struct Block
{
    double* value;
    std::int64_t ld;
    int columns;
};

// How the vectors of another system are those of the factor's: the number of unknown u is at place row[u],
// and counts factor[u] times. Null: at u, once.
struct Border
{
    const int* row = nullptr;
    const double* factor = nullptr;
};

// When a task of the schedule ran, in seconds since the begin of the factorisation, and on which thread.
struct TaskTime
{
    int thread;
    double begin, end;
};

class Factor
{
public:
    // Takes all memory that there is need of with so many threads. Plan: they must outlive the factor.
    Factor(const Analysis& analysis, const Assembly& assembly, const Schedule& schedule, const Pieces& pieces,
           int threads);

    // `value` are the entries in the sequence of the pattern of the assembly, of a symmetric matrix those
    // with column <= row. May be called again, for other values or another rule, by a team of at most as many
    // threads as there is memory for; throws nothing but what `progress` does. `times`: of every task; null:
    // not wanted.
    void factorise(const double* value, const PivotRule& rule, const Progress& progress, const Team& team = 1,
                   TaskTime* times = nullptr);

    // X := A^-1 * X, or A^-T * X
    void solve(Vectors& x, bool transposed = false, const Team& team = 1) const;
    // Of another system: right-hand sides come in and solutions go out across its borders.
    void solve(const Block& x, const Border& in, const Border& out, bool transposed, const Team& team) const;

    // Signs of the pivots that were used as they came, and those that were not.
    int positive() const { return positive_; }
    int negative() const { return negative_; }
    int treated() const { return static_cast<int>(treated_.size()); }
    const std::vector<TreatedPivot>& treatedPivots() const { return treated_; }
    double smallestPivot() const; // by magnitude; n > 0

    // Pivots in the order of elimination; the Schur complement of the unknowns that the analysis keeps, of
    // their order, by columns: of a symmetric matrix the lower triangle.
    const std::vector<double>& pivots() const { return d_; }
    const std::vector<double>& schur() const { return schur_; }

    double flops() const { return symmetric_ ? analysis_.flops : 2.0 * analysis_.flops; }
    int threads() const { return threads_; }
    // What a factor of this analysis takes, beside the assembly.
    static double bytes(const Analysis& analysis, const Schedule& schedule, bool symmetric, int threads);

private:
    // What a thread needs for a branch: contributions that wait for their parents, and whose they are.
    struct Bench
    {
        explicit Bench(const Schedule& schedule)
            : stack{Workspace(schedule.stack[0]), Workspace(schedule.stack[1])}
        {
        }
        Workspace stack[2];
        std::vector<int> waiting[2];
    };

    class Seat; // of a thread at a bench
    struct Solving;

    FrontStorage storage(int front, double* schur) const;
    Pivots pivotsFrom(int first, int count, const double* value);
    void assemble(int front, int begin, int end, const double* value, const FrontStorage& storage) const;
    void eliminateBranch(const Branch& branch, const double* value, const PivotRule& rule,
                         const Progress& add);
    void doTile(const Task& task, const double* value, const PivotRule& rule, const Progress& add);
    void forward(const Piece& piece, const Step& step, const Solving& solving) const;
    void backward(const Piece& piece, const Step& step, const Solving& solving) const;
    void forwardTile(const Piece& piece, int i, int k, int width, double* v, double* w) const;
    void backwardTile(const Piece& piece, int i, int k, int width, double* v, double* w) const;
    void forwardByLower(const Front& front, const PanelPart& part, int width, double* v, double* w) const;
    void backwardByLower(const Front& front, const PanelPart& part, int width, double* v, double* s) const;
    void forwardByUpper(const Front& front, int width, double* v, double* w) const;
    void backwardByUpper(const Front& front, int width, double* v) const;
    void countPivots(bool shifted);

    const Analysis& analysis_;
    const Assembly& assembly_;
    const Schedule& schedule_;
    const Pieces& pieces_;
    int threads_;
    bool symmetric_;
    Workspace panels_, rights_;
    Workspace contributions_; // those that are not on a bench
    std::vector<Bench> benches_;
    std::vector<Bench*> idle_;
    std::mutex benchesInUse_;
    std::vector<double> d_, dinv_, correction_, schur_;
    std::vector<double> tolerance_, shift_; // as the regularised eliminations take them
    std::vector<int> downward_;             // 1 where a tiny pivot is to become negative
    int positive_ = 0, negative_ = 0;
    std::vector<TreatedPivot> treated_;
};
