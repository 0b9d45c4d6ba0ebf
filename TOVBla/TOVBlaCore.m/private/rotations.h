// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "real.h"

// Once the rotations are known, the rows of a factor are independent of one another. So a tall block of rows,
// with its elements of x in an array on the stack, goes through the columns four at a time: each element of
// the factor is loaded once, from contiguous memory. Only the triangle on the diagonal goes row by row, and
// so does a small factor, which would wait for the blocks' preparations.

constexpr int64_t RowBlock = 512;
constexpr int64_t ColumnGroup = 4;
constexpr int64_t SmallFactor = 8;

/// An element of the factor and the element of x in its row.
struct Turned
{
    double element, xi;
};

/// Calls block(first, last) for each block of rows first..last-1, from the top down.
template <class Block>
BLA_BODY void for_row_blocks(int64_t order, Block block)
{
    for (int64_t first = 0; first < order; first += RowBlock)
        block(first, order - first < RowBlock ? order : first + RowBlock);
}

/// Turns the pairs of `rows` rows in the columns l, l+step, l+2·step and l+3·step, in this order, with the
/// rotations (c,s), which stand `direction` apart. turn(c, s, pair) is one rotation of one pair.
template <class Turn>
BLA_BODY void rotate_columns(int64_t rows, real* l, int64_t step, double* xi, const real* c, const real* s,
                             int64_t direction, Turn turn)
{
    if (rows < 1)
        return; // not even the rotations need exist
    double cosine[ColumnGroup], sine[ColumnGroup];
    for (int64_t q = 0; q < ColumnGroup; ++q) {
        cosine[q] = c[q * direction];
        sine[q] = s[q * direction];
    }
    BLA_NO_OVERLAP
    for (int64_t j = 0; j < rows; ++j) {
        double x = xi[j];
        for (int64_t q = 0; q < ColumnGroup; ++q) {
            const Turned pair = turn(cosine[q], sine[q], {l[q * step + j], x});
            l[q * step + j] = pair.element;
            x = pair.xi;
        }
        xi[j] = x;
    }
}
