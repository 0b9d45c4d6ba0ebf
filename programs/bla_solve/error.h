// SPDX-License-Identifier: BSD-3-Clause
// What the user got wrong: printed as one line on stderr, exit status 2.
#pragma once

#include <stdexcept>

struct InputError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};
