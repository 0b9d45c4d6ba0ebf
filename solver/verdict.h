// SPDX-License-Identifier: BSD-3-Clause
// The judgement on an answer, from what is known of it.
#pragma once

#include "unheld.h"

#include <string>

struct Evidence
{
    int n = 0, structuralRank = 0;
    double residual = 0.0; // relative, maximum norms
    double error = 0.0;    // bound on the relative error; infinite where the matrix is not found regular
    int treated = 0;       // tiny pivots that were replaced or shifted
    UnheldMotions unheld;
};

// The better the higher.
enum class Quality { unsolved, doubtful, trusted };

// Whether an answer is better than another to the same system.
bool better(const Evidence& one, const Evidence& other);

Quality judge(const Evidence& evidence);
std::string verdict(const Evidence& evidence);
