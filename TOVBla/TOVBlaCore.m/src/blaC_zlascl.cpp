// SPDX-License-Identifier: BSD-3-Clause
// A := A·cto/cfrom without needless overflow.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlascl_), 1> zlascl_;

BLA_EXPORT void blac_zlascl_(const char* type, const int* kl, const int* ku, const double* cfrom,
                             const double* cto, const int* m, const int* n, blac_complex* a, const int* lda,
                             int* info)
{
    zlascl_(type, kl, ku, cfrom, cto, m, n, a, lda, info, 1);
}
