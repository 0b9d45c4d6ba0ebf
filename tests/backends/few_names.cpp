// SPDX-License-Identifier: BSD-3-Clause
// A BLAS that has next to nothing: the sum of products of vectors with increment 1.
extern "C" double ddot_(const int* n, const double* x, const int*, const double* y, const int*)
{
    double sum = 0;
    for (int i = 0; i < *n; ++i)
        sum += x[i] * y[i];
    return sum;
}
