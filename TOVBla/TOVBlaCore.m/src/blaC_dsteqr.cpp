// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of a symmetric tridiagonal matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsteqr_), 1> dsteqr_;

BLA_EXPORT void blac_dsteqr_(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz,
                             double* work, int* info)
{
    dsteqr_(compz, n, d, e, z, ldz, work, info, 1);
}
