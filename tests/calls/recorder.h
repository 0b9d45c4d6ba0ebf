// SPDX-License-Identifier: BSD-3-Clause
// A BLAS that computes nothing and writes down how it was called: for the routines that the kernels call
// directly. Programs that link it instead of a BLAS see the calls of the library in their order.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace recorder {

struct Call
{
    std::string name;                  // of the routine
    std::string options;               // its option characters
    std::vector<int> sizes;            // integers, in the order of the arguments
    std::vector<double> scalars;       // alpha and beta
    std::vector<const double*> arrays; // in the order of the arguments
    std::vector<std::size_t> lengths;  // hidden ones

    bool operator==(const Call&) const = default;
};

/// All calls since the last clear.
extern std::vector<Call> calls;

/// Called at the end of every recorded routine, while its arrays are alive.
extern std::function<void(const Call&)> at_call;

/// Forgets all calls and the hook.
void clear();

} // namespace recorder
