// SPDX-License-Identifier: BSD-3-Clause
#include "beam.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// Offsets of the corners of a cell in the order that the cell type "hexahedron" of VTK prescribes.
constexpr int corner[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                              {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

constexpr int displacements = 24;
constexpr int modes = 9;
constexpr int shapes = displacements + modes;

// Element stiffness, 24 x 24 column-major, lower triangle. Plain trilinear hexahedra are far too stiff in
// bending; three internal bubble modes per displacement (1 - xi^2 in each direction, the "incompatible
// modes" of Wilson and Taylor) cure that, and are eliminated element by element.
std::array<double, displacements * displacements> elementStiffness(const BeamMesh& mesh)
{
    const double lambda = mesh.young * mesh.poisson / ((1 + mesh.poisson) * (1 - 2 * mesh.poisson));
    const double mu = mesh.young / (2 * (1 + mesh.poisson));
    double h[3];
    for (int a = 0; a < 3; ++a)
        h[a] = mesh.size[a] / mesh.elements[a];

    double full[shapes][shapes] = {}; // modes first: they are the pivots
    const double gauss = 1.0 / std::sqrt(3.0);
    const double weight = h[0] * h[1] * h[2] / 8.0;
    for (int point = 0; point < 8; ++point) {
        double xi[3], gradient[shapes / 3][3] = {};
        for (int a = 0; a < 3; ++a)
            xi[a] = corner[point][a] ? gauss : -gauss;
        for (int a = 0; a < 3; ++a)
            gradient[a][a] = -2.0 * xi[a] * 2.0 / h[a];
        for (int c = 0; c < 8; ++c)
            for (int a = 0; a < 3; ++a) {
                double g = (corner[c][a] ? 1.0 : -1.0) / h[a];
                for (int b = 0; b < 3; ++b)
                    if (b != a)
                        g *= 0.5 * (1.0 + (corner[c][b] ? xi[b] : -xi[b]));
                gradient[3 + c][a] = g;
            }
        for (int p = 0; p < shapes / 3; ++p)
            for (int q = 0; q < shapes / 3; ++q) {
                const double dot = std::inner_product(gradient[p], gradient[p] + 3, gradient[q], 0.0);
                for (int a = 0; a < 3; ++a)
                    for (int b = 0; b < 3; ++b)
                        full[3 * p + a][3 * q + b] +=
                            weight * (lambda * gradient[p][a] * gradient[q][b] +
                                      mu * gradient[p][b] * gradient[q][a] + (a == b ? mu * dot : 0.0));
            }
    }

    for (int p = 0; p < modes; ++p)
        for (int j = p + 1; j < shapes; ++j) {
            const double multiplier = full[j][p] / full[p][p];
            for (int i = j; i < shapes; ++i)
                full[i][j] -= full[i][p] * multiplier;
        }
    std::array<double, displacements * displacements> k{};
    for (int j = 0; j < displacements; ++j)
        for (int i = j; i < displacements; ++i)
            k[i + displacements * j] = full[modes + i][modes + j];
    return k;
}

} // namespace

std::array<double, 3> BeamMesh::position(int node) const
{
    const int k = node % nodes(2), j = node / nodes(2) % nodes(1), i = node / (nodes(1) * nodes(2));
    return {size[0] * i / elements[0], size[1] * j / elements[1], size[2] * k / elements[2]};
}

std::array<int, 8> BeamMesh::corners(int element) const
{
    const int k = element % elements[2], j = element / elements[2] % elements[1];
    const int i = element / (elements[1] * elements[2]);
    std::array<int, 8> result;
    for (int c = 0; c < 8; ++c)
        result[c] = node(i + corner[c][0], j + corner[c][1], k + corner[c][2]);
    return result;
}

Matrix beamStiffness(const BeamMesh& mesh)
{
    const auto k = elementStiffness(mesh);
    const int clamped = mesh.clampedNodes();
    Matrix a;
    a.n = mesh.unknowns();
    a.symmetric = true;
    a.start.push_back(0);

    // Pattern: a node meets the nodes of the up to 27 planes, rows and columns around it.
    for (int node = clamped; node < mesh.nodeCount(); ++node) {
        const int nk = node % mesh.nodes(2), nj = node / mesh.nodes(2) % mesh.nodes(1), ni = node / clamped;
        std::vector<int> row;
        for (int i = std::max(ni - 1, 1); i <= std::min(ni + 1, mesh.elements[0]); ++i)
            for (int j = std::max(nj - 1, 0); j <= std::min(nj + 1, mesh.elements[1]); ++j)
                for (int kk = std::max(nk - 1, 0); kk <= std::min(nk + 1, mesh.elements[2]); ++kk)
                    for (int c = 0; c < 3; ++c)
                        row.push_back(3 * (mesh.node(i, j, kk) - clamped) + c);
        for (int c = 0; c < 3; ++c) {
            a.column.insert(a.column.end(), row.begin(), row.end());
            a.start.push_back(static_cast<std::int64_t>(a.column.size()));
        }
    }
    a.value.assign(a.column.size(), 0.0);

    for (int e = 0; e < mesh.elementCount(); ++e) {
        const auto corners = mesh.corners(e);
        for (int p = 0; p < displacements; ++p) {
            const int row = 3 * (corners[p / 3] - clamped) + p % 3;
            if (row < 0)
                continue;
            for (int c = 0; c < 8; ++c) {
                const int column = 3 * (corners[c] - clamped);
                if (column < 0)
                    continue;
                const auto begin = a.column.begin() + a.start[row], end = a.column.begin() + a.start[row + 1];
                double* value = a.value.data() + (std::lower_bound(begin, end, column) - a.column.begin());
                for (int q = 3 * c; q < 3 * c + 3; ++q)
                    value[q - 3 * c] += k[std::max(p, q) + displacements * std::min(p, q)];
            }
        }
    }
    return a;
}

Block beamLoad(const BeamMesh& mesh)
{
    Block b(mesh.unknowns(), 1);
    const double share = mesh.force / (4.0 * mesh.elements[1] * mesh.elements[2]);
    for (int j = 0; j < mesh.elements[1]; ++j)
        for (int k = 0; k < mesh.elements[2]; ++k)
            for (int c = 0; c < 4; ++c) {
                const int node = mesh.node(mesh.elements[0], j + c / 2, k + c % 2) - mesh.clampedNodes();
                b.value[3 * static_cast<std::size_t>(node) + 2] -= share;
            }
    return b;
}

double tipDeflection(const BeamMesh& mesh, const double* displacement)
{
    double sum = 0.0, weights = 0.0;
    for (int j = 0; j < mesh.nodes(1); ++j)
        for (int k = 0; k < mesh.nodes(2); ++k) {
            const double weight =
                (j == 0 || j == mesh.elements[1] ? 0.5 : 1.0) * (k == 0 || k == mesh.elements[2] ? 0.5 : 1.0);
            const int node = mesh.node(mesh.elements[0], j, k) - mesh.clampedNodes();
            sum -= weight * displacement[3 * static_cast<std::size_t>(node) + 2];
            weights += weight;
        }
    return sum / weights;
}

// P*l^3/(3*E*I) + P*l/(kappa*G*A), kappa = 10(1 + nu)/(12 + 11 nu) for a rectangle
double tipDeflectionTheory(const BeamMesh& mesh)
{
    const double l = mesh.size[0], area = mesh.size[1] * mesh.size[2];
    const double inertia = area * mesh.size[2] * mesh.size[2] / 12.0;
    const double shear = mesh.young / (2 * (1 + mesh.poisson));
    const double kappa = 10 * (1 + mesh.poisson) / (12 + 11 * mesh.poisson);
    return mesh.force * l * l * l / (3 * mesh.young * inertia) + mesh.force * l / (kappa * shear * area);
}
