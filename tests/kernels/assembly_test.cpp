// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <vector>

using namespace support;

namespace {

void copy_elements(const Guarded<double>& from, const Guarded<double>& to)
{
    for (std::int64_t i = 0; i < from.size(); ++i)
        to.set(i, from.get(i));
}

void fill_lower(const Guarded<double>& x, int n, int ld, std::mt19937_64& random, Data data)
{
    for (std::int64_t j = 0; j < n; ++j)
        for (std::int64_t i = j; i < n; ++i)
            x.set(i + j * ld, draw(random, data));
}

TEST(AddRectBlock, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int m : Sizes)
            for (int n : {1, 2, 5})
                sweep_layouts(m, [&](int lda, std::size_t gap, Data data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int ldb = m + 5 - (lda - m);
                    Guarded<double> b(extent(m, n, ldb), gap), expected(extent(m, n, lda), gap),
                        actual(extent(m, n, lda), gap);
                    fill_matrix(b, m, n, ldb, random, data);
                    fill_matrix(expected, m, n, lda, random, data);
                    copy_elements(expected, actual);
                    reference::addrectblock(m, n, expected, lda, b, ldb);
                    blac_addrectblock_(&m, &n, actual, &lda, b, &ldb);
                    ASSERT_TRUE(same_memory(expected, actual)) << "m " << m << ", n " << n << ", lda " << lda;
                });
    });
}

TEST(AddRectBlock, AndItsTransposedFormReadAndWriteNothingForEmptyCounts)
{
    on_every_tier([] {
        for (auto [m, n] : {std::pair{0, 3}, {3, 0}, {-1, 3}, {3, -2}, {0, 0}, {-4, -4}, {40, 0}, {0, 40}}) {
            const int ld = 40;
            blac_addrectblock_(&m, &n, nullptr, &ld, nullptr, &ld);
            blac_addrectblockt_(&m, &n, nullptr, &ld, nullptr, &ld);
        }
    });
}

// m×n targets below, at and above the tiles and bands of the transposed form; the sources are n×m, so that
// their leading dimension is at least n.
TEST(AddRectBlockT, OfRectanglesAndSquaresGivesTheBitsOfThePlainLoop)
{
    constexpr int sizes[] = {1, 2, 3, 4, 5, 8, 11, 16, 17, 19, 32, 33, 37, 70};
    on_every_tier([&] {
        for (int m : sizes)
            for (int n : sizes)
                sweep_layouts(m, [&](int lda, std::size_t gap, Data data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int ldb = n + (lda - m); // n at the tightest
                    Guarded<double> b(extent(n, m, ldb), gap), expected(extent(m, n, lda), gap),
                        actual(extent(m, n, lda), gap);
                    fill_matrix(b, n, m, ldb, random, data);
                    fill_matrix(expected, m, n, lda, random, data);
                    copy_elements(expected, actual);
                    reference::addrectblockt(m, n, expected, lda, b, ldb);
                    blac_addrectblockt_(&m, &n, actual, &lda, b, &ldb);
                    ASSERT_TRUE(same_memory(expected, actual))
                        << "m " << m << ", n " << n << ", lda " << lda << ", gap " << gap;
                });
    });
}

TEST(AddRectBlock, OffsetsBeyond32BitsAreFormed)
{
    // Two columns of one entry, 2^31 - 1 apart: the third would lie 2^32 - 2 entries away.
    const int m = 1, n = 3, ld = 0x7fffffff, ldb = 1;
    const std::size_t bytes = std::size_t{2} * 0x7fffffff * 8 + 8;
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    double* const a = static_cast<double*>(memory);
    const double b[] = {1.0, 2.0, 3.0};
    on_every_tier([&] {
        a[0] = a[std::int64_t{ld}] = a[std::int64_t{2} * ld] = 10.0;
        blac_addrectblock_(&m, &n, a, &ld, b, &ldb);
        EXPECT_EQ(a[std::int64_t{2} * ld], 13.0);
        blac_addrectblockt_(&m, &n, a, &ld, b, &n);
        EXPECT_EQ(a[std::int64_t{2} * ld], 16.0);
    });
    munmap(memory, bytes);
}

// The fill leaves the canary, a signalling NaN, above both diagonals: it must stay there and show nowhere
// else.
TEST(AddTriBlock, GivesTheBitsOfThePlainLoopWhateverStandsAboveTheDiagonals)
{
    on_every_tier([] {
        for (int n : Sizes)
            sweep_layouts(n, [&](int lda, std::size_t gap, Data data) {
                auto random = generator(static_cast<std::uint64_t>(n));
                const int ldb = n + 5 - (lda - n);
                Guarded<double> b(extent(n, n, ldb), gap), expected(extent(n, n, lda), gap),
                    actual(extent(n, n, lda), gap);
                fill_lower(b, n, ldb, random, data);
                fill_lower(expected, n, lda, random, data);
                copy_elements(expected, actual);
                reference::addtriblock(n, expected, lda, b, ldb);
                blac_addtriblock_(&n, actual, &lda, b, &ldb);
                ASSERT_TRUE(same_memory(expected, actual)) << "n " << n << ", lda " << lda;
            });
    });
}

TEST(AddTriBlock, OfOrderOneAddsOneEntry)
{
    on_every_tier([] {
        const int n = 1, ld = 2;
        double a[] = {1.0, 5.0, 6.0, 7.0};
        const double b[] = {2.0, 8.0, 9.0, 10.0};
        blac_addtriblock_(&n, a, &ld, b, &ld);
        EXPECT_EQ(a[0], 3.0);
        EXPECT_EQ(a[1], 5.0);
        EXPECT_EQ(a[2], 6.0);
        EXPECT_EQ(a[3], 7.0);
    });
}

TEST(AddTriBlock, OfOrderZeroOrBelowReadsAndWritesNothing)
{
    on_every_tier([] {
        for (int n : {0, -1}) {
            const int ld = 4;
            blac_addtriblock_(&n, nullptr, &ld, nullptr, &ld);
        }
    });
}

TEST(Assembly, OfColumnsOf7And8And9And17EntriesOnAndOffA16ByteBoundaryIsTheSameOnEveryTier)
{
    for (int m : {7, 8, 9, 17})
        for (std::size_t gap : {0, 8}) {
            std::vector<std::vector<std::uint64_t>> results; // one per tier
            on_every_tier([&] {
                const int n = 9, lda = m + 1;
                auto random = generator(static_cast<std::uint64_t>(m));
                Guarded<double> a(extent(lda, 17, lda), gap), b(17 * 17, gap);
                fill(a, random, Data::Ordinary);
                fill(b, random, Data::Ordinary);
                const int ldb = 17;
                blac_addrectblock_(&m, &n, a, &lda, b, &ldb);
                blac_addrectblockt_(&m, &n, a, &lda, b, &ldb);
                blac_addtriblock_(&m, a, &lda, b, &ldb);
                std::vector<std::uint64_t> result;
                for (std::int64_t i = 0; i < a.size(); ++i)
                    result.push_back(bits(a.get(i)));
                results.push_back(result);
            });
            for (const auto& result : results)
                ASSERT_EQ(result, results[0]) << "m " << m << ", gap " << gap;
        }
}

} // namespace
