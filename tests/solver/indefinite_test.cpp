// SPDX-License-Identifier: BSD-3-Clause
// Elimination without exchanges of rows where it is not made for it.
#include "problems.h"

#include <gtest/gtest.h>

TEST(Indefinite, DiagonalsNearZeroAreShiftedAndTheSystemIsSolved)
{
    for (int k = 0; k < 200; ++k) {
        auto random = support::generator(1000 + k);
        const SparseMatrix a = problems::indefinite(200, 1e-13, 1e-12, random);
        const Vectors x = problems::ones(a.n);
        const Outcome o = problems::solved(a, problems::product(a, x));
        const double error = problems::relativeError(o.answer.x, x);
        std::printf("%d: %d/%d treated, steps %d, residual %.2g bound %.2g recovery %.2g error %.2g %s\n", k, o.replaced, o.shifted, o.answer.steps, o.answer.residual,o.bound.forward(), o.bound.recovery, error, o.verdict.c_str());
    }
}
