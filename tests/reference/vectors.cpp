// SPDX-License-Identifier: BSD-3-Clause
#include "bytes.h"
#include "reference.h"

namespace reference {

void vdasn(int64_t n, number* x, const number* a)
{
    for (int64_t k = 0; k < n; ++k)
        copy(a, &x[k]);
}

void vdscale(int64_t n, number* x, double a)
{
    for (int64_t k = 0; k < n; ++k)
        x[k] = x[k] * a;
}

void vdcopyi(int n, const number* x, int incx, number* y, int incy)
{
    for (int64_t k = 0; k < n; ++k)
        copy(&x[k * incx], &y[k * incy]);
}

void vdnegcopyi(int n, const number* x, int incx, number* y, int incy)
{
    for (int64_t k = 0; k < n; ++k) {
        copy(&x[k * incx], &y[k * incy]);
        flip_sign(&y[k * incy]);
    }
}

void vdaddi(int n, const number* x, int incx, const number* y, int incy, number* z, int incz)
{
    for (int64_t k = 0; k < n; ++k)
        z[k * incz] = x[k * incx] + y[k * incy];
}

void vdnegaddi(int n, const number* x, int incx, const number* y, int incy, number* z, int incz)
{
    for (int64_t k = 0; k < n; ++k) {
        z[k * incz] = x[k * incx] + y[k * incy];
        flip_sign(&z[k * incz]);
    }
}

void vzconj(int n, const number* x, number* y)
{
    for (int64_t k = 0; k < n; ++k) {
        copy(&x[2 * k], &y[2 * k]);
        copy(&x[2 * k + 1], &y[2 * k + 1]);
        flip_sign(&y[2 * k + 1]);
    }
}

} // namespace reference
