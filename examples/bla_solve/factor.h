// SPDX-License-Identifier: BSD-3-Clause
// Multifrontal factorisation S*P*A*P^T*S = L*D*L^T, S the scaling and P the order of the analysis.
#pragma once

#include "analysis.h"
#include "front.h"

#include <functional>
#include <memory>

// Called now and then with the share of the work that is done.
using Progress = std::function<void(double)>;

class Factor
{
public:
    Factor(const Analysis& analysis, const SparseMatrix& a, const std::vector<double>& scale,
           const PivotRule& rule, const Progress& progress);

    // X := A^-1 * X
    void solve(Vectors& x) const;

    // Signs of the pivots taken as they were; replaced ones count as neither.
    int positive() const { return positive_; }
    int negative() const { return negative_; }
    int replaced() const { return replaced_; }

private:
    void assemble(const Front& front, const SparseMatrix& a, double* panel);
    void countPivots();

    const Analysis& analysis_;
    const std::vector<double>& scale_;
    std::unique_ptr<double[]> panels_;
    std::vector<double> d_, dinv_;
    std::vector<int> local_; // position of a row in the front being assembled
    int positive_ = 0, negative_ = 0, replaced_ = 0;
};
