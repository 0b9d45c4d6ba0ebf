// SPDX-License-Identifier: BSD-3-Clause
// Vectors of four, in two registers where the processor has none that wide. What is written with them is
// compiled for both kinds of processor; without fused operations the results are the same.
#pragma once

#define BLA_BODY [[gnu::always_inline]] inline

// Defines a function by its body, compiled for both kinds, and calls the one that is there. The narrow one
// can be called as well.
#define BLA_FOR_BOTH(function, body, parameters, arguments)                                                  \
    __attribute__((target("avx2"))) static void function##Wide parameters                                    \
    {                                                                                                        \
        body arguments;                                                                                      \
    }                                                                                                        \
    void function##Narrow parameters                                                                         \
    {                                                                                                        \
        body arguments;                                                                                      \
    }                                                                                                        \
    void function parameters                                                                                 \
    {                                                                                                        \
        (__builtin_cpu_supports("avx2") ? function##Wide : function##Narrow) arguments;                      \
    }

typedef double Four __attribute__((vector_size(32)));
typedef double FourAnywhere __attribute__((vector_size(32), aligned(8), may_alias));
constexpr int lanes = 4;

// From and to any address. A vector by value would change the calling convention with the processor.
BLA_BODY void load(Four& x, const double* p)
{
    x = *reinterpret_cast<const FourAnywhere*>(p);
}

BLA_BODY void load(double& x, const double* p)
{
    x = *p;
}

BLA_BODY void store(double* p, const Four& x)
{
    *reinterpret_cast<FourAnywhere*>(p) = x;
}

BLA_BODY void store(double* p, const double& x)
{
    *p = x;
}
