// SPDX-License-Identifier: BSD-3-Clause
// The memory of this process under the hand of a test: allocations are counted, and fail when they are told
// to, but for those of the BLAS. Under a sanitizer, which has its own malloc, `watched` is false and nothing
// else works.
#pragma once

#include <cstdint>

namespace allocations {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool watched = false;
#else
constexpr bool watched = true;
#endif

enum class Failing { once, fromThereOn };

// The k-th allocation from now fails, 0 being the next one; with `fromThereOn` so do all that follow.
void fail(long k, Failing failing);
// All succeed again. Whether one failed since.
bool stopFailing();

long live();          // that were not freed yet
std::int64_t bytes(); // in them
std::int64_t peak();  // the most bytes since the last forgetPeak()
void forgetPeak();

} // namespace allocations
