// SPDX-License-Identifier: BSD-3-Clause
// What ends in one line on stderr.
#pragma once

#include <stdexcept>

// What the user got wrong: exit status 2, and nothing was done.
struct InputError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// What could not be written: exit status 1.
struct OutputError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};
