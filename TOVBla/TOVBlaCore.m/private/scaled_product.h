// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "blas.h"

#include <alloca.h>
#include <cstdlib>

/// Largest scratch taken from the stack, in bytes: the panel updates up to a width of 64, and little enough
/// for any thread.
constexpr int64_t LargestStackScratch = int64_t{48} * 1024;

/// C := beta·C + alpha·op(A)·D·op(B), with D(l,l) at d[l·d_step].
///
/// The second factor is scaled into scratch W in one pass, one rounding an entry, and one dgemm_ does the
/// rest. Nothing is cut short for empty products: dgemm_ is called all the same, and it is dgemm_ that
/// rejects the scratch's leading dimension when that is below 1.
BLA_BODY void scaled_product(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                             const double* alpha, const real* a, const int* lda, const real* b,
                             const int* ldb, const double* beta, real* c, const int* ldc, const real* d,
                             int64_t d_step)
{
    const bool transposed = lsame_(transb, "T", 1, 1);
    const bool empty = *n < 1 || *k < 1;
    const int64_t columns = empty ? 0 : *n, inner = empty ? 0 : *k, b_step = *ldb;
    const bool gather = !transposed && d_step != 1; // the inner loop below reads D contiguously
    const int64_t bytes = (columns * inner + (gather ? inner : 0)) * 8;

    // Large scratch would overflow a thread's stack; where no other memory can be had, the stack it is.
    void* heap = bytes > LargestStackScratch ? std::malloc(static_cast<std::size_t>(bytes)) : nullptr;
    double* w =
        static_cast<double*>(heap ? heap : __builtin_alloca_with_align(static_cast<std::size_t>(bytes), 512));

    if (transposed) { // W := B·D, n×k
        for (int64_t l = 0; l < inner; ++l) {
            const double s = d[l * d_step];
            BLA_NO_OVERLAP
            for (int64_t i = 0; i < columns; ++i)
                w[l * columns + i] = b[l * b_step + i] * s;
        }
    } else { // W := D·B, k×n
        if (gather) {
            double* diagonal = w + columns * inner;
            for (int64_t l = 0; l < inner; ++l)
                diagonal[l] = d[l * d_step];
            d = diagonal;
        }
        for (int64_t j = 0; j < columns; ++j) {
            BLA_NO_OVERLAP
            for (int64_t l = 0; l < inner; ++l)
                w[j * inner + l] = b[j * b_step + l] * d[l];
        }
    }
    dgemm_(transa, transb, m, n, k, alpha, a, lda, w, transposed ? n : k, beta, c, ldc, 1, 1);
    if (heap)
        std::free(heap);
}
