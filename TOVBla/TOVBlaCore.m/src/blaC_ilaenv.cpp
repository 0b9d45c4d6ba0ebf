// SPDX-License-Identifier: BSD-3-Clause
// Tuning parameters and machine properties as the library states them.
//
// The one routine that hands on the hidden lengths it receives: name and opts are longer than one character.
#include "facade.h"

extern "C" int ilaenv_(const int* ispec, const char* name, const char* opts, const int* n1, const int* n2,
                       const int* n3, const int* n4, std::size_t name_length, std::size_t opts_length);

BLA_EXPORT int blac_ilaenv_(const int* ispec, const char* name, const char* opts, const int* n1,
                            const int* n2, const int* n3, const int* n4, std::size_t name_length,
                            std::size_t opts_length)
{
    return ilaenv_(ispec, name, opts, n1, n2, n3, n4, name_length, opts_length);
}
