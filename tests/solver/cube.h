// SPDX-License-Identifier: BSD-3-Clause
// A system for the C interface: a cube of m*m*m points, three unknowns each, coupled with those of the 27
// points around it by numbers of -1 to 1 drawn for each pair.
#pragma once

#include <cstdint>
#include <vector>

struct Cube
{
    int n;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> column;
    std::vector<double> value;

    Cube(int m, bool symmetric, double diagonal) : n(3 * m * m * m), start(1, 0)
    {
        for (int row = 0; row < n; ++row) {
            const int point = row / 3, z = point % m, y = point / m % m, x = point / m / m;
            for (int near = 0; near < 27 * 3; ++near) {
                const int u = x + near / 27 - 1, v = y + near / 9 % 3 - 1, w = z + near / 3 % 3 - 1;
                if (u < 0 || v < 0 || w < 0 || u >= m || v >= m || w >= m)
                    continue;
                const int other = 3 * ((u * m + v) * m + w) + near % 3;
                column.push_back(other);
                value.push_back(row == other               ? diagonal * (row % 5 == 3 ? -1.0 : 1.0)
                                : symmetric && other < row ? drawn(other, row)
                                                           : drawn(row, other));
            }
            start.push_back(static_cast<std::int64_t>(column.size()));
        }
    }
    std::vector<double> right(int columns) const
    {
        std::vector<double> b(static_cast<std::size_t>(n) * columns);
        for (std::size_t i = 0; i < b.size(); ++i)
            b[i] = 1.0 + static_cast<double>(i % 7);
        return b;
    }

private:
    static double drawn(int row, int column)
    {
        std::uint64_t x = (static_cast<std::uint64_t>(row) << 32 | static_cast<std::uint32_t>(column)) + 1;
        for (int round = 0; round < 3; ++round) {
            x *= 0x9e3779b97f4a7c15u;
            x ^= x >> 31;
        }
        return static_cast<double>(x >> 11) * 0x1p-52 - 1.0;
    }
};
