// SPDX-License-Identifier: BSD-3-Clause
#include "beam.h"
#include "output_file.h"

void writeDeformedBeam(const std::string& path, const BeamMesh& mesh, const double* displacement,
                       double factor)
{
    OutputFile output(path);
    std::FILE* const file = output.stream();
    const auto shift = [&](int node, int axis) {
        const int free = node - mesh.clampedNodes();
        return free < 0 ? 0.0 : displacement[3 * static_cast<std::size_t>(free) + axis];
    };
    std::fprintf(file, "<?xml version=\"1.0\"?>\n"
                       "<VTKFile type=\"UnstructuredGrid\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
                       "<UnstructuredGrid>\n");
    std::fprintf(file, "<Piece NumberOfPoints=\"%d\" NumberOfCells=\"%d\">\n", mesh.nodeCount(),
                 mesh.elementCount());

    std::fprintf(
        file,
        "<PointData Vectors=\"displacement\">\n"
        "<DataArray type=\"Float64\" Name=\"displacement\" NumberOfComponents=\"3\" format=\"ascii\">\n");
    for (int node = 0; node < mesh.nodeCount(); ++node)
        std::fprintf(file, "%.9g %.9g %.9g\n", shift(node, 0), shift(node, 1), shift(node, 2));
    std::fprintf(file, "</DataArray>\n</PointData>\n");

    std::fprintf(file, "<Points>\n<DataArray type=\"Float64\" NumberOfComponents=\"3\" format=\"ascii\">\n");
    for (int node = 0; node < mesh.nodeCount(); ++node) {
        const auto x = mesh.position(node);
        std::fprintf(file, "%.9g %.9g %.9g\n", x[0] + factor * shift(node, 0), x[1] + factor * shift(node, 1),
                     x[2] + factor * shift(node, 2));
    }
    std::fprintf(file, "</DataArray>\n</Points>\n");

    std::fprintf(file, "<Cells>\n<DataArray type=\"Int32\" Name=\"connectivity\" format=\"ascii\">\n");
    for (int e = 0; e < mesh.elementCount(); ++e) {
        const auto c = mesh.corners(e);
        std::fprintf(file, "%d %d %d %d %d %d %d %d\n", c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
    }
    std::fprintf(file, "</DataArray>\n<DataArray type=\"Int32\" Name=\"offsets\" format=\"ascii\">\n");
    for (int e = 1; e <= mesh.elementCount(); ++e)
        std::fprintf(file, "%d\n", 8 * e);
    std::fprintf(file, "</DataArray>\n<DataArray type=\"UInt8\" Name=\"types\" format=\"ascii\">\n");
    for (int e = 0; e < mesh.elementCount(); ++e)
        std::fprintf(file, "12\n");
    std::fprintf(file, "</DataArray>\n</Cells>\n</Piece>\n</UnstructuredGrid>\n</VTKFile>\n");
    output.finish();
}
