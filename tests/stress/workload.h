// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

namespace stress {

/// How the workload reaches the routines: linked, or looked up in a library that was just opened.
using Lookup = void* (*)(const char* name);
void* linked(const char* name);

/// Calls one routine of every kind and all own ones that call the BLAS, on arrays of its own drawn from the
/// seed. Returns a hash of all results: the same for the same seed, whoever else is at work.
std::uint64_t workload(std::uint64_t seed, Lookup lookup = linked);

/// Makes one call of a tiered kernel, the shortest way to fill the feature word.
std::uint64_t first_call(Lookup lookup);

} // namespace stress
