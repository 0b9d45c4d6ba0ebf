// SPDX-License-Identifier: BSD-3-Clause
// Multifrontal factorisation P*A*P^T = L*D*L^T or L*D*U, P the order of the analysis, A equilibrated.
#pragma once

#include "analysis.h"
#include "assembly.h"
#include "front.h"
#include "workspace.h"

#include <functional>

// Called now and then with the share of the work that is done. May throw, which leaves the factor unusable.
using Progress = std::function<void(double)>;

// A tiny pivot that was replaced or shifted. What was factorised is A with `shift` added to the diagonal
// entry of `unknown`, counted as A counts.
struct TreatedPivot
{
    int unknown;
    double shift;
};

class Factor
{
public:
    // Takes all memory that there is need of. Analysis and assembly must outlive the factor.
    Factor(const Analysis& analysis, const Assembly& assembly);

    // `value` are the entries in the sequence of the pattern of the assembly, of a symmetric matrix those
    // with column <= row. May be called again, for other
    // values or another rule; throws nothing but what `progress` does.
    void factorise(const double* value, const PivotRule& rule, const Progress& progress);

    // X := A^-1 * X, or A^-T * X
    void solve(Vectors& x, bool transposed = false) const;

    // Signs of the pivots that were used as they came, and those that were not.
    int positive() const { return positive_; }
    int negative() const { return negative_; }
    int treated() const { return static_cast<int>(treated_.size()); }
    const std::vector<TreatedPivot>& treatedPivots() const { return treated_; }

    // Pivots in the order of elimination; the Schur complement of the unknowns that the analysis keeps, of
    // their order, by columns: of a symmetric matrix the lower triangle.
    const std::vector<double>& pivots() const { return d_; }
    const std::vector<double>& schur() const { return schur_; }

    double flops() const { return symmetric_ ? analysis_.flops : 2.0 * analysis_.flops; }
    // What a factor of this analysis takes, beside the assembly.
    static double bytes(const Analysis& analysis, bool symmetric);

private:
    void assemble(int front, const double* value, const FrontStorage& storage) const;
    void eliminate(const Front& front, const PivotRule& rule, const FrontStorage& storage);
    void gather(const Front& front, const double* y, int width, double* v) const;
    void subtractRows(const Front& front, const double* w, int width, double* y) const;
    void forwardByLower(const Front& front, int width, double* v, double* w) const;
    void backwardByLower(const Front& front, int width, double* v) const;
    void forwardByUpper(const Front& front, int width, double* v, double* w) const;
    void backwardByUpper(const Front& front, int width, double* v) const;
    void countPivots(bool shifted);

    const Analysis& analysis_;
    const Assembly& assembly_;
    bool symmetric_;
    Workspace panels_, rights_;
    Workspace stack_[2];          // contributions that wait for their parents
    std::vector<int> waiting_[2]; // fronts whose contributions they are
    std::vector<double> d_, dinv_, correction_, schur_;
    std::vector<double> tolerance_, shift_; // as the regularised eliminations take them
    std::vector<int> downward_;             // 1 where a tiny pivot is to become negative
    int positive_ = 0, negative_ = 0;
    std::vector<TreatedPivot> treated_;
};
