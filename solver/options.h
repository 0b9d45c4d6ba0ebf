// SPDX-License-Identifier: BSD-3-Clause
// The options of a handle, by name.
#pragma once

#include <string_view>

struct Options
{
    double threads = 0.0, tolerance = 1e-14, shift = 0.0, refinements = 10.0;
    double panelWidth = 0.0, ordering = 0.0, memoryLimit = 0.0, record = 0.0;

    // Throws Failure for an unknown name, with those there are, and for a value that makes no sense.
    void set(std::string_view name, double value);
    // Null where there is no such option.
    const double* find(std::string_view name) const;
};
