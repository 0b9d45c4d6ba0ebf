// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// Bits of the feature word. Bit 0 says that the word has been filled.
namespace feature {
enum : std::uint32_t {
    Filled = 1u << 0,
    FPU = 1u << 1,
    CMOV = 1u << 2,
    MMX = 1u << 3,
    FXSAVE = 1u << 4,
    SSE = 1u << 5,
    SSE2 = 1u << 6,
    SSE3 = 1u << 7,
    SSSE3 = 1u << 8,
    SSE41 = 1u << 9,
    SSE42 = 1u << 10,
    POPCNT = 1u << 12,
    F16C = 1u << 15,
    AVX = 1u << 16,
    FMA = 1u << 18,
    BMI = 1u << 19,
    LZCNT = 1u << 20,
    AVX2 = 1u << 23,
};
}

/// What a tier asks of the feature word: every bit of its mask.
namespace tier {
enum : std::uint32_t {
    A = feature::Filled,
    R = A | feature::FPU | feature::CMOV | feature::MMX | feature::FXSAVE | feature::SSE | feature::SSE2 |
        feature::SSE3 | feature::SSSE3 | feature::SSE41 | feature::SSE42 | feature::POPCNT | feature::AVX,
    V = R | feature::F16C | feature::FMA | feature::BMI | feature::LZCNT | feature::AVX2,
};
static_assert(R == 0x117ff && V == 0x9d97ff);
} // namespace tier

/// What the processor identification instruction and the operating system say.
struct ProcessorRegisters
{
    std::uint32_t leaf1_ecx, leaf1_edx; ///< leaf 1
    std::uint32_t leaf7_ebx;            ///< leaf 7, subleaf 0; 0 where the leaf does not exist
    std::uint32_t extended1_ecx;        ///< leaf 0x80000001; 0 where the leaf does not exist
    std::uint32_t xcr0;                 ///< register sets saved by the operating system; 0 without XGETBV
};

/// The feature word that these registers amount to.
std::uint32_t bla_feature_word_of(const ProcessorRegisters& registers);

/// What one subleaf of leaf 4, or of leaf 0x8000001D, says about a cache.
struct CacheRegisters
{
    std::uint32_t eax, ebx, ecx;
};

/// Bytes of the cache that these registers describe; 0 if they describe none.
std::int64_t bla_cache_bytes_of(const CacheRegisters& registers);

/// Bytes of this processor's largest cache, asked anew at every call, some microseconds; 32 MiB where it does
/// not tell.
std::int64_t bla_last_cache();

extern "C" {
/// The feature word of this process: 0 until the first call of a tiered kernel, settled from then on.
extern std::uint32_t bla_feature_word;

/// Fills the feature word. Safe to call more than once and from several threads: all store the same value.
void bla_fill_feature_word();
}

static inline std::uint32_t bla_read_feature_word()
{
    return __atomic_load_n(&bla_feature_word, __ATOMIC_RELAXED);
}
