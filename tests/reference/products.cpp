// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

#include <cstddef>
#include <vector>

extern "C" void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                       const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                       const double* beta, double* c, const int* ldc, std::size_t, std::size_t);

namespace reference {

// The entry (l,j) of op(B), wherever it stands, times D(l,l); dgemm_ has the sum.
void dgemm_scaled(char transa, char transb, int m, int n, int k, double alpha, const number* a, int lda,
                  const number* b, int ldb, double beta, number* c, int ldc, const number* d, int ldd)
{
    bool transposed = transb == 'T' || transb == 't';
    int rows = transposed ? n : k;
    int ldw = rows; // not more: the order of a library's sums may depend on it
    std::vector<double> w(rows < 1 ? 0 : static_cast<std::size_t>(int64_t{ldw} * (transposed ? k : n)));
    for (int64_t l = 0; l < k; ++l)
        for (int64_t j = 0; j < n; ++j) {
            int64_t row = transposed ? j : l, column = transposed ? l : j;
            w[static_cast<std::size_t>(row + column * ldw)] = b[row + column * ldb] * d[l + l * ldd];
        }
    dgemm_(&transa, &transb, &m, &n, &k, &alpha, a, &lda, w.data(), &ldw, &beta, c, &ldc, 1, 1);
}

// C(i,j) for every column j and every row i from the first one of its block on.
void dsyrk_scaled(int nb, int n, int k, double alpha, const number* a, int lda, const number* b, int ldb,
                  double beta, number* c, int ldc, const number* d, int ldd)
{
    int width;
    for (int64_t first = 0; first < n; first += width) {
        int rows = n - static_cast<int>(first);
        width = nb < 1 || nb > rows ? rows : nb;
        dgemm_scaled('N', 'T', rows, width, k, alpha, a + first, lda, b + first, ldb, beta,
                     c + first + first * ldc, ldc, d, ldd);
    }
}

} // namespace reference
