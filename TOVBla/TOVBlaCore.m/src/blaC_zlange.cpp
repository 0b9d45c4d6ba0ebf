// SPDX-License-Identifier: BSD-3-Clause
// Returns the largest entry, one-, infinity- or Frobenius norm of a complex matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlange_), 1> zlange_;

BLA_EXPORT double blac_zlange_(const char* norm, const int* m, const int* n, const blac_complex* a,
                               const int* lda, double* work)
{
    return zlange_(norm, m, n, a, lda, work, 1);
}
