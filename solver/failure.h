// SPDX-License-Identifier: BSD-3-Clause
// How a call fails inside the solver: with the status that it returns and a sentence for bla_solver_message.
#pragma once

#include "TOVBlaSolver.h"

#include <stdexcept>
#include <string>

struct Failure : std::runtime_error
{
    Failure(int code, const std::string& sentence) : std::runtime_error(sentence), status(code) {}
    int status;
};
