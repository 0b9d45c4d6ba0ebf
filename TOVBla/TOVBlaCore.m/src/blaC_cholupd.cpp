// SPDX-License-Identifier: BSD-3-Clause
// L·S·Lᵀ := L·S·Lᵀ ± x·xᵀ on the leading ncol columns of L, S = diag(+1 for nlead columns, then -1): a plane
// rotation a column, orthogonal where the signs of S and ± agree, hyperbolic where not.
#include "blas.h"
#include "tiers.h"

namespace {

enum class Rotation { Orthogonal, Hyperbolic };

/// Rotates x into a column with `below` rows under the diagonal, both starting at the diagonal. False:
/// refused, and nothing changed. The quotient t decides, and a NaN is not refused. Every element is divided
/// by the cosine: a multiplication with its reciprocal would give other last bits.
template <Rotation R>
BLA_BODY bool rotate(real* l, real* x, int64_t below, double tol)
{
    const double t = x[0] / l[0];
    if (R == Rotation::Hyperbolic && __builtin_fabs(t) >= 1.0 - tol)
        return false;
    const double c = __builtin_sqrt(R == Rotation::Orthogonal ? t * t + 1.0 : 1.0 - t * t);
    l[0] = l[0] * c;
    for (int64_t i = 1; i <= below; ++i) {
        const double r = R == Rotation::Orthogonal ? (t * x[i] + l[i]) / c : (l[i] - t * x[i]) / c;
        l[i] = r;
        x[i] = x[i] * c - r * t;
    }
    return true;
}

} // namespace

BLA_TIERS_VRA(blac_cholupd_,
              (const char* job, const int* n, const int* nlead, const int* ncol, real* l, const int* ldl,
               real* x, const double* tol, int* info),
              (job, n, nlead, ncol, l, ldl, x, tol, info))
{
    *info = 0;
    const bool add = lsame_(job, "P", 1, 1);
    if (!add && !lsame_(job, "N", 1, 1))
        return;
    const int64_t order = *n, step = int64_t{*ldl} + 1;
    const int64_t leading = *nlead < *ncol ? *nlead : *ncol; // not bounded by n
    const int64_t columns = *n < *ncol ? *n : *ncol;
    for (int64_t j = 0; j < leading || j < columns; ++j) {
        const bool orthogonal = add == (j < leading);
        if (orthogonal)
            rotate<Rotation::Orthogonal>(l + j * step, x + j, order - 1 - j, *tol);
        else if (!rotate<Rotation::Hyperbolic>(l + j * step, x + j, order - 1 - j, *tol)) {
            *info = static_cast<int>(j + 1);
            return;
        }
    }
}
