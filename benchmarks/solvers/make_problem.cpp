// SPDX-License-Identifier: BSD-3-Clause
// Writes a problem for the contenders: elasticity on a cube of M^3 free nodes, three unknowns each, or the
// matrix of a Matrix Market file.
//
// usage: bla_make_problem M|FILE.mtx PROBLEM
#include "problem.h"

#include "beam.h"
#include "matrix_market.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

namespace {

Matrix elasticCube(int m)
{
    BeamMesh cube; // behind the clamped face there are m layers of nodes
    for (int axis = 0; axis < 3; ++axis) {
        cube.elements[axis] = axis == 0 ? m : m - 1;
        cube.size[axis] = 1.0;
    }
    return beamStiffness(cube);
}

Problem upperTriangle(const Matrix& a)
{
    if (!a.symmetric)
        throw std::runtime_error("the matrix is not symmetric");
    Problem upper;
    upper.n = a.n;
    upper.start.push_back(0);
    for (int i = 0; i < a.n; ++i) {
        for (std::int64_t p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] >= i) {
                upper.column.push_back(a.column[p]);
                upper.value.push_back(a.value[p]);
            }
        upper.start.push_back(static_cast<std::int64_t>(upper.column.size()));
    }
    return upper;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s M|FILE.mtx PROBLEM\n", argv[0]);
        return 2;
    }
    try {
        const int m = std::atoi(argv[1]);
        write(upperTriangle(m > 1 ? elasticCube(m) : readMatrix(argv[1])), argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
        return 1;
    }
}
