// SPDX-License-Identifier: BSD-3-Clause
// Limits of the machine, measured with registers only.
#include "bench.h"

namespace bench {
namespace {

typedef double vector4 __attribute__((vector_size(32)));

// Keeps a value in a register and the compiler from knowing it.
[[gnu::always_inline, gnu::target("avx2")]] inline void opaque(vector4& x)
{
    __asm__ volatile("" : "+x"(x));
}

} // namespace

namespace limit {

[[gnu::target("avx2")]] double multiply_subtract(int rounds)
{
    vector4 sum[12], x = {1e-9, 1e-9, 1e-9, 1e-9}, y = {1.0, 1.0, 1.0, 1.0};
    for (vector4& s : sum) {
        s = y;
        opaque(s);
    }
    for (int round = 0; round < rounds; ++round) {
        opaque(x);
#pragma GCC unroll 12
        for (vector4& s : sum) {
            s = s - x * y;
            opaque(s);
        }
    }
    double total = 0;
    for (const vector4& s : sum)
        total += s[0];
    return total;
}

[[gnu::target("avx2")]] double divide(int rounds)
{
    vector4 q[8], y = {1.0, 1.0, 1.0, 1.0};
    for (vector4& s : q) {
        s = y;
        opaque(s);
    }
    for (int round = 0; round < rounds; ++round) {
#pragma GCC unroll 8
        for (vector4& s : q) {
            s = s / y;
            opaque(s);
        }
    }
    double total = 0;
    for (const vector4& s : q)
        total += s[0];
    return total;
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
}

} // namespace bench
