// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of a symmetric tridiagonal matrix.
#include "facade.h"

extern "C" void dsteqr_(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz,
                        double* work, int* info, std::size_t);

BLA_EXPORT void blac_dsteqr_(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz,
                             double* work, int* info)
{
    dsteqr_(compz, n, d, e, z, ldz, work, info, 1);
}
