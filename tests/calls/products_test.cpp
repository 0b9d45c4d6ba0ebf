// SPDX-License-Identifier: BSD-3-Clause
// What the scaled products hand to dgemm_, and where they take their scratch from.
#include "TOVBlaModule.h"
#include "recorder.h"
#include "tiers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <pthread.h>
#include <vector>

// The library's allocations pass through here (linked with --wrap).
static int allocations, releases;
static bool out_of_memory;

extern "C" {
void* __real_malloc(std::size_t);
void __real_free(void*);
void* __wrap_malloc(std::size_t size)
{
    ++allocations;
    return out_of_memory ? nullptr : __real_malloc(size);
}
void __wrap_free(void* p)
{
    releases += p != nullptr;
    __real_free(p);
}
}

namespace {

using recorder::Call;
using recorder::calls;
using support::on_every_tier;

struct Products : ::testing::Test
{
    Products()
    {
        recorder::clear();
        allocations = releases = 0;
        out_of_memory = false;
    }
    ~Products() override { recorder::clear(); }

    /// The calls of dgemm_ alone.
    static std::vector<Call> products()
    {
        std::vector<Call> found;
        for (const Call& call : calls)
            if (call.name == "dgemm")
                found.push_back(call);
        return found;
    }
};

const double One = 1.0, MinusOne = -1.0, Half = 0.5;

TEST_F(Products, AScaledProductIsOneCallWithTheScaledCopyOfTheSecondFactor)
{
    const int m = 5, n = 3, k = 2, lda = 6, ldb = 4, ldc = 7, ldd = 3;
    double a[6 * 2] = {}, c[7 * 3] = {}, d[3 * 2] = {2, 99, 99, 99, -3, 99};
    double b[8];
    for (int i = 0; i < 8; ++i)
        b[i] = i + 1;
    recorder::at_call = [&](const Call& call) {
        if (call.name != "dgemm")
            return;
        const double* w = call.arrays[1];
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(w) % 64, 0u);
        for (int l = 0; l < k; ++l)
            for (int i = 0; i < n; ++i)
                EXPECT_EQ(w[i + l * n], b[i + l * ldb] * d[l * (ldd + 1)]);
    };
    blac_dgemm_scaled_("N", "t", &m, &n, &k, &MinusOne, a, &lda, b, &ldb, &Half, c, &ldc, d, &ldd);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].name, "lsame");
    EXPECT_EQ(calls[0].options, "tT");
    EXPECT_EQ(calls[0].lengths, (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(calls[1].options, "Nt") << "the caller's options, unchanged";
    EXPECT_EQ(calls[1].sizes, (std::vector<int>{m, n, k, lda, n, ldc}));
    EXPECT_EQ(calls[1].scalars, (std::vector<double>{-1.0, 0.5}));
    EXPECT_EQ(calls[1].arrays[0], a);
    EXPECT_EQ(calls[1].arrays[2], c);
    EXPECT_EQ(calls[1].lengths, (std::vector<std::size_t>{1, 1}));
}

TEST_F(Products, WithoutTransposeTheRowsOfTheSecondFactorAreScaled)
{
    const int m = 5, n = 3, k = 2, lda = 6, ldb = 4, ldc = 7, ldd = 2;
    double a[6 * 2] = {}, c[7 * 3] = {}, d[6] = {2, 99, 99, -3, 99, 99}, vector[2] = {2, -3};
    double b[12];
    for (int i = 0; i < 12; ++i)
        b[i] = i + 1;
    recorder::at_call = [&](const Call& call) {
        if (call.name != "dgemm")
            return;
        for (int j = 0; j < n; ++j)
            for (int l = 0; l < k; ++l)
                EXPECT_EQ(call.arrays[1][l + j * k], b[l + j * ldb] * vector[l]);
    };
    for (const char* transb : {"N", "n", "C", "c", "X"}) { // whatever is not T: as stored
        blac_dgemm_scaled_("T", transb, &m, &n, &k, &One, a, &lda, b, &ldb, &One, c, &ldc, d, &ldd);
        blac_dgemm_scaled2_("T", transb, &m, &n, &k, &One, a, &lda, b, &ldb, &One, c, &ldc, vector);
        ASSERT_EQ(products().size(), 2u);
        for (const Call& call : products()) {
            EXPECT_EQ(call.options, std::string("T") + transb);
            EXPECT_EQ(call.sizes, (std::vector<int>{m, n, k, lda, k, ldc})) << "leading dimension k";
        }
        calls.clear();
    }
}

TEST_F(Products, EmptyDimensionsScaleNothingAndStillCallWithALeadingDimensionBelowOne)
{
    double* nowhere = nullptr;
    const int m = 4, zero = 0, minus = -3, two = 2, ld = 4;
    blac_dgemm_scaled2_("N", "T", &m, &zero, &two, &One, nowhere, &ld, nowhere, &ld, &One, nowhere, &ld,
                        nowhere);
    blac_dgemm_scaled2_("N", "N", &m, &two, &minus, &One, nowhere, &ld, nowhere, &ld, &One, nowhere, &ld,
                        nowhere);
    blac_dgemm_scaled_("N", "N", &m, &minus, &zero, &One, nowhere, &ld, nowhere, &ld, &One, nowhere, &ld,
                       nowhere, &ld);
    ASSERT_EQ(products().size(), 3u);
    EXPECT_EQ(products()[0].sizes, (std::vector<int>{4, 0, 2, 4, 0, 4}));
    EXPECT_EQ(products()[1].sizes, (std::vector<int>{4, 2, -3, 4, -3, 4}));
    EXPECT_EQ(products()[2].sizes, (std::vector<int>{4, -3, 0, 4, 0, 4}));
}

TEST_F(Products, WithoutRowsTheScaledCopyIsStillMadeInFull)
{
    const int m = 0, n = 3, k = 2, ld = 3;
    double b[6] = {1, 2, 3, 4, 5, 6}, d[2] = {10, 100};
    bool seen = false;
    recorder::at_call = [&](const Call& call) {
        if (call.name != "dgemm")
            return;
        seen = true;
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(call.arrays[1][i], b[i] * d[i / 3]);
    };
    blac_dgemm_scaled2_("N", "T", &m, &n, &k, &One, nullptr, &ld, b, &ld, &One, nullptr, &ld, d);
    EXPECT_TRUE(seen);
}

TEST_F(Products, TheBlockedFormWalksTheLowerTrapezoidFromLeftToRight)
{
    const int nb = 3, n = 7, k = 2, lda = 8, ldb = 9, ldc = 10;
    double a[16] = {}, b[18] = {}, c[70] = {}, d[2] = {1, 1};
    blac_dsyrk_scaled_(&nb, &n, &k, &MinusOne, a, &lda, b, &ldb, &One, c, &ldc, d);
    const std::vector<Call> blocks = products();
    ASSERT_EQ(blocks.size(), 3u);
    const int first[] = {0, 3, 6}, rows[] = {7, 4, 1}, width[] = {3, 3, 1};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(blocks[i].options, "NT");
        EXPECT_EQ(blocks[i].sizes, (std::vector<int>{rows[i], width[i], k, lda, width[i], ldc}));
        EXPECT_EQ(blocks[i].scalars, (std::vector<double>{-1.0, 1.0}));
        EXPECT_EQ(blocks[i].arrays[0], a + first[i]);
        EXPECT_EQ(blocks[i].arrays[2], c + first[i] * (ldc + 1));
    }
}

TEST_F(Products, TheOneFactorFormWalksTheSameBlocks)
{
    const int nb = 2, n = 5, k = 3, lda = 6, ldc = 7, ldd = 4;
    double a[18], c[35] = {}, d[16] = {};
    for (int i = 0; i < 18; ++i)
        a[i] = i + 1;
    for (int l = 0; l < 3; ++l)
        d[l * 5] = l + 2;
    const int first[] = {0, 2, 4}, rows[] = {5, 3, 1}, width[] = {2, 2, 1};
    int block = 0;
    recorder::at_call = [&](const Call& call) {
        if (call.name != "dgemm")
            return;
        for (int l = 0; l < k; ++l)
            for (int i = 0; i < width[block]; ++i)
                EXPECT_EQ(call.arrays[1][i + l * width[block]], a[first[block] + i + l * lda] * (l + 2));
        ++block;
    };
    blac_dsyrk_scaled2_(&nb, &n, &k, &Half, a, &lda, &One, c, &ldc, d, &ldd);
    const std::vector<Call> blocks = products();
    ASSERT_EQ(blocks.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(blocks[i].sizes, (std::vector<int>{rows[i], width[i], k, lda, width[i], ldc}));
        EXPECT_EQ(blocks[i].arrays[0], a + first[i]);
        EXPECT_EQ(blocks[i].arrays[2], c + first[i] * (ldc + 1));
    }
}

TEST_F(Products, ABlockAsWideAsTheMatrixOrANegativeWidthMakesOneSquare)
{
    const int n = 4, k = 1, ld = 4;
    double a[4] = {}, c[16] = {}, d[1] = {1};
    for (int nb : {4, 5, 100, -1, -3}) {
        calls.clear();
        blac_dsyrk_scaled_(&nb, &n, &k, &One, a, &ld, a, &ld, &One, c, &ld, d);
        ASSERT_EQ(products().size(), 1u) << "nb " << nb;
        EXPECT_EQ(products()[0].sizes, (std::vector<int>{4, 4, 1, 4, 4, 4})) << "nb " << nb;
    }
}

TEST_F(Products, AnEmptyBlockedFormMakesOneEmptyCall)
{
    const int nb = 3, n = 0, k = 2, ld = 1;
    blac_dsyrk_scaled_(&nb, &n, &k, &One, nullptr, &ld, nullptr, &ld, &One, nullptr, &ld, nullptr);
    ASSERT_EQ(products().size(), 1u);
    EXPECT_EQ(products()[0].sizes, (std::vector<int>{0, 0, 2, 1, 0, 1}));
}

TEST_F(Products, PanelUpdatesUpToWidth64TakeTheirScratchFromTheStack)
{
    const int n = 200, k = 64, nb = 64, ld = 200;
    std::vector<double> a(200 * 64), c(200 * 200), d(64);
    allocations = 0;
    blac_dsyrk_scaled_(&nb, &n, &k, &One, a.data(), &ld, a.data(), &ld, &One, c.data(), &ld, d.data());
    EXPECT_EQ(allocations, 0);
}

TEST_F(Products, LargeScratchComesFromTheHeapAndGoesBack)
{
    const int m = 8, n = 400, k = 200, ld = 400;
    std::vector<double> a(8 * 400), b(400 * 200), c(8 * 400 * 50), d(200);
    allocations = releases = 0;
    blac_dgemm_scaled2_("N", "T", &m, &n, &k, &One, a.data(), &ld, b.data(), &ld, &One, c.data(), &ld,
                        d.data());
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(releases, 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(products().at(0).arrays[1]) % 64, 0u);
}

/// What dgemm_ would have done.
void multiply(const Call& call)
{
    const int m = call.sizes[0], n = call.sizes[1], k = call.sizes[2];
    const auto entry = [&call](int array, bool transposed, int i, int j) {
        const std::int64_t ld = call.sizes[static_cast<std::size_t>(3 + array)];
        return call.arrays[static_cast<std::size_t>(array)][transposed ? j + i * ld : i + j * ld];
    };
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) {
            double sum = 0.0;
            for (int l = 0; l < k; ++l)
                sum += entry(0, call.options[0] != 'N', i, l) * entry(1, call.options[1] != 'N', l, j);
            double& c = const_cast<double*>(call.arrays[2])[i + std::int64_t{j} * call.sizes[5]];
            c = call.scalars[0] * sum + call.scalars[1] * c;
        }
}

/// A product of small whole numbers, so that every sum is exact in whatever order.
struct WholeNumbers
{
    int m = 3, n, k, lda, ldb, ldc = 5, ldd;
    char transa, transb;
    double alpha = 2.0, beta = -3.0;
    std::vector<double> a, b, c, d;

    WholeNumbers(int n_, int k_, int ldd_, char transa_, char transb_)
        : n(n_), k(k_), lda((transa_ == 'N' ? m : k) + 1), ldb((transb_ == 'N' ? k : n) + 2), ldd(ldd_),
          transa(transa_), transb(transb_)
    {
        fill(a, lda * (transa == 'N' ? k : m));
        fill(b, ldb * (transb == 'N' ? n : k));
        fill(c, ldc * n);
        fill(d, (ldd + 1) * k);
    }
    static void fill(std::vector<double>& x, int size)
    {
        for (int i = 0; i < size; ++i)
            x.push_back((i * 7 + size) % 11 - 5);
    }
    /// C by the formula, entry by entry.
    std::vector<double> by_the_formula() const
    {
        std::vector<double> result = c;
        const auto at = [](const std::vector<double>& x, int i) { return x[static_cast<std::size_t>(i)]; };
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) {
                double sum = 0.0;
                for (int l = 0; l < k; ++l)
                    sum += at(a, transa == 'N' ? i + l * lda : l + i * lda) * at(d, l * (ldd + 1)) *
                           at(b, transb == 'N' ? l + j * ldb : j + l * ldb);
                const auto ij = static_cast<std::size_t>(i + j * ldc);
                result[ij] = beta * result[ij] + alpha * sum;
            }
        return result;
    }
    void call()
    {
        blac_dgemm_scaled_(&transa, &transb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta,
                           c.data(), &ldc, d.data(), &ldd);
    }
};

/// Runs work on a thread with a stack of 160 KiB and a guard behind it.
void on_a_small_stack(const std::function<void()>& work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{160} << 10), 0);
    pthread_t thread;
    const auto run = [](void* f) -> void* {
        (*static_cast<const std::function<void()>*>(f))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST_F(Products, WithoutMemoryOnTheHeapAreMadeInBlocksOnTheStack)
{
    on_every_tier([] {
        for (auto [n, k] : {std::pair{400, 200}, {31, 200}, {2, 3072}, {5, 3073}, {3, 7000}, {7000, 1}})
            for (int ldd : {0, 2})
                for (char transa : {'N', 'T'})
                    for (char transb : {'N', 'T'}) {
                        WholeNumbers x(n, k, ldd, transa, transb);
                        const std::vector<double> expected = x.by_the_formula();
                        recorder::clear();
                        std::size_t furthest = 0;
                        on_a_small_stack([&] {
                            const char* const here = static_cast<char*>(__builtin_frame_address(0));
                            recorder::at_call = [&](const Call& call) {
                                if (call.name != "dgemm")
                                    return;
                                multiply(call);
                                const char* const w = reinterpret_cast<const char*>(call.arrays[1]);
                                furthest = std::max(furthest, static_cast<std::size_t>(here - w));
                                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(w) % 64, 0u);
                            };
                            allocations = releases = 0;
                            out_of_memory = true;
                            x.call();
                            out_of_memory = false;
                        });
                        ASSERT_EQ(x.c, expected)
                            << transa << transb << " n " << n << ", k " << k << ", ldd " << ldd;
                        EXPECT_GT(products().size(), n * k > 6144 ? 1u : 0u);
                        EXPECT_LT(furthest, std::size_t{64} << 10);
                        EXPECT_EQ(releases, 0);
                        recorder::clear();
                    }
    });
}

TEST_F(Products, WithMemoryAreOneCallWhateverTheirSize)
{
    on_every_tier([] {
        for (auto [n, k] : {std::pair{2, 3}, {400, 200}, {3, 7000}})
            for (char transa : {'N', 'T'})
                for (char transb : {'N', 'T'}) {
                    WholeNumbers x(n, k, 1, transa, transb);
                    const std::vector<double> expected = x.by_the_formula();
                    recorder::clear();
                    recorder::at_call = [](const Call& call) {
                        if (call.name == "dgemm")
                            multiply(call);
                    };
                    x.call();
                    ASSERT_EQ(x.c, expected) << transa << transb << " n " << n << ", k " << k;
                    EXPECT_EQ(products().size(), 1u);
                }
    });
}

// Only the two counts are looked at, and what dgemm_ is handed.
TEST_F(Products, EmptyOnesReadNeitherTheSecondFactorsShapeNorTheDiagonals)
{
    on_every_tier([] {
        const double* const nowhere = nullptr;
        const int* const no_integer = nullptr;
        const int m = 4, two = 2, ld = 4;
        double c = 0.0;
        for (const int none : {0, -3})
            for (const char* transb : {"N", "T"})
                for (auto [n, k] : {std::pair{&none, &two}, {&two, &none}}) {
                    blac_dgemm_scaled_("N", transb, &m, n, k, &One, nowhere, &ld, nowhere, no_integer, &One,
                                       &c, &ld, nowhere, no_integer);
                    blac_dgemm_scaled2_("N", transb, &m, n, k, &One, nowhere, &ld, nowhere, no_integer, &One,
                                        &c, &ld, nowhere);
                }
    });
    EXPECT_EQ(products().size(), 16u * support::tiers().size());
}

} // namespace
