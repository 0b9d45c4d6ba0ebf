// SPDX-License-Identifier: BSD-3-Clause
// A bound on the error of x as the solution of A*x = b, after Arioli, Demmel and Duff (1989), see
// backward_error.h:
//
//     max w_i*|dx_i| / max w_i*|x_i|  <=  omega1*cond1 + omega2*cond2,
//     cond_k = max w_i*(|A^-1|*s_k)_i / max w_i*|x_i|,   s_k: the scales of the equations of class k, else 0.
//
// The conditions are norms of products with A^-1 and are estimated by a few solutions with A and A^T
// (W. W. Hager, 1984; N. J. Higham, ACM Trans. Math. Softw. 14 (1988) 381-396): as a rule right within a
// factor of three, and never too large.
#pragma once

#include "backward_error.h"
#include "refine.h"

#include <functional>
#include <vector>

// What was factorised, M = A but for rounding and treated pivots.
struct Factorised
{
    Apply solve, solveTransposed; // X := M^-1 * X, X := M^-T * X
    bool treated = false;         // pivots were replaced or shifted
};

struct ErrorBound
{
    BackwardError backward;          // at least the rounding unit
    double cond1 = 0.0, cond2 = 0.0; // infinite where A shows as singular to working precision
    double recovery = 0.0;           // see recoveryError; 0 where M is so near A that it adds nothing

    double forward() const; // the bound; infinite where there is none
};

// The largest over all columns of x, each of which must belong to a column of b. With several columns the
// scales are first divided by max w_i*|x_i| of their column and then taken at their largest, so that the
// number of solutions does not grow with the columns. `weight` holds w, n positive numbers.
//
// M^-1 stands for A^-1 only where it is seen to be near it, on a solution that is known. Elsewhere (pivots
// were treated, or rounding errors grew) a well-conditioned M may hide a singular A; then every solution is
// refined with A, by GMRES where plain refinement does not find the known solution again. What does not
// converge makes the bound infinite, and GMRES is believed only well away from a singular A.
ErrorBound boundError(const SparseMatrix& a, const Vectors& b, const Vectors& x,
                      const std::vector<double>& weight, const Factorised& m);

// X := A^-1 * X and X := A^-T * X, good to a digit or two. False: they cannot be had.
struct Inverse
{
    std::function<bool(Vectors&)> apply, applyTransposed;
};

// max_i w_i*(|A^-1|*s)_i, estimated; infinite where A^-1 cannot be had.
double weightedInverseNorm(const std::vector<double>& weight, const std::vector<double>& s,
                           const Inverse& inverse);

// How well a solution that is known is found again: max |x - w| / max |w| for a w of random signs and sizes
// from 1/2 to 1 and x what `solve` makes of A*w. About 1 where A is singular, whatever M is.
double recoveryError(const SparseMatrix& a, const Apply& solve);

// What a refined solution that is known tells of a factor.
struct Recovery
{
    double error = 0.0;    // as that of recoveryError
    double residual = 0.0; // as that of Refined

    bool regular() const; // A, as far as this factor can tell
    bool good() const;    // nothing but rounding is left
    bool better(const Recovery& other) const;
};

Recovery recover(const SparseMatrix& a, const Apply& solve, const Effort& effort);
