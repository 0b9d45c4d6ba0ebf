// SPDX-License-Identifier: BSD-3-Clause
// The tasks of a factorisation as a file of Chrome trace events, which chrome://tracing and Perfetto show: an
// array of complete events ("X"), a row for each thread. `args` has the number of the task, where in the tree
// it is, and the numbers of those that waited for it.
#pragma once

#include "library.h"

#include <string>

// Throws OutputError.
void writeTrace(const std::string& path, const Tasks& tasks);
