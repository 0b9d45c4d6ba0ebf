// SPDX-License-Identifier: BSD-3-Clause
#include "verdict.h"

#include <algorithm>
#include <cmath>

namespace {

// A residual above this is not one that rounding explains.
constexpr double solvedResidual = 1e-12;
// The part of a right-hand side that a singular matrix cannot produce; less is that of rounded data.
constexpr double outOfReach = 1e-8;

double digits(const Evidence& e)
{
    return -std::log10(std::max(e.error, 1e-16));
}

// "6 unheld motions, e.g. unknowns 12, 13, 47", counted from 1
std::string described(const Evidence& e)
{
    constexpr std::size_t shown = 6;
    std::string text = std::to_string(e.motions) + (e.motions == 1 ? " unheld motion" : " unheld motions");
    text += e.unknowns.size() > shown ? ", e.g. unknowns" : e.motions == 1 ? ", unknown" : ", unknowns";
    for (std::size_t k = 0; k < std::min(e.unknowns.size(), shown); ++k)
        text += (k == 0 ? " " : ", ") + std::to_string(e.unknowns[k] + 1);
    return text;
}

std::string unsolvedVerdict(const Evidence& e)
{
    if (e.structuralRank < e.n)
        return "the matrix is structurally singular (rank at most " + std::to_string(e.structuralRank) +
               " of " + std::to_string(e.n) + ")";
    if (e.motions > 0)
        return "the matrix is singular to working precision (" + described(e) +
               (e.unreachable > outOfReach ? "), and the right-hand side is out of its reach;" : ");") +
               " a structure is not supported";
    if (e.treated > 0)
        return std::to_string(e.treated) +
               " tiny pivots, and refinement does not repair what was done to them; "
               "the matrix is singular, or needs pivoting";
    return "elimination without row exchanges is not stable for this matrix";
}

std::string doubtfulVerdict(const Evidence& e)
{
    if (e.motions > 0)
        return "the matrix is singular to working precision (" + described(e) +
               "): this is one of many answers; a structure is not supported";
    if (e.treated > 0)
        return "the matrix is singular to working precision, or needs pivoting (" +
               std::to_string(e.treated) + " tiny pivots); this is one of many answers";
    return "so ill-conditioned that no digit is certain";
}

} // namespace

Quality judge(const Evidence& e)
{
    if (!std::isfinite(e.residual) || e.unreachable > outOfReach)
        return Quality::unsolved;
    if (digits(e) >= 1.0) // the bound knows of the residual, too
        return Quality::trusted;
    return e.residual <= solvedResidual ? Quality::doubtful : Quality::unsolved;
}

std::string verdict(const Evidence& e)
{
    switch (judge(e)) {
    case Quality::unsolved:
        return "NOT SOLVED: " + unsolvedVerdict(e);
    case Quality::doubtful:
        return "NOT TO BE TRUSTED: " + doubtfulVerdict(e);
    case Quality::trusted:
        break;
    }
    if (digits(e) < 6.0)
        return "solved; ill-conditioned: about " + std::to_string(static_cast<int>(std::lround(digits(e)))) +
               " digits can be expected";
    return "solved";
}
