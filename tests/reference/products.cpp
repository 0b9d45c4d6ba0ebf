// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

#include <cstddef>
#include <vector>

extern "C" void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                       const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                       const double* beta, double* c, const int* ldc, std::size_t, std::size_t);

namespace reference {

void dgemm_scaled(char transa, char transb, int m, int n, int k, double alpha, const number* a, int lda,
                  const number* b, int ldb, double beta, number* c, int ldc, const number* d, int ldd)
{
    std::vector<double> w(static_cast<std::size_t>(int64_t{n} * k));
    int ldw;
    if (transb == 'T' || transb == 't') {
        ldw = n;
        for (int64_t l = 0; l < k; ++l) {
            double s = d[l * (ldd + 1)];
            for (int64_t i = 0; i < n; ++i)
                w[static_cast<std::size_t>(i + l * n)] = b[i + l * ldb] * s;
        }
    } else {
        ldw = k;
        for (int64_t j = 0; j < n; ++j)
            for (int64_t l = 0; l < k; ++l)
                w[static_cast<std::size_t>(l + j * k)] = b[l + j * ldb] * d[l * (ldd + 1)];
    }
    dgemm_(&transa, &transb, &m, &n, &k, &alpha, a, &lda, w.data(), &ldw, &beta, c, &ldc, 1, 1);
}

void dsyrk_scaled(int nb, int n, int k, double alpha, const number* a, int lda, const number* b, int ldb,
                  double beta, number* c, int ldc, const number* d, int ldd)
{
    int blocks = (n + nb - 1) / nb;
    int rem = n;
    int64_t j = 0;
    for (int block = 0; block < blocks - 1; ++block) {
        dgemm_scaled('N', 'T', rem, nb, k, alpha, a + j, lda, b + j, ldb, beta, c + j + j * ldc, ldc, d, ldd);
        rem = rem - nb;
        j = j + nb;
    }
    dgemm_scaled('N', 'T', rem, rem, k, alpha, a + j, lda, b + j, ldb, beta, c + j + j * ldc, ldc, d, ldd);
}

} // namespace reference
