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

class Factor
{
public:
    // Takes the memory. The analysis must outlive the factor.
    Factor(const Analysis& analysis, bool symmetric);

    // `a` has the pattern that was analysed. May be called again, for other values or another rule.
    void factorise(const SparseMatrix& a, const PivotRule& rule, const Progress& progress);

    // X := A^-1 * X
    void solve(Vectors& x) const;

    // Signs of the pivots that were used as they came, and the number of those that were not.
    int positive() const { return positive_; }
    int negative() const { return negative_; }
    int treated() const { return treated_; }

    double flops() const { return symmetric_ ? analysis_.flops : 2.0 * analysis_.flops; }

private:
    FrontStorage assemble(const Front& front, const SparseMatrix& a, const SparseMatrix& columns,
                          double* schur);
    void forward(const Front& front, Vectors& y, std::vector<double>& work) const;
    void backward(const Front& front, Vectors& y, std::vector<double>& work) const;
    void countPivots(const std::vector<double>& corrections);

    const Analysis& analysis_;
    bool symmetric_;
    Workspace panels_, rights_;
    Workspace stack_[2]; // contributions that wait for their parents
    std::vector<double> d_, dinv_;
    std::vector<int> local_; // position of a row in the front being assembled
    int positive_ = 0, negative_ = 0, treated_ = 0;
};
