// SPDX-License-Identifier: BSD-3-Clause
// Multifrontal factorisation P*A*P^T = L*D*L^T or L*D*U, P the order of the analysis, A equilibrated.
#pragma once

#include "analysis.h"
#include "extend_add.h"
#include "front.h"
#include "workspace.h"

#include <functional>

// Called now and then with the share of the work that is done.
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
    // Takes the memory. The analysis must outlive the factor.
    Factor(const Analysis& analysis, bool symmetric);

    // `a` has the pattern that was analysed. May be called again, for other values or another rule.
    void factorise(const SparseMatrix& a, const PivotRule& rule, const Progress& progress);

    // X := A^-1 * X, or A^-T * X
    void solve(Vectors& x, bool transposed = false) const;

    // Signs of the pivots that were used as they came, and those that were not.
    int positive() const { return positive_; }
    int negative() const { return negative_; }
    int treated() const { return static_cast<int>(treated_.size()); }
    const std::vector<TreatedPivot>& treatedPivots() const { return treated_; }

    double flops() const { return symmetric_ ? analysis_.flops : 2.0 * analysis_.flops; }

private:
    FrontStorage assemble(const Front& front, const SparseMatrix& a, const SparseMatrix& columns,
                          double* schur);
    void forward(const Front& front, Vectors& y, std::vector<double>& work, bool transposed) const;
    void backward(const Front& front, Vectors& y, std::vector<double>& work, bool transposed) const;
    void countPivots(const std::vector<double>& corrections);

    const Analysis& analysis_;
    bool symmetric_;
    Workspace panels_, rights_;
    Workspace stack_[2]; // contributions that wait for their parents
    std::vector<double> d_, dinv_;
    std::vector<int> local_; // position of a row in the front being assembled
    int positive_ = 0, negative_ = 0;
    std::vector<TreatedPivot> treated_;
};
