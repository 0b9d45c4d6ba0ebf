// SPDX-License-Identifier: BSD-3-Clause
#include "matrix_market.h"

#include "matrix_market_entries.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Arrays are made for what a file holds, not for what it says: beyond this size, rows and columns must have
// entries.
constexpr std::int64_t small = 1 << 16;

void refuseInfinite(const TextFile& text, const std::vector<double>& values)
{
    if (!std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); }))
        refuse(text, 0, "entries given more than once add up to infinity");
}

} // namespace

Matrix readMatrix(const std::string& path)
{
    const TextFile text = loadText(path, "%%");
    Lines lines(text.content);
    const Header header = readHeader(text, lines, {"the matrix", ""});
    if (header.rows != header.columns)
        refuse(text, lines.number(),
               "the matrix is not square (" + std::to_string(header.rows) + " x " +
                   std::to_string(header.columns) + ")");
    const std::int64_t entries = header.entries * (header.oneTriangle() ? 2 : 1);
    if (entries > std::numeric_limits<int>::max())
        refuse(text, lines.number(), "the matrix is too large for 32-bit indices");
    if (header.rows > std::max(small, entries))
        refuse(text, lines.number(),
               "the matrix is structurally singular: " + std::to_string(header.entries) +
                   " entries leave rows empty among " + std::to_string(header.rows));

    const std::size_t shortest = header.array ? 2 : 6; // bytes of a line like "0" or "1 1 0"
    std::vector<Triplet> triplets;
    triplets.reserve(std::min(static_cast<std::size_t>(entries), 2 * (lines.bytesLeft() / shortest + 1)));
    readEntries(text, lines, header, [&](int row, int column, double value) {
        if (!header.array || value != 0.0)
            triplets.push_back({row, column, value});
    });
    Matrix a = fromTriplets(static_cast<int>(header.rows), std::move(triplets));
    refuseInfinite(text, a.value);
    a.symmetric = header.symmetric || isSymmetric(a);
    return a;
}

Block readVectors(const std::string& path, int n)
{
    const TextFile text = loadText(path, "%%");
    Lines lines(text.content);
    const Header header =
        readHeader(text, lines,
                   {"the right-hand side", "; a right-hand side is a real Matrix Market file of " +
                                               std::to_string(n) + " rows, array or coordinate"});
    if (header.rows != n)
        refuse(text, lines.number(),
               "the right-hand side has " + std::to_string(header.rows) + " rows, the matrix " +
                   std::to_string(n));
    if (n * header.columns > small && header.columns > header.entries)
        refuse(text, lines.number(),
               "the right-hand side has " + std::to_string(header.columns) + " columns, but " +
                   std::to_string(header.entries) + " entries");

    Block b(n, static_cast<int>(header.columns));
    readEntries(text, lines, header,
                [&](int row, int column, double value) { b.column(column)[row] += value; });
    refuseInfinite(text, b.value);
    return b;
}
