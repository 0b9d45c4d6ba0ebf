// SPDX-License-Identifier: BSD-3-Clause
// Real Matrix Market files read once more, slowly and by other means: what the reader of bla_solve is held
// against.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plain {

struct Entry
{
    std::int64_t row, column; // from 0
    double value;
};

struct File
{
    bool array = false, mirrored = false;
    std::int64_t rows = 0, columns = 0;
    std::int64_t announced = 0; // entries in the file
    std::vector<Entry>
        entries; // in the order of the file, each followed by its mirror image where there is one
};

/// Nothing where the text is not such a file.
std::optional<File> read(const std::string& text);

} // namespace plain
