// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// What one library was asked, and what it answers.
struct ThreadControl
{
    int sets = 0, gets = 0;
    std::int64_t count = -99;
    std::int64_t answer = 0;
};

struct ThreadCalls
{
    ThreadControl mkl, openblas, blis;
};

extern ThreadCalls thread_calls;
