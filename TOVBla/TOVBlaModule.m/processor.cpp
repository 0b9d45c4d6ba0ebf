// SPDX-License-Identifier: BSD-3-Clause
#include "processor.h"

#include <cpuid.h>

std::uint32_t bla_feature_word = 0;

std::uint32_t bla_feature_word_of(const ProcessorRegisters& r)
{
    struct Bit
    {
        std::uint32_t registers;
        int bit;
        std::uint32_t feature;
    };
    const Bit bits[] = {
        {r.leaf1_edx, 0, feature::FPU},       {r.leaf1_edx, 15, feature::CMOV},
        {r.leaf1_edx, 23, feature::MMX},      {r.leaf1_edx, 24, feature::FXSAVE},
        {r.leaf1_edx, 25, feature::SSE},      {r.leaf1_edx, 26, feature::SSE2},
        {r.leaf1_ecx, 0, feature::SSE3},      {r.leaf1_ecx, 9, feature::SSSE3},
        {r.leaf1_ecx, 19, feature::SSE41},    {r.leaf1_ecx, 20, feature::SSE42},
        {r.leaf1_ecx, 23, feature::POPCNT},   {r.leaf1_ecx, 29, feature::F16C},
        {r.leaf1_ecx, 28, feature::AVX},      {r.leaf1_ecx, 12, feature::FMA},
        {r.leaf7_ebx, 3, feature::BMI},       {r.leaf7_ebx, 5, feature::AVX2},
        {r.extended1_ecx, 5, feature::LZCNT},
    };
    std::uint32_t word = feature::Filled;
    for (const Bit& b : bits)
        if (b.registers >> b.bit & 1)
            word |= b.feature;

    // Wide registers count only if the operating system saves both their halves (XMM bit 1, YMM bit 2).
    constexpr std::uint32_t wide = feature::F16C | feature::AVX | feature::FMA | feature::AVX2;
    if ((r.xcr0 & 6) != 6)
        word &= ~wide;
    return word;
}

static ProcessorRegisters read_processor()
{
    ProcessorRegisters r{};
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx)) {
        r.leaf1_ecx = ecx;
        r.leaf1_edx = edx;
    }
    if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx))
        r.leaf7_ebx = ebx;
    if (__get_cpuid(0x80000001, &eax, &ebx, &ecx, &edx))
        r.extended1_ecx = ecx;
    if (r.leaf1_ecx >> 27 & 1) { // OSXSAVE: XGETBV may be executed
        unsigned low = 0, high = 0;
        __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
        r.xcr0 = low;
    }
    return r;
}

void bla_fill_feature_word()
{
    __atomic_store_n(&bla_feature_word, bla_feature_word_of(read_processor()), __ATOMIC_RELAXED);
}

std::int64_t bla_cache_bytes_of(const CacheRegisters& r)
{
    if ((r.eax & 31) == 0)
        return 0;
    const std::int64_t line = (r.ebx & 0xfff) + 1, partitions = (r.ebx >> 12 & 0x3ff) + 1,
                       ways = (r.ebx >> 22) + 1, sets = std::int64_t{r.ecx} + 1;
    return line * partitions * ways * sets;
}

std::int64_t bla_last_cache()
{
    constexpr unsigned Leaves[] = {4, 0x8000001D}, MostCaches = 8;
    std::int64_t largest = 0;
    for (const unsigned leaf : Leaves)
        for (unsigned subleaf = 0; subleaf < MostCaches; ++subleaf) {
            unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
            if (!__get_cpuid_count(leaf, subleaf, &eax, &ebx, &ecx, &edx))
                break;
            const std::int64_t bytes = bla_cache_bytes_of({eax, ebx, ecx});
            if (bytes == 0)
                break;
            largest = bytes > largest ? bytes : largest;
        }
    constexpr std::int64_t Unknown = std::int64_t{32} << 20;
    return largest > 0 ? largest : Unknown;
}
