// SPDX-License-Identifier: BSD-3-Clause
#include "bench.h"

void bench::add_families()
{
    add_limits();
    add_eliminations();
    add_blocked_eliminations();
    add_cholesky();
    add_sparse();
    add_transposes();
    add_block_kernels();
    add_products();
}
