// SPDX-License-Identifier: BSD-3-Clause
// The few BLAS routines that the kernels call, as plain loops: with them the digest does not depend on the
// BLAS beneath, whose bits differ from library to library and from processor to processor. Every operation
// is rounded on its own, in the order written here.
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>

using std::int64_t;
using std::size_t;
typedef double real __attribute__((aligned(1))); // kernels hand on arrays that start at any address

static bool is(const char* option, char letter)
{
    return std::toupper(static_cast<unsigned char>(*option)) == letter;
}

extern "C" {

int lsame_(const char* a, const char* b, size_t, size_t)
{
    return is(a, static_cast<char>(std::toupper(static_cast<unsigned char>(*b))));
}

void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const real* a, const int* lda, const real* b, const int* ldb,
            const double* beta, real* c, const int* ldc, size_t, size_t)
{
    const int64_t ra = is(transa, 'N') ? 1 : *lda, ca = is(transa, 'N') ? *lda : 1;
    const int64_t rb = is(transb, 'N') ? 1 : *ldb, cb = is(transb, 'N') ? *ldb : 1;
    for (int64_t j = 0; j < *n; ++j)
        for (int64_t i = 0; i < *m; ++i) {
            double sum = 0.0;
            for (int64_t l = 0; l < *k; ++l)
                sum = sum + a[i * ra + l * ca] * b[l * rb + j * cb];
            real& x = c[i + j * *ldc];
            x = *alpha * sum + *beta * x;
        }
}

// B := alpha·op(A)·B and B := alpha·op(A)⁻¹·B, and the same from the right: the loops see op(A) as t(i,l),
// lower or upper, and a column (from the left) or a row (from the right) of B as x.
struct Triangle
{
    const real* a;
    int64_t row, column, n;
    bool lower, unit;

    Triangle(const char* uplo, const char* trans, const char* diag, const real* matrix, int64_t ld,
             int64_t order, bool right)
        : a(matrix), n(order), lower(is(uplo, 'L')), unit(is(diag, 'U'))
    {
        const bool transposed = !is(trans, 'N') != right; // x·T is Tᵀ·xᵀ
        row = transposed ? ld : 1;
        column = transposed ? 1 : ld;
        if (transposed)
            lower = !lower;
    }
    double operator()(int64_t i, int64_t l) const { return a[i * row + l * column]; }

    void multiply(real* x, int64_t step) const
    {
        for (int64_t t = 0; t < n; ++t) {
            const int64_t i = lower ? n - 1 - t : t;
            double sum = unit ? x[i * step] : (*this)(i, i) * x[i * step];
            for (int64_t l = lower ? 0 : i + 1; l < (lower ? i : n); ++l)
                sum = sum + (*this)(i, l) * x[l * step];
            x[i * step] = sum;
        }
    }
    void solve(real* x, int64_t step) const
    {
        for (int64_t t = 0; t < n; ++t) {
            const int64_t i = lower ? t : n - 1 - t;
            double sum = x[i * step];
            for (int64_t l = lower ? 0 : i + 1; l < (lower ? i : n); ++l)
                sum = sum - (*this)(i, l) * x[l * step];
            x[i * step] = unit ? sum : sum / (*this)(i, i);
        }
    }
};

void dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const real* a, const int* lda, real* b, const int* ldb, size_t,
            size_t, size_t, size_t)
{
    const bool right = is(side, 'R');
    const Triangle t(uplo, transa, diag, a, *lda, right ? *n : *m, right);
    for (int64_t s = 0; s < (right ? *m : *n); ++s)
        t.multiply(right ? b + s : b + s * *ldb, right ? *ldb : 1);
    for (int64_t j = 0; j < *n; ++j)
        for (int64_t i = 0; i < *m; ++i)
            b[i + j * *ldb] = *alpha * b[i + j * *ldb];
}

void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const real* a, const int* lda, real* b, const int* ldb, size_t,
            size_t, size_t, size_t)
{
    const bool right = is(side, 'R');
    const Triangle t(uplo, transa, diag, a, *lda, right ? *n : *m, right);
    for (int64_t j = 0; j < *n; ++j)
        for (int64_t i = 0; i < *m; ++i)
            b[i + j * *ldb] = *alpha * b[i + j * *ldb];
    for (int64_t s = 0; s < (right ? *m : *n); ++s)
        t.solve(right ? b + s : b + s * *ldb, right ? *ldb : 1);
}

double ddot_(const int* n, const real* x, const int* incx, const real* y, const int* incy)
{
    double sum = 0.0;
    for (int64_t i = 0; i < *n; ++i)
        sum = sum + x[i * *incx] * y[i * *incy];
    return sum;
}

double dnrm2_(const int* n, const real* x, const int* incx)
{
    return std::sqrt(ddot_(n, x, incx, x, incx));
}

// r = sign·sqrt(a² + b²) with the sign of the larger of the two, c = a/r, s = b/r.
void drotg_(real* a, real* b, real* c, real* s)
{
    const double scale = std::fabs(*a) + std::fabs(*b);
    if (scale == 0.0) {
        *c = 1.0;
        *s = 0.0;
        return;
    }
    const double x = *a / scale, y = *b / scale;
    double r = scale * std::sqrt(x * x + y * y);
    if ((std::fabs(*a) > std::fabs(*b) ? *a : *b) < 0.0)
        r = -r;
    *c = *a / r;
    *s = *b / r;
    *a = r;
}
}
