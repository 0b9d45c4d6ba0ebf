// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "beam.h"

#include <string>
#include <vector>

enum class Method { automatic, symmetric, unsymmetric };

struct Options
{
    std::string matrix; // empty: the beam
    BeamMesh beam;
    Method method = Method::automatic;
    double tolerance = 1e-14;
    int nb = 0;      // 0: by the size of the front
    int threads = 0; // 0: as the BLAS library has it
    int refinements = 10;
    std::string rhs = "ones"; // "ones", "random" or a file
    int columns = 1;
    std::string vtk = "beam.vtu";    // empty: none
    std::string solution;            // empty: not written
    std::string condense, condensed; // unknowns to keep, and where their matrix goes; both or none
    std::string trace;               // empty: not written
    std::vector<int> simulate;       // numbers of workers, ascending
    bool json = false;
    bool help = false, version = false;

    bool record() const { return !trace.empty() || !simulate.empty(); }
    std::string rhsFile() const { return rhs == "ones" || rhs == "random" ? "" : rhs; }
};

extern const char* const helpText;

// Throws InputError for anything that makes no sense.
Options parseOptions(int argc, char** argv);
