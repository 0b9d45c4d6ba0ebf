// SPDX-License-Identifier: BSD-3-Clause
// The judgement on an answer, from what is known of it.
#pragma once

#include <string>
#include <vector>

struct Evidence
{
    int n = 0, structuralRank = 0;
    double residual = 0.0;    // relative, maximum norms
    double error = 0.0;       // bound on the relative error; infinite where the matrix is not found regular
    int treated = 0;          // tiny pivots that were replaced or shifted
    double unreachable = 0.0; // the part of the right-hand side that no x produces
    int motions = 0;          // that are not held, and unknowns that would hold them
    std::vector<int> unknowns;
};

// The better the higher.
enum class Quality { unsolved, doubtful, trusted };

Quality judge(const Evidence& evidence);
std::string verdict(const Evidence& evidence);
