// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

/// Walks the lower block trapezoid of a matrix of order n, left to right: calls product(j, rem, w) for the
/// block of columns j..j+w-1 (from 0) and its rem = n-j rows from j down. All blocks are nb wide but the
/// last, which is a full rem×rem square. The block count is a truncating division as it falls: nb < 0 leaves
/// one square of order n.
template <class Product>
BLA_BODY void for_lower_trapezoid(const int* n, const int* nb, Product product)
{
    const int64_t blocks = (int64_t{*n} + *nb - 1) / *nb;
    int rem = *n;
    int64_t j = 0;
    for (int64_t block = 1; block < blocks; ++block) {
        product(j, &rem, nb);
        rem -= *nb;
        j += *nb;
    }
    product(j, &rem, &rem);
}
