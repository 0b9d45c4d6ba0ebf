// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace digest {

namespace {

constexpr std::uint64_t Pattern = 0x7ff4deadbeefcafe; // a signalling NaN: reading it shows in the result too
constexpr int Margin = 64;                            // pattern on either side of an array, in bytes

std::uint64_t next(std::uint64_t& state)
{
    std::uint64_t z = state += 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
}

bool is_nan(std::uint64_t bits)
{
    return (bits & 0x7fffffffffffffff) > 0x7ff0000000000000;
}

void mix(std::uint64_t& hash, std::uint64_t word)
{
    hash = (std::rotl(hash, 23) ^ word) * 0x9fb21c651e98df25;
    hash ^= hash >> 32;
}

} // namespace

Case::Case(std::uint64_t kernel, int number, int variation)
    : state_(kernel + static_cast<std::uint64_t>(number) * 0xd1342543de82ef95),
      moves_(static_cast<std::uint64_t>(variation)), number_(number), control_(0), special_(number % 2),
      moved_(variation != 0)
{
    if (number % 4 >= 2) // half of the cases run as the caller finds the processor, half in another mode
        control_ = below(8);
}

std::uint64_t Case::bits()
{
    return next(state_);
}

int Case::below(int n)
{
    return static_cast<int>((bits() >> 32) % static_cast<std::uint64_t>(n));
}

int Case::size()
{
    const int turn = number_ / 4 % 32;
    return turn < 26 ? turn : 26 + below(75);
}

double Case::number()
{
    static const std::uint64_t specials[] = {
        0x7ff8000000000000, 0xfff8000000000123,
        0x7ff0000000000000, 0xfff0000000000000, // NaN, infinity
        0x0000000000000000, 0x8000000000000000,
        0x0000000000000001, 0x8000000000000001, // zero, denormal
        0x0008000000000000, 0x0010000000000000,
        0x7fefffffffffffff, 0xfff4000000000123, // tiniest, largest, signalling NaN
        0x38754484932d2e72, 0xb8754484932d2e72,
        0x476812f9cf7920e3, 0x3ff0000000000000, // ±1e-36, 1e36, 1
    };
    const std::uint64_t r = bits();
    if (special_ && r % 8 == 0)
        return std::bit_cast<double>(specials[(r >> 3) % 16]);
    const std::uint64_t exponent = 1023 - 4 + ((r >> 3) & 7);
    return std::bit_cast<double>((r & 0x8000000000000000) | exponent << 52 | (bits() >> 12));
}

char* Case::array(std::int64_t bytes)
{
    static const std::size_t moves[] = {0, 8, 16, 24, 32, 40, 48, 56, 3, 12};
    Array& a = arrays_.emplace_back();
    a.size = bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
    a.memory.resize(a.size + 4 * Margin);
    const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(a.memory.data()) % 64;
    a.begin = 2 * Margin - misaligned + (moved_ ? moves[next(moves_) % 10] : 0);
    char* const begin = a.memory.data() + a.begin;
    for (std::size_t i = 0; i < Margin; i += 8) { // seen from the array, wherever it lies
        std::memcpy(begin - Margin + i, &Pattern, 8);
        std::memcpy(begin + a.size + i, &Pattern, 8);
    }
    for (std::size_t i = 0; i + 8 <= a.size; i += 8)
        std::memcpy(begin + i, &Pattern, 8);
    return begin;
}

void Case::set(double* x, std::int64_t i, double value)
{
    std::memcpy(reinterpret_cast<char*>(x) + i * 8, &value, 8);
}

double* Case::room(std::int64_t n)
{
    return reinterpret_cast<double*>(array(n * 8));
}

double* Case::vector(std::int64_t n)
{
    return matrix(n, 1, n);
}

double* Case::matrix_room(std::int64_t m, std::int64_t n, std::int64_t ld)
{
    return room(m > 0 && n > 0 ? (n - 1) * ld + m : 0);
}

double* Case::matrix(std::int64_t m, std::int64_t n, std::int64_t ld)
{
    double* const a = matrix_room(m, n, ld);
    for (std::int64_t j = 0; j < n; ++j)
        for (std::int64_t i = 0; i < m; ++i)
            set(a, i + j * ld, number());
    return a;
}

double* Case::ordinary(std::int64_t n)
{
    const bool special = special_;
    special_ = false;
    double* const x = vector(n);
    special_ = special;
    return x;
}

// Special values anywhere would soon make everything NaN, so they are put on the diagonal of some fronts
// only.
double* Case::front(std::int64_t n, std::int64_t ld)
{
    const bool special = special_;
    special_ = false;
    double* const a = matrix(n, n, ld);
    for (std::int64_t i = 0; i < n; ++i)
        set(a, i + i * ld, 32 * number());
    special_ = special;
    if (special && n > 0) {
        static const std::uint64_t pivots[] = {
            0x0000000000000000, 0x8000000000000000, 0x38754484932d2e72,
            0x3f50624dd2f1a9fc, 0xbf50624dd2f1a9fc, 0x3fb999999999999a,
            0x7ff8000000000000, 0x7ff0000000000000}; // 0, 1e-36, ±1e-3, 0.1
        for (int k = below(4); k >= 0; --k) {
            const std::int64_t i = below(static_cast<int>(n));
            set(a, i + i * ld, std::bit_cast<double>(pivots[below(odds(4) ? 8 : 6)]));
        }
    }
    return a;
}

// Short entries below the diagonal: the inverse stays bounded.
double* Case::factor(std::int64_t n, std::int64_t ld)
{
    double* const a = matrix(n, n, ld);
    for (std::int64_t j = 0; j < n; ++j) {
        set(a, j + j * ld, std::bit_cast<double>(0x3ff0000000000000 | bits() >> 12));
        for (std::int64_t i = j + 1; i < n; ++i)
            set(a, i + j * ld, number() / 64);
    }
    return a;
}

int* Case::integers(const std::vector<int>& list)
{
    const std::size_t bytes = list.size() * sizeof(int);
    char* const a = array(static_cast<std::int64_t>(bytes));
    if (bytes)
        std::memcpy(a, list.data(), bytes);
    arrays_.back().of_doubles = false;
    return reinterpret_cast<int*>(a);
}

std::uint64_t Case::hash(Results results) const
{
    std::uint64_t hash = 0x243f6a8885a308d3;
    const auto add = [&](std::uint64_t word, bool computed) {
        mix(hash, computed && is_nan(word) && word != Pattern ? 0x7ff8000000000000 : word);
    };
    for (const Array& a : arrays_) {
        const char* const begin = a.memory.data() + a.begin - Margin;
        const std::size_t size = a.size + 2 * Margin;
        for (std::size_t i = 0; i < size; i += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, begin + i, std::min<std::size_t>(8, size - i));
            add(word, a.of_doubles && results == Computed);
        }
    }
    for (double x : scalars_)
        add(std::bit_cast<std::uint64_t>(x), results == Computed);
    return hash;
}

} // namespace digest
