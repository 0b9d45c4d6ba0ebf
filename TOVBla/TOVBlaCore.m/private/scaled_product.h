// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "blas.h"

#include <cstdlib>

/// Largest scratch taken from the stack, in doubles: the panel updates up to a width of 64, and little enough
/// for any thread.
constexpr int64_t StackScratch = 6 * 1024;
constexpr unsigned ScratchAlignment = 64; // bytes, on the stack as on the heap

/// The factors and the result of C := beta·C + alpha·op(A)·D·op(B), D(l,l) at d[l·d_step].
struct ScaledProduct
{
    const char *transa, *transb;
    const int *m, *n, *k;
    const double* alpha;
    const real* a;
    const int* lda;
    const real* b;
    const int* ldb;
    const double* beta;
    real* c;
    const int* ldc;
    const real* d;
    int64_t d_step;
    bool transposed; // op(B), that is
};

/// W := the rows l.. and columns j.. of D·op(B), as many as told, or its transpose as B is stored; one
/// rounding an entry. Behind W there is room for the diagonal.
BLA_BODY void scale_factor(const ScaledProduct& p, int64_t l, int64_t inner, int64_t j, int64_t columns,
                           double* w)
{
    const int64_t step = *p.ldb;
    const real* d = p.d + l * p.d_step;
    if (p.transposed) { // W := B·D, columns × inner
        const real* const b = p.b + l * step + j;
        for (int64_t q = 0; q < inner; ++q) {
            const double s = d[q * p.d_step];
            BLA_NO_OVERLAP
            for (int64_t i = 0; i < columns; ++i)
                w[q * columns + i] = b[q * step + i] * s;
        }
        return;
    }
    const real* const b = p.b + j * step + l; // W := D·B, inner × columns
    if (p.d_step != 1) {                      // the inner loop reads D contiguously
        double* const diagonal = w + columns * inner;
        for (int64_t q = 0; q < inner; ++q)
            diagonal[q] = d[q * p.d_step];
        d = diagonal;
    }
    for (int64_t i = 0; i < columns; ++i) {
        BLA_NO_OVERLAP
        for (int64_t q = 0; q < inner; ++q)
            w[i * inner + q] = b[i * step + q] * d[q];
    }
}

/// The product as one dgemm_ on the whole scaled factor. Nothing is cut short for empty products: dgemm_ is
/// called all the same, and it is dgemm_ that rejects the scratch's leading dimension when that is below 1.
BLA_BODY void multiply_at_once(const ScaledProduct& p, int64_t inner, int64_t columns, double* w)
{
    if (inner > 0) // else there need be no ldb
        scale_factor(p, 0, inner, 0, columns, w);
    dgemm_(p.transa, p.transb, p.m, p.n, p.k, p.alpha, p.a, p.lda, w, p.transposed ? p.n : p.k, p.beta, p.c,
           p.ldc, 1, 1);
}

/// The same without memory for the whole factor: by as many of its columns as fit the stack's scratch, and of
/// very long ones by parts, whose products are added to the first. The sums may differ in their last bits.
[[gnu::cold, gnu::noinline]] static void multiply_in_blocks(const ScaledProduct& p)
{
    alignas(ScratchAlignment) double w[StackScratch];
    const int64_t inner = *p.k, columns = *p.n;
    const int64_t a_step = lsame_(p.transa, "N", 1, 1) ? *p.lda : 1; // from column to column of op(A)
    const int64_t longest = inner < StackScratch / 2 ? inner : StackScratch / 2;
    const int64_t widest = StackScratch / longest - 1; // and the diagonal
    const double one = 1.0;
    for (int64_t j = 0; j < columns; j += widest)
        for (int64_t l = 0; l < inner; l += longest) {
            const int width = static_cast<int>(columns - j < widest ? columns - j : widest);
            const int length = static_cast<int>(inner - l < longest ? inner - l : longest);
            scale_factor(p, l, length, j, width, w);
            dgemm_(p.transa, p.transb, p.m, &width, &length, p.alpha, p.a + l * a_step, p.lda, w,
                   p.transposed ? &width : &length, l == 0 ? p.beta : &one, p.c + j * *p.ldc, p.ldc, 1, 1);
        }
}

/// A product with scratch from the stack as far as that is wise, else from the heap; `ldd` is null where D is
/// a vector. Should dgemm_ be left by an exception of the caller's error handler, heap scratch is lost: it
/// takes a C++ run time to give it back.
BLA_BODY void scaled_product(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                             const double* alpha, const real* a, const int* lda, const real* b,
                             const int* ldb, const double* beta, real* c, const int* ldc, const real* d,
                             const int* ldd)
{
    const bool transposed = lsame_(transb, "T", 1, 1);
    const bool empty = *n < 1 || *k < 1;
    const int64_t columns = empty ? 0 : *n, inner = empty ? 0 : *k;
    const int64_t d_step = ldd && !empty ? int64_t{*ldd} + 1 : 1;
    const ScaledProduct p{transa, transb, m,    n, k,   alpha, a,      lda,
                          b,      ldb,    beta, c, ldc, d,     d_step, transposed};
    const int64_t size = columns * inner + (!transposed && d_step != 1 ? inner : 0);
    const auto bytes = static_cast<std::size_t>(size) * sizeof(double);
    if (size <= StackScratch) {
        void* const stack = __builtin_alloca_with_align(bytes, ScratchAlignment * 8);
        return multiply_at_once(p, inner, columns, static_cast<double*>(stack));
    }
    void* const heap = std::malloc(bytes + ScratchAlignment);
    if (!heap)
        return multiply_in_blocks(p);
    const auto address = reinterpret_cast<__UINTPTR_TYPE__>(heap);
    multiply_at_once(p, inner, columns,
                     static_cast<double*>(heap) + (-address % ScratchAlignment) / sizeof(double));
    std::free(heap);
}
