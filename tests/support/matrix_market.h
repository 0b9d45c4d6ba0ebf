// SPDX-License-Identifier: BSD-3-Clause
// Real matrices in Matrix Market files.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace support {

/// A sparse matrix by rows, counted from zero, columns ascending within a row.
struct Rows
{
    int m = 0, n = 0;
    std::vector<int> ia, ja;
    std::vector<double> a;

    /// From triples; entries of the same row keep their order.
    Rows(int rows, int columns, const std::vector<int>& i, const std::vector<int>& j,
         const std::vector<double>& x)
        : m(rows), n(columns), ia(static_cast<std::size_t>(rows) + 1), ja(j.size()), a(x.size())
    {
        for (int row : i)
            ++ia[static_cast<std::size_t>(row) + 1];
        std::partial_sum(ia.begin(), ia.end(), ia.begin());
        std::vector<int> next(ia.begin(), ia.end() - 1);
        for (std::size_t p = 0; p < i.size(); ++p) {
            const auto to = static_cast<std::size_t>(next[static_cast<std::size_t>(i[p])]++);
            ja[to] = j[p];
            a[to] = x[p];
        }
    }

    Rows transposed() const
    {
        std::vector<int> i;
        for (int row = 0; row < m; ++row)
            i.insert(i.end(),
                     static_cast<std::size_t>(ia[static_cast<std::size_t>(row) + 1] -
                                              ia[static_cast<std::size_t>(row)]),
                     row);
        return Rows(n, m, ja, i, a);
    }
};

/// The files of the folder that BLA_TEST_DATA names in the environment, else those of tests/data.
inline std::vector<std::filesystem::path> matrix_files()
{
    const char* const named = std::getenv("BLA_TEST_DATA");
    std::vector<std::filesystem::path> files;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(named ? named : BLA_TEST_DATA, missing))
        if (entry.path().extension() == ".mtx")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// Reads a matrix; of a symmetric one both triangles. A complex one gives its real part.
inline Rows read_matrix(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    const bool symmetric = line.find("symmetric") != std::string::npos;
    while (file.peek() == '%')
        std::getline(file, line);
    std::getline(file, line);
    int m = 0, n = 0, count = 0;
    std::istringstream(line) >> m >> n >> count;
    std::vector<int> i, j;
    std::vector<double> x;
    for (int p = 0; p < count && std::getline(file, line); ++p) {
        char* at = line.data();
        const int row = static_cast<int>(std::strtol(at, &at, 10)) - 1;
        const int column = static_cast<int>(std::strtol(at, &at, 10)) - 1;
        const double value = std::strtod(at, &at);
        for (bool mirror : {false, true}) {
            if (mirror && (!symmetric || row == column))
                continue;
            i.push_back(mirror ? column : row);
            j.push_back(mirror ? row : column);
            x.push_back(value);
        }
    }
    return Rows(m, n, i, j, x).transposed().transposed();
}

} // namespace support
