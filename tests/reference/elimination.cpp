// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

namespace reference {

namespace {

// The pivot to use and its scale factor.
struct Pivot
{
    double p, r;
};

Pivot replaced(double p, double tol)
{
    if (p > tol)
        return {p, 1.0 / p};
    if (-tol > p)
        return {p, 1.0 / p};
    return {1.0e36, 1.0e-36};
}

Pivot shifted(double p, double tol, int negpiv, double s, number& dcorr)
{
    double q = p;
    if (s > 0.0)
        q = p / s;
    bool accepted = false;
    if (q > tol)
        accepted = true;
    if (-tol > q)
        accepted = true;
    if (accepted) {
        dcorr = 0.0;
    } else {
        double shift = negpiv == 1 ? -1.0 * s : 1.0 * s;
        p = p + shift;
        dcorr = -shift;
    }
    return {p, 1.0 / p};
}

void store(int64_t k, Pivot pivot, number* a, int lda, number* d, number* dinv)
{
    a[k + k * lda] = pivot.p;
    d[k] = pivot.p;
    dinv[k] = pivot.r;
}

void symmetric_step(int64_t k, int n, number* a, int lda, double r)
{
    for (int64_t i = k + 1; i < n; ++i)
        a[k + i * lda] = r * a[i + k * lda];
    for (int64_t j = k + 1; j < n; ++j)
        for (int64_t i = j; i < n; ++i) {
            double product = a[i + k * lda] * a[k + j * lda];
            a[i + j * lda] = a[i + j * lda] - product;
        }
}

void unsymmetric_step(int64_t k, int n, number* a, int lda, double r)
{
    for (int64_t j = k + 1; j < n; ++j)
        a[k + j * lda] = a[k + j * lda] * r;
    for (int64_t j = k + 1; j < n; ++j)
        for (int64_t i = k + 1; i < n; ++i) {
            double product = a[i + k * lda] * a[k + j * lda];
            a[i + j * lda] = a[i + j * lda] - product;
        }
}

} // namespace

void selim_small(int n, number* a, int lda, number* d, number* dinv, double tol)
{
    for (int64_t k = 0; k < n; ++k) {
        Pivot pivot = replaced(a[k + k * lda], tol);
        store(k, pivot, a, lda, d, dinv);
        symmetric_step(k, n, a, lda, pivot.r);
    }
}

void selim_small_reg(int n, number* a, int lda, number* d, number* dinv, const number* tol, const int* negpiv,
                     const number* reg, number* dcorr)
{
    for (int64_t k = 0; k < n; ++k) {
        Pivot pivot = shifted(a[k + k * lda], tol[k], negpiv[k], reg[k], dcorr[k]);
        store(k, pivot, a, lda, d, dinv);
        symmetric_step(k, n, a, lda, pivot.r);
    }
}

void uelim_small(int n, number* a, int lda, number* d, number* dinv, double tol)
{
    for (int64_t k = 0; k < n; ++k) {
        Pivot pivot = replaced(a[k + k * lda], tol);
        store(k, pivot, a, lda, d, dinv);
        unsymmetric_step(k, n, a, lda, pivot.r);
    }
}

void uelim_small_reg(int n, number* a, int lda, number* d, number* dinv, const number* tol, const int* negpiv,
                     const number* reg, number* dcorr)
{
    for (int64_t k = 0; k < n; ++k) {
        Pivot pivot = shifted(a[k + k * lda], tol[k], negpiv[k], reg[k], dcorr[k]);
        store(k, pivot, a, lda, d, dinv);
        unsymmetric_step(k, n, a, lda, pivot.r);
    }
}

} // namespace reference
