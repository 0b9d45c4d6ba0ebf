// SPDX-License-Identifier: BSD-3-Clause
// Random test data. The seed is printed when a test program starts; seed.h says what it is.
#pragma once

#include "guarded.h"

#include <cstdint>
#include <limits>
#include <random>

namespace support {

std::uint64_t seed();

/// A generator that depends on the seed of the run and on a number of the test's own.
inline std::mt19937_64 generator(std::uint64_t number = 0)
{
    return std::mt19937_64(seed() * 0x9e3779b97f4a7c15u + number);
}

/// Numbers of both signs over a few decades.
inline double ordinary(std::mt19937_64& random)
{
    const double x = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
    return std::ldexp(x, static_cast<int>(random() % 9) - 4);
}

/// Every fourth number or so is special: NaN, infinity, zero, denormal, at the border of overflow, a tiny
/// pivot.
inline double special(std::mt19937_64& random)
{
    using limits = std::numeric_limits<double>;
    static const double values[] = {
        limits::quiet_NaN(),
        -limits::quiet_NaN(),
        limits::infinity(),
        -limits::infinity(),
        0.0,
        -0.0,
        limits::denorm_min(),
        -limits::denorm_min(),
        limits::min(),
        limits::max(),
        -limits::max(),
        1e-36,
        -1e-36,
        1e36,
        1.0,
        -1.0,
    };
    return random() % 4 == 0 ? values[random() % (sizeof values / sizeof *values)] : ordinary(random);
}

/// Any bits; every other value is a NaN with a payload, quiet or signalling, of either sign.
inline double any_bits(std::mt19937_64& random)
{
    const std::uint64_t nan = random() % 2 ? 0x7ff0000000000001 : 0, value = random() | nan;
    double x;
    std::memcpy(&x, &value, 8);
    return x;
}

/// Values to compute with: ordinary, or special ones among them. Bits are for what is only moved.
enum class Data { Ordinary, Special, Bits };

inline double draw(std::mt19937_64& random, Data data)
{
    if (data == Data::Bits)
        return any_bits(random);
    return data == Data::Ordinary ? ordinary(random) : special(random);
}

inline void fill(const Guarded<double>& x, std::mt19937_64& random, Data data)
{
    for (std::int64_t i = 0; i < x.size(); ++i)
        x.set(i, draw(random, data));
}

/// Fills the rows × columns matrix in x; the rows from `rows` to the leading dimension keep the canary.
inline void fill_matrix(const Guarded<double>& x, std::int64_t rows, std::int64_t columns, std::int64_t ld,
                        std::mt19937_64& random, Data data)
{
    for (std::int64_t j = 0; j < columns; ++j)
        for (std::int64_t i = 0; i < rows; ++i)
            x.set(i + j * ld, draw(random, data));
}

/// Elements of a rows × columns matrix up to the last one that belongs to it, so that a guard can follow that
/// one.
inline std::int64_t extent(std::int64_t rows, std::int64_t columns, std::int64_t ld)
{
    return rows < 1 || columns < 1 ? 0 : (columns - 1) * ld + rows;
}

} // namespace support
