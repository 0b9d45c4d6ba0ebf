// SPDX-License-Identifier: BSD-3-Clause
#include "tiers.h"
#include "processor.h"
#include "random.h"
#include "seed.h"

namespace support {

std::uint64_t seed()
{
    static const std::uint64_t value = seed_of_run();
    return value;
}

const std::vector<Tier>& tiers()
{
    static const std::vector<Tier> available = [] {
        std::vector<Tier> list;
        if (!can_force_tiers())
            return std::vector<Tier>{{"chosen by the library", 0}};
        if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
            list.push_back({"V", tier::V});
        if (__builtin_cpu_supports("avx"))
            list.push_back({"R", tier::R});
        list.push_back({"A", tier::A});
        return list;
    }();
    return available;
}

} // namespace support
