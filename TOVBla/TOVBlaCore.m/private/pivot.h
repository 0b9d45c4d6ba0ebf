// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

namespace pivot {
constexpr double Tiny = 1.0e-36; ///< threshold of the fixed rule, and reciprocal of a replaced pivot
constexpr double Huge = 1.0e36;  ///< value of a replaced pivot
} // namespace pivot

/// The two-sided strict pivot test: false for p = ±tol and for a NaN on either side.
BLA_BODY bool exceeds(double p, double tol)
{
    return p > tol || -tol > p;
}
