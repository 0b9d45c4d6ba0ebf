// SPDX-License-Identifier: BSD-3-Clause
// Vectors of four, in two registers where the processor has none that wide, and of eight. What is written
// with them is compiled for each kind of processor; without fused operations the results are the same.
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

// The same for a template by the widest vector that the processor has in one register. The other two can be
// called as well.
#define BLA_FOR_ALL(function, body, parameters, arguments)                                                   \
    __attribute__((target("avx512f"))) static void function##Widest parameters                               \
    {                                                                                                        \
        body<Eight> arguments;                                                                               \
    }                                                                                                        \
    __attribute__((target("avx2"))) void function##Wide parameters                                           \
    {                                                                                                        \
        body<Four> arguments;                                                                                \
    }                                                                                                        \
    void function##Narrow parameters                                                                         \
    {                                                                                                        \
        body<Four> arguments;                                                                                \
    }                                                                                                        \
    void function parameters                                                                                 \
    {                                                                                                        \
        (__builtin_cpu_supports("avx512f") ? function##Widest                                                \
         : __builtin_cpu_supports("avx2")  ? function##Wide                                                  \
                                           : function##Narrow) arguments;                                     \
    }

typedef double Four __attribute__((vector_size(32)));
typedef double FourAnywhere __attribute__((vector_size(32), aligned(8), may_alias));
typedef double Eight __attribute__((vector_size(64)));
typedef double EightAnywhere __attribute__((vector_size(64), aligned(8), may_alias));
constexpr int lanes = 4;
template <class T>
constexpr int lanesOf = sizeof(T) / sizeof(double);

// From and to any address. A vector by value would change the calling convention with the processor.
BLA_BODY void load(Four& x, const double* p)
{
    x = *reinterpret_cast<const FourAnywhere*>(p);
}

BLA_BODY void load(Eight& x, const double* p)
{
    x = *reinterpret_cast<const EightAnywhere*>(p);
}

BLA_BODY void load(double& x, const double* p)
{
    x = *p;
}

BLA_BODY void store(double* p, const Four& x)
{
    *reinterpret_cast<FourAnywhere*>(p) = x;
}

BLA_BODY void store(double* p, const Eight& x)
{
    *reinterpret_cast<EightAnywhere*>(p) = x;
}

BLA_BODY void store(double* p, const double& x)
{
    *p = x;
}
