// SPDX-License-Identifier: BSD-3-Clause
// What a Matrix Market file says of itself: its first line and its sizes.
#pragma once

#include "text_file.h"

#include <cstdint>

struct Header
{
    bool array = false;     // all values column by column, else row, column and value of each entry
    bool symmetric = false; // one triangle is stored, the other one mirrors it
    bool skew = false;      // so too, with the sign changed; the diagonal of an array is left out
    std::int64_t rows = 0, columns = 0;
    std::int64_t entries = 0; // lines of values in the file

    bool oneTriangle() const { return symmetric || skew; }
};

// What the file is read for, as messages put it: "the matrix", and a reminder that follows a refusal.
struct Purpose
{
    const char* subject;
    std::string reminder;
};

// Reads up to the size line; `lines` then stands on it. Refuses what holds no real numbers, and more entries
// than bytes are left.
Header readHeader(const TextFile& text, Lines& lines, const Purpose& purpose);
