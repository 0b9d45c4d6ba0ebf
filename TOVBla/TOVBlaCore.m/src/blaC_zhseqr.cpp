// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and Schur form of a complex Hessenberg matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zhseqr_), 2> zhseqr_;

BLA_EXPORT void blac_zhseqr_(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi,
                             blac_complex* h, const int* ldh, blac_complex* w, blac_complex* z,
                             const int* ldz, blac_complex* work, const int* lwork, int* info)
{
    zhseqr_(job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork, info, 1, 1);
}
