/* SPDX-License-Identifier: BSD-3-Clause */
/* A caller in C: one kernel, one routine of the facade, one complex result. */
#include <TOVBlaModule.h>

#include <stdio.h>

int main(void)
{
    double a[4] = {4, 2, 0, 3}, d[2], dinv[2];
    const int n = 2, one = 1;
    const double tolerance = 0;
    blac_selim_small_(&n, a, &n, d, dinv, &tolerance);
    if (d[0] != 4 || d[1] != 2 || a[2] != 0.5 || dinv[1] != 0.5)
        return 1;
    if (blac_ddot_(&n, d, &one, d, &one) != 20)
        return 2;
    const double parts[4] = {1, 1, 1, 0};
    blac_complex x, y, product;
    __real__ x = parts[0], __imag__ x = parts[1];
    __real__ y = parts[2], __imag__ y = parts[3];
    blac_zdotc_(&product, &one, &x, &one, &y, &one);
    if (__real__ product != 1 || __imag__ product != -1)
        return 3;
    puts("consumer.c: right");
    return 0;
}
