// SPDX-License-Identifier: BSD-3-Clause
// The transpose for matrices that no cache holds, at sizes that fit a test, and when it is chosen.
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "../../TOVBla/TOVBlaCore.m/private/tiers.h"
#include "../../TOVBla/TOVBlaCore.m/private/transpose_past_caches.h"

BLA_TIERS_VA(transpose_past_caches_, (int m, int n, const real* s, int s_step, real* d, int d_step),
             (m, n, s, s_step, d, d_step))
{
    transpose_past_caches<Tier>(m, n, s, s_step, d, d_step);
}

using namespace support;

namespace {

TEST(TransposePastCaches, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int m : {1, 4, 7, 8, 9, 15, 16, 23, 40, 65})
            for (int n : {1, 3, 4, 5, 8, 17, 127, 128, 129, 260})
                for (int behind = 0; behind < 8; ++behind) { // elements between a line and the first column
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int lda = n + behind % 3, ldb = (m + 15) / 8 * 8;
                    const std::int64_t size = behind + std::int64_t{ldb} * n;
                    Guarded<double> a(std::int64_t{lda} * m), expected(size), actual(size);
                    for (std::int64_t i = 0; i < a.size(); ++i)
                        a.set(i, draw(random, Data::Bits));
                    reference::datcpy(m, n, a, lda, expected + behind, ldb);
                    transpose_past_caches_(m, n, a, lda, actual + behind, ldb);
                    ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact))
                        << "m " << m << ", n " << n << ", behind " << behind;
                }
    });
}

// The same through the interface, with matrices that the caches of this machine do not hold.
TEST(TransposePastCaches, IsWhatDatcpyGivesOfLargeMatrices)
{
    constexpr int m = 2001, ld = 2008;
    const std::int64_t beyond = std::max(bla_last_cache() / 32, std::int64_t{1} << 20);
    const int n = static_cast<int>(beyond / m + 3);
    std::vector<double> a(std::size_t{m} * n), b(std::size_t{ld} * n);
    ASSERT_TRUE(past_caches(std::int64_t{m} * n, b.data(), ld));
    std::iota(a.begin(), a.end(), 0.0);
    on_every_tier([&] {
        std::fill(b.begin(), b.end(), -777.0);
        blac_datcpy_(&m, &n, a.data(), &n, b.data(), &ld);
        std::int64_t wrong = 0;
        for (std::int64_t j = 0; j < n; ++j)
            for (std::int64_t i = 0; i < ld; ++i)
                wrong += b[j * ld + i] != (i < m ? static_cast<double>(j + i * n) : -777.0);
        EXPECT_EQ(wrong, 0);
    });
}

TEST(TransposePastCaches, TakesLargeMatricesWhoseColumnsStartAtTheSamePlaceOfALine)
{
    alignas(64) double line[8];
    const std::int64_t fits = bla_last_cache() / 32, beyond = fits + 1;
    ASSERT_GE(bla_last_cache(), std::int64_t{1} << 20);
    const bool large = beyond >= 1 << 20;
    EXPECT_EQ(past_caches(beyond, line, 8000), large);
    EXPECT_EQ(past_caches(beyond, line + 3, 8000), large);
    EXPECT_FALSE(past_caches(fits, line, 8000));
    EXPECT_FALSE(past_caches(beyond, line, 8004));
    EXPECT_FALSE(past_caches(beyond, line, 8001));
    EXPECT_FALSE(
        past_caches(beyond, reinterpret_cast<const real*>(reinterpret_cast<const char*>(line) + 4), 8000));
    EXPECT_FALSE(past_caches((1 << 20) - 1, line, 8000));
}

} // namespace
