// SPDX-License-Identifier: BSD-3-Clause
// Runs a test on every processor tier of this machine.
//
// The tests are linked twice. With the library's objects, its feature word is in reach, and each tier is
// forced by storing the tier's mask there. With the shared library, which has no switch for that, the tests
// run once, on the tier that the library chooses by itself.
#pragma once

#include "processor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

extern "C" [[gnu::weak]] std::uint32_t bla_feature_word;

namespace support {

struct Tier
{
    const char* name;
    std::uint32_t mask;
};

/// True in the programs that can choose the tier.
inline bool can_force_tiers()
{
    return &bla_feature_word != nullptr;
}

/// The tiers that this processor has, or the one that is chosen for us.
const std::vector<Tier>& tiers();

/// Calls body once per tier, with that tier forced and named in every failure.
template <class Body>
void on_every_tier(Body body)
{
    for (const Tier& tier : tiers()) {
        SCOPED_TRACE(std::string("tier ") + tier.name);
        const std::uint32_t before = can_force_tiers() ? bla_feature_word : 0;
        if (can_force_tiers())
            bla_feature_word = tier.mask;
        body();
        if (can_force_tiers())
            bla_feature_word = before;
        if (::testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace support
