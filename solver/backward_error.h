// SPDX-License-Identifier: BSD-3-Clause
// Componentwise backward error: how far A and b must be changed, entry by entry, for x to solve A*x = b
// exactly. M. Arioli, J. W. Demmel, I. S. Duff, "Solving sparse linear systems with sparse backward error",
// SIAM J. Matrix Anal. Appl. 10 (1989) 165-190: with r = b - A*x, equation i belongs to
//
//     class 1:  omega1 >= |r_i| / s_i,  s = |A|*|x| + |b|,                            where s_i is large
//     enough, class 2:  omega2 >= |r_i| / s_i,  s_i = (|A|*|x|)_i + sum_j |a_ij| * max |x|,   where it is
//     not.
//
// In class 1 zeros of A and b stay zero; in class 2, where a sparse x leaves next to nothing to compare
// with, an entry of b may change by a part of its row of A.
#pragma once

#include "sparse_matrix.h"

#include <vector>

struct BackwardError
{
    double omega1 = 0.0, omega2 = 0.0; // infinite where a number is not finite

    double sum() const { return omega1 + omega2; }
};

// What a class gives to an equation: s_i, or zero where the equation belongs to the other class.
struct Scales
{
    std::vector<double> first, second;
};

// One column. `r` receives the residual. Norms of x are those of weight_i*|x_i|, where a weight is given: of
// which class an equation is must not depend on how columns were scaled.
BackwardError backwardError(const SparseMatrix& a, const double* b, const double* x, double* r,
                            const double* weight = nullptr, Scales* scales = nullptr);
