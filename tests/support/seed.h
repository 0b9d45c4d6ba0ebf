// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string_view>

namespace support {

/// The seed of a run: 1, so that every run is like the one before; BLA_TEST_SEED sets another one, and
/// "random" draws it.
inline std::uint64_t seed_of_run()
{
    const char* const text = std::getenv("BLA_TEST_SEED");
    if (!text || !*text)
        return 1;
    return std::string_view(text) == "random" ? std::random_device{}() : std::strtoull(text, nullptr, 0);
}

} // namespace support
