// SPDX-License-Identifier: BSD-3-Clause
// What the scaled products hand to dgemm_, and where they take their scratch from.
#include "TOVBlaModule.h"
#include "recorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>

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
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(w) % 16, 0u);
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
}

TEST_F(Products, WithoutMemoryOnTheHeapTheStackServes)
{
    const int m = 8, n = 400, k = 200, ld = 400;
    std::vector<double> a(8 * 400), b(400 * 200, 3.0), c(8 * 400 * 50), d(200, 2.0);
    bool seen = false;
    recorder::at_call = [&](const Call& call) {
        if (call.name == "dgemm")
            seen = call.arrays[1][0] == 6.0 && call.arrays[1][n * k - 1] == 6.0;
    };
    allocations = releases = 0;
    out_of_memory = true;
    blac_dgemm_scaled2_("N", "T", &m, &n, &k, &One, a.data(), &ld, b.data(), &ld, &One, c.data(), &ld,
                        d.data());
    out_of_memory = false;
    EXPECT_TRUE(seen);
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(releases, 0);
}

} // namespace
