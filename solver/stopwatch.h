// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>

class Stopwatch
{
public:
    // seconds since the last call, or since the start
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - last_).count();
        last_ = now;
        return seconds;
    }

    // the same, and goes on
    double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - last_).count();
    }

private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};
