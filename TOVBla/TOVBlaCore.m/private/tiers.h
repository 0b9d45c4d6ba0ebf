// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "processor.h"
#include "real.h"

// A tiered kernel is written once, as the body that follows one of these heads:
//
//     BLA_TIERS_VRA(blac_scale_, (const int* m, ..., real* b), (m, ..., b))
//     {
//         ...
//     }
//
// The head makes from it one hidden function per tier (blac_scale_V, blac_scale_R, blac_scale_A: the same
// text compiled for AVX2, AVX and the x86-64 baseline) and the exported entry point, which chooses among
// them at every call. Nothing that a body calls may be shared with other sources unless it is inlined too
// (BLA_BODY): a shared copy compiled for AVX2 would run on processors without it.
//
// A body that is blocked by hand may ask for Tier::Lanes, the number of doubles in a register of its tier,
// and leave to Tier::apart what would make tiny calls save registers for nothing.
//
// No variant may use fused multiply-add: the target attributes leave it out and -ffp-contract=off stands in
// the build, so that all tiers give the same bits.

// What the compiler may use for each tier, and the doubles that a register holds.
#define BLA_INSTRUCTIONS_V "avx2"
#define BLA_INSTRUCTIONS_R "avx"
#define BLA_INSTRUCTIONS_A "sse2"
#define BLA_LANES_V 4
#define BLA_LANES_R 4
#define BLA_LANES_A 2

#define BLA_TIER(tier)                                                                                       \
    namespace tier {                                                                                         \
    struct Tier                                                                                              \
    {                                                                                                        \
        static constexpr int Lanes = BLA_LANES_##tier;                                                       \
                                                                                                             \
        /* Calls f in a function of its own, compiled for this tier. f follows BLA_BODY or BLA_INLINED. */   \
        template <class Function, class... Arguments>                                                        \
        [[gnu::target(BLA_INSTRUCTIONS_##tier), gnu::noinline]] static void apart(Function f,                \
                                                                                  Arguments... arguments)    \
        {                                                                                                    \
            f(arguments...);                                                                                 \
        }                                                                                                    \
    };                                                                                                       \
    }

namespace {
BLA_TIER(V)
BLA_TIER(R)
BLA_TIER(A)
} // namespace

/// Kernels with all three tiers.
#define BLA_TIERS_VRA(name, params, args)                                                                    \
    template <class Tier>                                                                                    \
    BLA_BODY void name##body params;                                                                         \
    BLA_VARIANT(name, V, params, name##body<V::Tier> args)                                                   \
    BLA_VARIANT(name, R, params, name##body<R::Tier> args)                                                   \
    BLA_VARIANT(name, A, params, name##body<A::Tier> args)                                                   \
    BLA_DISPATCH_VRA(name, params, args)                                                                     \
    template <class Tier>                                                                                    \
    BLA_BODY void name##body params

/// Kernels with two tiers: a processor with AVX but without AVX2 runs the baseline.
#define BLA_TIERS_VA(name, params, args)                                                                     \
    template <class Tier>                                                                                    \
    BLA_BODY void name##body params;                                                                         \
    BLA_VARIANT(name, V, params, name##body<V::Tier> args)                                                   \
    BLA_VARIANT(name, A, params, name##body<A::Tier> args)                                                   \
    BLA_DISPATCH_VA(name, params, args)                                                                      \
    template <class Tier>                                                                                    \
    BLA_BODY void name##body params

#define BLA_VARIANT(name, tier, params, call)                                                                \
    extern "C" [[gnu::target(BLA_INSTRUCTIONS_##tier), gnu::visibility("hidden"),                            \
                 gnu::noinline]] void name##tier params                                                      \
    {                                                                                                        \
        call;                                                                                                \
    }

// One load of the feature word and at most three tests a call, then a jump. No register is saved, for nothing
// is inlined here: neither a variant nor the filling of an empty word, which happens once.
#define BLA_DISPATCH_VRA(name, params, args)                                                                 \
    BLA_DISPATCH(name, params, args, {                                                                       \
        if ((word & tier::V) == tier::V)                                                                     \
            return name##V args;                                                                             \
        if ((word & tier::R) == tier::R)                                                                     \
            return name##R args;                                                                             \
        if ((word & tier::A) == tier::A)                                                                     \
            return name##A args;                                                                             \
    })

#define BLA_DISPATCH_VA(name, params, args)                                                                  \
    BLA_DISPATCH(name, params, args, {                                                                       \
        if ((word & tier::V) == tier::V)                                                                     \
            return name##V args;                                                                             \
        if ((word & tier::A) == tier::A)                                                                     \
            return name##A args;                                                                             \
    })

#define BLA_DISPATCH(name, params, args, ...)                                                                \
    [[gnu::cold, gnu::noinline]] static void name##first params                                              \
    {                                                                                                        \
        for (;;) {                                                                                           \
            bla_fill_feature_word();                                                                         \
            const std::uint32_t word = bla_read_feature_word();                                              \
            __VA_ARGS__                                                                                      \
        }                                                                                                    \
    }                                                                                                        \
    extern "C" BLA_EXPORT void name params                                                                   \
    {                                                                                                        \
        const std::uint32_t word = bla_read_feature_word();                                                  \
        __VA_ARGS__                                                                                          \
        name##first args;                                                                                    \
    }
