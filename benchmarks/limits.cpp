// SPDX-License-Identifier: BSD-3-Clause
// Limits of the machine, measured with registers only.
#include "bench.h"

namespace bench {
namespace {

typedef double vector4 __attribute__((vector_size(32)));

// Keeps a value in a register and the compiler from knowing it: nothing is folded or taken out of the loop.
[[gnu::always_inline, gnu::target("avx2")]] inline void opaque(vector4& x)
{
    __asm__ volatile("" : "+x"(x));
}

// The vectors of a round, one member each: an array would be left in memory.
template <int Count>
struct Vectors
{
    vector4 value;
    Vectors<Count - 1> others;

    [[gnu::always_inline, gnu::target("avx2")]] void fill(vector4 x)
    {
        value = x;
        opaque(value);
        others.fill(x);
    }
    [[gnu::always_inline, gnu::target("avx2")]] void multiply_subtract(vector4 x, vector4& y)
    {
        opaque(y);
        value = value - x * y;
        opaque(value);
        others.multiply_subtract(x, y);
    }
    [[gnu::always_inline, gnu::target("avx2")]] void divide(vector4& x)
    {
        opaque(x);
        value = x / value;
        opaque(value);
        others.divide(x);
    }
    double total() const { return value[0] + others.total(); }
};

template <>
struct Vectors<0>
{
    void fill(vector4) {}
    void multiply_subtract(vector4, vector4&) {}
    void divide(vector4&) {}
    double total() const { return 0; }
};

} // namespace

namespace limit {

[[gnu::target("avx2")]] double multiply_subtract(int rounds)
{
    vector4 x = {1e-9, 1e-9, 1e-9, 1e-9}, y = {1.0, 1.0, 1.0, 1.0};
    Vectors<12> sums;
    sums.fill(y);
    for (int round = 0; round < rounds; ++round)
        sums.multiply_subtract(x, y);
    return sums.total();
}

[[gnu::target("avx2")]] double divide(int rounds)
{
    vector4 x = {1.5, 1.5, 1.5, 1.5};
    Vectors<8> quotients;
    quotients.fill(x);
    for (int round = 0; round < rounds; ++round)
        quotients.divide(x);
    return quotients.total();
}

void wait_for_products(int rounds)
{
    std::uint64_t x = 3;
    for (int round = 0; round < rounds; ++round)
        __asm__ volatile(".rept 100\n\timulq %0, %0\n\t.endr" : "+r"(x));
}

} // namespace limit

void add_limits()
{
    add("limits/registers/multiply_subtract", 1000 * limit::FlopsPerRound, [] {
        return Job{[] {}, [] { limit::multiply_subtract(1000); }};
    });
    add("limits/registers/divide", 1000 * limit::DivisionsPerRound, [] {
        return Job{[] {}, [] { limit::divide(1000); }};
    });
    add("limits/registers/cycles", 1000 * limit::CyclesPerRound, [] {
        return Job{[] {}, [] { limit::wait_for_products(1000); }};
    });
}

} // namespace bench
