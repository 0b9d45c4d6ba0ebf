// SPDX-License-Identifier: BSD-3-Clause
// How blac_dhamm_ and blac_reflect_ call the library beneath.
#include "TOVBlaModule.h"
#include "recorder.h"
#include "tiers.h"

#include <gtest/gtest.h>

namespace {

using recorder::Call;
using recorder::calls;

struct LowerProductCalls : ::testing::Test
{
    LowerProductCalls() { recorder::clear(); }
    ~LowerProductCalls() override { recorder::clear(); }

    /// The product of an m×n block of C that starts at its diagonal element j (from 0).
    Call product(int j, int m, int n) const
    {
        return {"dgemm", "NT", {m, n, K, Lda, Ldb, Ldc}, {0.5, 2.0}, {a + j, b + j, c + j + j * Ldc}, {1, 1}};
    }

    void multiply(int n, const int* nb)
    {
        const double alpha = 0.5, beta = 2.0;
        blac_dhamm_(nb, &n, &K, &alpha, a, &Lda, b, &Ldb, &beta, c, &Ldc);
    }

    static constexpr int K = 4, Lda = 9, Ldb = 10, Ldc = 11;
    double a[9 * 4] = {}, b[10 * 4] = {}, c[11 * 9] = {};
};

TEST_F(LowerProductCalls, WithOrderUpToTheBlockWidthAreOneProductOfTheWholeSquare)
{
    for (int nb : {5, 6, 100}) {
        calls.clear();
        multiply(5, &nb);
        EXPECT_TRUE((calls == std::vector{product(0, 5, 5)})) << "nb " << nb;
    }
}

TEST_F(LowerProductCalls, OfTwoWidthsAndOneHaveTheWidthsNbAndNbAndOne)
{
    const int nb = 3;
    multiply(7, &nb);
    EXPECT_TRUE((calls == std::vector{product(0, 7, 3), product(3, 4, 3), product(6, 1, 1)}));
}

TEST_F(LowerProductCalls, OfAMultipleOfTheWidthEndWithASquareOfThatWidth)
{
    const int nb = 3;
    multiply(6, &nb);
    EXPECT_TRUE((calls == std::vector{product(0, 6, 3), product(3, 3, 3)}));
}

TEST_F(LowerProductCalls, OfOrderZeroAreOneEmptyProduct)
{
    const int nb = 3;
    multiply(0, &nb);
    EXPECT_TRUE((calls == std::vector{product(0, 0, 0)}));
}

TEST_F(LowerProductCalls, WithANegativeWidthAreOneProductOfTheWholeSquare)
{
    for (int nb : {-1, -2, -7}) {
        calls.clear();
        multiply(5, &nb);
        EXPECT_TRUE((calls == std::vector{product(0, 5, 5)})) << "nb " << nb;
    }
}

TEST_F(LowerProductCalls, ReadTheWidthFromTheCallerAtEveryStep)
{
    int nb = 2;
    recorder::at_call = [&](const Call&) { nb = 1; };
    multiply(5, &nb);
    EXPECT_TRUE((calls == std::vector{product(0, 5, 2), product(1, 4, 1), product(2, 3, 3)}));
}

struct ReflectCalls : ::testing::Test
{
    ReflectCalls() { recorder::clear(); }
    ~ReflectCalls() override { recorder::clear(); }
};

TEST_F(ReflectCalls, AreBothComparisonsWhateverTheOption)
{
    support::on_every_tier([] {
        for (char uplo : {'L', 'l', 'U', 'u', 'N'}) {
            calls.clear();
            const int n = 1, lda = 1;
            double a = 0.0;
            blac_reflect_(&uplo, &n, &a, &lda);
            EXPECT_TRUE((calls == std::vector{Call{"lsame", {uplo, 'L'}, {}, {}, {}, {1, 1}},
                                              Call{"lsame", {uplo, 'U'}, {}, {}, {}, {1, 1}}}))
                << uplo;
        }
    });
}

TEST_F(ReflectCalls, AreBothMadeBeforeTheOrderIsLookedAt)
{
    support::on_every_tier([] {
        for (char uplo : {'L', 'U'}) {
            int n = 0; // becomes 2 during the second comparison
            const int lda = 2;
            double a[] = {1.0, 5.0, 6.0, 2.0};
            calls.clear();
            recorder::at_call = [&](const Call&) { n = calls.size() == 2 ? 2 : 0; };
            blac_reflect_(&uplo, &n, a, &lda);
            EXPECT_EQ(a[1], uplo == 'L' ? 5.0 : 6.0);
            EXPECT_EQ(a[2], a[1]);
        }
    });
}

} // namespace
