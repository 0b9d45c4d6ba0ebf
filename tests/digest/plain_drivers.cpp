// SPDX-License-Identifier: BSD-3-Clause
// The same for the routines that work in blocks: the plain loops on the diagonal blocks, and the plain BLAS
// for the rest.
#include "TOVBlaModule.h"

#include "reference.h"

#include <vector>

using reference::number;
using std::int64_t;
using std::size_t;

extern "C" {
void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*,
            const int*, const double*, const int*, const double*, double*, const int*, size_t, size_t);
void dtrmm_(const char*, const char*, const char*, const char*, const int*, const int*, const double*,
            const double*, const int*, double*, const int*, size_t, size_t, size_t, size_t);
void dtrsm_(const char*, const char*, const char*, const char*, const int*, const int*, const double*,
            const double*, const int*, double*, const int*, size_t, size_t, size_t, size_t);
}

static const double One = 1.0, MinusOne = -1.0;

/// Calls block(first, width) for the blocks of columns that a front of order n >= 1 is cut into.
template <class Block>
static void for_blocks(int n, int nb, Block block)
{
    for (int first = 0; first < n; first += nb)
        block(first, n - first < nb ? n - first : nb);
}

/// eliminate(first, width) takes a diagonal block.
template <class Eliminate>
static void selim(int n, int nb, double* a, int lda, const double* dinv, Eliminate eliminate)
{
    for_blocks(n, nb, [&](int first, int width) {
        double* const diagonal = a + first + int64_t{first} * lda;
        double *const below = diagonal + width, *const behind = below + int64_t{width} * lda;
        const int rest = n - first - width;
        eliminate(diagonal, first, width);
        if (rest == 0)
            return;
        dtrsm_("R", "U", "N", "U", &rest, &width, &One, diagonal, &lda, below, &lda, 1, 1, 1, 1);
        reference::dsyrk_scaled(nb, rest, width, -1.0, below, lda, below, lda, 1.0, behind, lda, dinv + first,
                                0);
    });
}

template <class Eliminate>
static void uelim(int n, int nb, double* a, int lda, Eliminate eliminate)
{
    for_blocks(n, nb, [&](int first, int width) {
        double* const diagonal = a + first + int64_t{first} * lda;
        double *const below = diagonal + width, *const right = diagonal + int64_t{width} * lda;
        const int rest = n - first - width;
        eliminate(diagonal, first, width);
        if (rest == 0)
            return;
        dtrsm_("R", "U", "N", "U", &rest, &width, &One, diagonal, &lda, below, &lda, 1, 1, 1, 1);
        dtrsm_("L", "L", "N", "N", &width, &rest, &One, diagonal, &lda, right, &lda, 1, 1, 1, 1);
        dgemm_("N", "N", &rest, &rest, &width, &MinusOne, below, &lda, right, &lda, &One, right + width, &lda,
               1, 1);
    });
}

extern "C" {

void blac_selim_(const int* n, const int* nb, const double* tol, double* a, const int* lda, double* d,
                 double* dinv)
{
    selim(*n, *nb, a, *lda, dinv, [&](double* block, int first, int width) {
        reference::selim_small(width, block, *lda, d + first, dinv + first, *tol);
    });
}
void blac_selim_reg_(const int* n, const int* nb, double* a, const int* lda, double* d, double* dinv,
                     const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    selim(*n, *nb, a, *lda, dinv, [&](double* block, int first, int width) {
        reference::selim_small_reg(width, block, *lda, d + first, dinv + first, tol + first, negpiv + first,
                                   reg + first, dcorr + first);
    });
}
void blac_uelim_(const int* n, const int* nb, const double* tol, double* a, const int* lda, double* d,
                 double* dinv)
{
    uelim(*n, *nb, a, *lda, [&](double* block, int first, int width) {
        reference::uelim_small(width, block, *lda, d + first, dinv + first, *tol);
    });
}
void blac_uelim_reg_(const int* n, const int* nb, double* a, const int* lda, double* d, double* dinv,
                     const double* tol, const int* negpiv, const double* reg, double* dcorr)
{
    uelim(*n, *nb, a, *lda, [&](double* block, int first, int width) {
        reference::uelim_small_reg(width, block, *lda, d + first, dinv + first, tol + first, negpiv + first,
                                   reg + first, dcorr + first);
    });
}

void blac_dgemm_scaled_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                        const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                        const double* beta, double* c, const int* ldc, const double* d, const int* ldd)
{
    reference::dgemm_scaled(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc, d, *ldd);
}
void blac_dgemm_scaled2_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                         const double* alpha, const double* a, const int* lda, const double* b,
                         const int* ldb, const double* beta, double* c, const int* ldc, const double* d)
{
    reference::dgemm_scaled(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc, d, 0);
}
void blac_dsyrk_scaled_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                        const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                        const int* ldc, const double* d)
{
    reference::dsyrk_scaled(*nb, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc, d, 0);
}
void blac_dsyrk_scaled2_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                         const int* lda, const double* beta, double* c, const int* ldc, const double* d,
                         const int* ldd)
{
    reference::dsyrk_scaled(*nb, *n, *k, *alpha, a, *lda, a, *lda, *beta, c, *ldc, d, *ldd);
}

void blac_dhamm_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                 const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                 const int* ldc)
{
    for_blocks(*n, *nb, [&](int first, int width) {
        const int rows = *n - first;
        dgemm_("N", "T", &rows, &width, k, alpha, a + first, lda, b + first, ldb, beta,
               c + first + int64_t{first} * *ldc, ldc, 1, 1);
    });
}
}

/// The inverse of a unit lower triangle, its rows times s if there is one; the triangle is read transposed.
static std::vector<double> inverse(int n, const double* transposed, int ld, const double* s)
{
    std::vector<double> x(static_cast<size_t>(n) * static_cast<size_t>(n));
    const auto at = [&](int i, int j) -> double& { return x[static_cast<size_t>(i + j * n)]; };
    for (int j = 0; j < n; ++j)
        for (int i = j; i < n; ++i) {
            double sum = i == j ? -1.0 : transposed[j + int64_t{i} * ld];
            for (int k = j + 1; k < i; ++k)
                sum = sum + transposed[k + int64_t{i} * ld] * at(k, j);
            at(i, j) = -sum;
        }
    if (s)
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i)
                at(i, j) = s[i] * at(i, j);
    return x;
}

// With M = L·D: block (q,s) becomes -N(q,s), N = M⁻¹, once all M(q,k)·N(k,s) for k = s..q-1 are collected
// there.
void blaC_selimC(int n, int nb, double tol, double* a)
{
    int64_t size = 0;
    for_blocks(n, nb, [&](int first, int width) { size += int64_t{n - first} * width; });
    double *const d = a + size, *const dinv = d + n, *const work = dinv + n;
    const auto block = [&](int i, int q) { // both by their first rows and columns
        double* column = a;
        for (int s = 0; s < q; s += nb)
            column += int64_t{n - s} * nb;
        return column + (i - q);
    };
    for_blocks(n, nb, [&](int q, int width) {
        const int ld = n - q, rest = ld - width;
        double *const diagonal = block(q, q), *const below = diagonal + width;
        reference::selim_small(width, diagonal, ld, d + q, dinv + q, tol);
        const std::vector<double> l = inverse(width, diagonal, ld, nullptr),
                                  m = inverse(width, diagonal, ld, dinv + q);
        if (rest > 0) {
            dtrmm_("R", "L", "T", "U", &rest, &width, &One, l.data(), &width, below, &ld, 1, 1, 1, 1);
            for_blocks(n, nb, [&](int t, int columns) {
                if (t > q)
                    reference::dgemm_scaled('N', 'T', n - t, columns, width, -1.0, block(t, q), ld,
                                            block(t, q), ld, 1.0, block(t, t), n - t, dinv + q, 0);
            });
        }
        for (int s = 0; s < q; s += nb) {
            const int lds = n - s;
            double* const row = block(q, s);
            dtrmm_("L", "L", "N", "N", &width, &nb, &One, m.data(), &width, row, &lds, 1, 1, 1, 1);
            if (rest > 0)
                dgemm_("N", "N", &rest, &nb, &width, &MinusOne, below, &ld, row, &lds, &One, row + width,
                       &lds, 1, 1);
        }
        if (rest > 0)
            dtrmm_("R", "L", "N", "N", &rest, &width, &One, m.data(), &width, below, &ld, 1, 1, 1, 1);
        if (n > nb) // what stays in the work area
            for (int j = 0; j < width; ++j)
                for (int i = j; i < width; ++i)
                    work[i + j * nb] = m[static_cast<size_t>(i + j * width)];
    });
}
