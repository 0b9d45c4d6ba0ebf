// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"

#include <algorithm>
#include <fstream>
#include <string>

#include "../../TOVBla/TOVBlaCore.m/private/tiers.h"

namespace {

char ran; // the variant that ran last

}

// Two entry points made by the library's own heads over variants that only say who they are.
extern "C" {
void three_tiersV(int)
{
    ran = 'V';
}
void three_tiersR(int)
{
    ran = 'R';
}
void three_tiersA(int)
{
    ran = 'A';
}
void two_tiersV(int)
{
    ran = 'V';
}
void two_tiersA(int)
{
    ran = 'A';
}
}
BLA_DISPATCH_VRA(three_tiers, (int x), (x))
BLA_DISPATCH_VA(two_tiers, (int x), (x))

namespace {

constexpr std::uint32_t MaskV = 0x9d97ff, MaskR = 0x117ff;

/// Runs on a machine of the given feature word.
struct Dispatch : ::testing::Test
{
    ~Dispatch() override { bla_feature_word = before; }

    char three(std::uint32_t word)
    {
        bla_feature_word = word;
        three_tiers(0);
        return ran;
    }
    char two(std::uint32_t word)
    {
        bla_feature_word = word;
        two_tiers(0);
        return ran;
    }

    std::uint32_t before = bla_feature_word;
};

TEST_F(Dispatch, TheWidestTierWhoseBitsAreAllSetRuns)
{
    EXPECT_EQ(three(MaskV), 'V');
    EXPECT_EQ(two(MaskV), 'V');
    EXPECT_EQ(three(0xffffffff), 'V');
    EXPECT_EQ(three(MaskR), 'R');
    EXPECT_EQ(two(MaskR), 'A') << "two-tier kernels have no R";
    EXPECT_EQ(three(1), 'A');
    EXPECT_EQ(two(1), 'A');
}

TEST_F(Dispatch, EveryBitOfAMaskIsAskedFor)
{
    for (int bit = 1; bit < 32; ++bit) {
        const std::uint32_t missing = ~(1u << bit);
        if (MaskV >> bit & 1) {
            EXPECT_NE(three(missing), 'V') << "without bit " << bit;
            EXPECT_EQ(two(missing), 'A') << "without bit " << bit;
        } else {
            EXPECT_EQ(three(missing), 'V') << "bit " << bit << " is nobody's";
        }
        EXPECT_EQ(three(MaskR & missing), MaskR >> bit & 1 ? 'A' : 'R') << "without bit " << bit;
    }
}

TEST_F(Dispatch, Avx2WithoutFmaOrF16cRunsTierROfThreeAndTierAOfTwo)
{
    for (std::uint32_t missing : {feature::FMA, feature::F16C}) {
        EXPECT_EQ(three(MaskV & ~missing), 'R');
        EXPECT_EQ(two(MaskV & ~missing), 'A');
    }
}

TEST_F(Dispatch, AnEmptyWordIsFilledFirst)
{
    bla_fill_feature_word();
    const std::uint32_t settled = bla_feature_word;
    ASSERT_EQ(settled & 1, 1u);
    const char expected = three(settled);
    EXPECT_EQ(three(0), expected);
    EXPECT_EQ(bla_feature_word, settled);
    EXPECT_EQ(two(0), two(settled));
}

TEST_F(Dispatch, ACallBeforeTheWordIsFilledGivesTheSameResult)
{
    const int n = 3, ld = 3;
    const double d[] = {2.0, 0.1, -1.0}, a[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    double early[9], late[9];
    bla_feature_word = 0;
    blac_scale_(&n, &n, d, a, &ld, early, &ld);
    EXPECT_NE(bla_feature_word, 0u);
    blac_scale_(&n, &n, d, a, &ld, late, &ld);
    EXPECT_EQ(std::memcmp(early, late, sizeof late), 0);
}

// A processor with everything, under a system that saves the wide registers.
constexpr ProcessorRegisters Everything{0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff, 7};

TEST(FeatureWord, HasEveryBitOfTheMasksAndNoOther)
{
    EXPECT_EQ(bla_feature_word_of(Everything), MaskV);
}

TEST(FeatureWord, IsFilledEvenForAProcessorWithNothing)
{
    EXPECT_EQ(bla_feature_word_of({}), 1u);
}

TEST(FeatureWord, AnAvxProcessorUnderASystemThatDoesNotSaveTheWideRegistersIsTierA)
{
    for (std::uint32_t saved : {0u, 1u, 2u, 3u, 4u, 5u}) {
        ProcessorRegisters r = Everything;
        r.xcr0 = saved;
        const std::uint32_t word = bla_feature_word_of(r);
        EXPECT_NE(word & MaskV, MaskV) << saved;
        EXPECT_NE(word & MaskR, MaskR) << saved;
        EXPECT_EQ(word & (feature::AVX | feature::AVX2 | feature::FMA | feature::F16C), 0u) << saved;
        EXPECT_NE(word & feature::SSE42, 0u) << "narrow features stay";
    }
}

TEST(FeatureWord, EachFeatureComesFromItsOwnRegisterBit)
{
    const struct
    {
        std::uint32_t ProcessorRegisters::*from;
        int bit;
        int word_bit;
    } table[] = {
        {&ProcessorRegisters::leaf1_edx, 0, 1},   {&ProcessorRegisters::leaf1_edx, 15, 2},
        {&ProcessorRegisters::leaf1_edx, 23, 3},  {&ProcessorRegisters::leaf1_edx, 24, 4},
        {&ProcessorRegisters::leaf1_edx, 25, 5},  {&ProcessorRegisters::leaf1_edx, 26, 6},
        {&ProcessorRegisters::leaf1_ecx, 0, 7},   {&ProcessorRegisters::leaf1_ecx, 9, 8},
        {&ProcessorRegisters::leaf1_ecx, 19, 9},  {&ProcessorRegisters::leaf1_ecx, 20, 10},
        {&ProcessorRegisters::leaf1_ecx, 23, 12}, {&ProcessorRegisters::leaf1_ecx, 29, 15},
        {&ProcessorRegisters::leaf1_ecx, 28, 16}, {&ProcessorRegisters::leaf1_ecx, 12, 18},
        {&ProcessorRegisters::leaf7_ebx, 3, 19},  {&ProcessorRegisters::extended1_ecx, 5, 20},
        {&ProcessorRegisters::leaf7_ebx, 5, 23},
    };
    for (const auto& row : table) {
        ProcessorRegisters only{};
        only.xcr0 = 6;
        only.*row.from = 1u << row.bit;
        EXPECT_EQ(bla_feature_word_of(only), 1u | 1u << row.word_bit) << "word bit " << row.word_bit;
    }
}

TEST(FeatureWord, AgreesWithTheCompilersRuntimeOnThisProcessor)
{
    bla_fill_feature_word();
    const auto has = [](std::uint32_t f) { return (bla_feature_word & f) != 0; };
    EXPECT_EQ(has(feature::AVX), __builtin_cpu_supports("avx") != 0);
    EXPECT_EQ(has(feature::AVX2), __builtin_cpu_supports("avx2") != 0);
    EXPECT_EQ(has(feature::FMA), __builtin_cpu_supports("fma") != 0);
    EXPECT_EQ(has(feature::BMI), __builtin_cpu_supports("bmi") != 0);
    EXPECT_EQ(has(feature::POPCNT), __builtin_cpu_supports("popcnt") != 0);
    EXPECT_EQ(has(feature::SSE42), __builtin_cpu_supports("sse4.2") != 0);
}

TEST(Caches, AreAsLargeAsTheirLinesPartitionsWaysAndSets)
{
    // 48 KiB of 64-byte lines, 12 ways, 64 sets; 32 MiB, 16 ways; 5 ways in 3 partitions.
    EXPECT_EQ(bla_cache_bytes_of({0x121, 11u << 22 | 63, 63}), 48 << 10);
    EXPECT_EQ(bla_cache_bytes_of({0x163, 15u << 22 | 63, 32767}), 32 << 20);
    EXPECT_EQ(bla_cache_bytes_of({0x163, 4u << 22 | 2u << 12 | 63, 6}), 64 * 5 * 3 * 7);
    EXPECT_EQ(bla_cache_bytes_of({0x163, 15u << 22 | 63, 0xffffffff}), std::int64_t{1} << 42) << "64 bits";
    EXPECT_EQ(bla_cache_bytes_of({0, 15u << 22 | 63, 32767}), 0) << "type 0: no more caches";
}

// Bytes of the largest cache of the first processor, as the kernel lists it; 0 where it lists none.
std::int64_t largest_cache_listed()
{
    std::int64_t largest = 0;
    for (int index = 0; index < 8; ++index) {
        std::ifstream size("/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/size");
        std::int64_t number = 0;
        char unit = 0;
        if (size >> number >> unit && unit == 'K')
            largest = std::max(largest, number << 10);
    }
    return largest;
}

// sysconf is no witness: the C library of Debian 12 adds up the last caches of a whole AMD package.
TEST(Caches, TheLastOneIsTheLargestThatTheSystemSees)
{
    const std::int64_t seen = largest_cache_listed();
    if (seen <= 0)
        GTEST_SKIP() << "the system does not tell";
    EXPECT_EQ(bla_last_cache(), seen);
}

} // namespace
