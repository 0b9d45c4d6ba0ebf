// SPDX-License-Identifier: BSD-3-Clause
// A cantilever beam of 8-node hexahedra in linear elasticity: clamped at x = 0, loaded downwards (-z) by a
// uniform shear traction over its end x = length.
#pragma once

#include "matrix.h"

#include <array>
#include <string>

struct BeamMesh
{
    int elements[3] = {51, 13, 13};      // along x, y, z
    double size[3] = {1.0, 0.1, 0.1};    // m
    double young = 210e9, poisson = 0.3; // Pa, -
    double force = 10e3;                 // N, the resultant at the tip

    int nodes(int axis) const { return elements[axis] + 1; }
    int nodeCount() const { return nodes(0) * nodes(1) * nodes(2); }
    int elementCount() const { return elements[0] * elements[1] * elements[2]; }
    int unknowns() const { return 3 * elements[0] * nodes(1) * nodes(2); }

    // Nodes are numbered plane by plane along x, so the clamped ones come first.
    int node(int i, int j, int k) const { return (i * nodes(1) + j) * nodes(2) + k; }
    int clampedNodes() const { return nodes(1) * nodes(2); }
    std::array<double, 3> position(int node) const;
    std::array<int, 8> corners(int element) const;
};

// Stiffness and load over the free nodes, three unknowns a node.
Matrix beamStiffness(const BeamMesh& mesh);
Block beamLoad(const BeamMesh& mesh);

// Mean downward displacement of the end face, and what Timoshenko's beam theory says.
double tipDeflection(const BeamMesh& mesh, const double* displacement);
double tipDeflectionTheory(const BeamMesh& mesh);

// The deformed mesh as an XML file of unstructured cells, displacements exaggerated by `factor`.
void writeDeformedBeam(const std::string& path, const BeamMesh& mesh, const double* displacement,
                       double factor);
