// SPDX-License-Identifier: BSD-3-Clause
// Where a factorisation spends its time: the linker puts a clock around the routines of the module and of the
// BLAS. Time spent in a routine that another one calls counts for the inner one only.
#pragma once

namespace profile {

enum Part { small, triangular, products, scaled, assembly, parts };
extern const char* const name[parts];
extern double seconds[parts];

void start();
void stop();

} // namespace profile
