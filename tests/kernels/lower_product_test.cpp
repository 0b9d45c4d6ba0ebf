// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"

#include <gtest/gtest.h>

using namespace support;

namespace {

/// C := beta·C + alpha·A·Bᵀ on the lower block trapezoid, by the library product that the blocks are said to
/// be.
void lower_product(int nb, int n, int k, double alpha, const double* a, int lda, const double* b, int ldb,
                   double beta, double* c, int ldc)
{
    int rem = n;
    std::int64_t j = 0;
    for (; rem > nb; rem -= nb, j += nb)
        blac_dgemm_("N", "T", &rem, &nb, &k, &alpha, a + j, &lda, b + j, &ldb, &beta, c + j + j * ldc, &ldc);
    blac_dgemm_("N", "T", &rem, &rem, &k, &alpha, a + j, &lda, b + j, &ldb, &beta, c + j + j * ldc, &ldc);
}

// What lies above the diagonal blocks keeps the canary.
TEST(LowerProduct, GivesTheBitsOfTheBlockwiseProducts)
{
    blaC_set_num_threads(1);
    for (int n : {1, 2, 5, 7, 16, 33, 64})
        for (int nb : {1, 2, 3, 16, n, n + 1})
            for (int k : {1, 4, 37})
                for (Data data : {Data::Ordinary, Data::Special})
                    for (auto [alpha, beta] : {std::pair{1.0, 0.0}, {-1.0, 1.0}, {0.75, -2.5}})
                        for (std::size_t gap : {0, 8}) {
                            auto random = generator(static_cast<std::uint64_t>(n * 1000 + nb * 100 + k));
                            const int lda = n + 1, ldb = n + 2, ldc = n + 3;
                            Guarded<double> a(extent(n, k, lda), gap), b(extent(n, k, ldb), gap),
                                expected(extent(n, n, ldc), gap), actual(extent(n, n, ldc), gap);
                            fill_matrix(a, n, k, lda, random, data);
                            fill_matrix(b, n, k, ldb, random, data);
                            for (std::int64_t j = 0; j < n; ++j)
                                for (std::int64_t i = j / nb * nb; i < n; ++i) {
                                    expected.set(i + j * ldc, draw(random, data));
                                    actual.set(i + j * ldc, expected.get(i + j * ldc));
                                }
                            lower_product(nb, n, k, alpha, a, lda, b, ldb, beta, expected, ldc);
                            blac_dhamm_(&nb, &n, &k, &alpha, a, &lda, b, &ldb, &beta, actual, &ldc);
                            ASSERT_TRUE(same_memory(expected, actual))
                                << "n " << n << ", nb " << nb << ", k " << k;
                        }
}

TEST(LowerProduct, OfOrderZeroDoesNothing)
{
    const int nb = 2, n = 0, k = 3, ld = 1;
    const double one = 1.0;
    Guarded<double> a(1), c(1);
    blac_dhamm_(&nb, &n, &k, &one, a, &ld, a, &ld, &one, c, &ld);
    EXPECT_EQ(bits(c.get(0)), Canary);
}

} // namespace
