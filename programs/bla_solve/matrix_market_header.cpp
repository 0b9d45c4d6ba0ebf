// SPDX-License-Identifier: BSD-3-Clause
#include "matrix_market_header.h"

#include "numbers.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace {

std::string lower(std::string_view word)
{
    std::string s(word);
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

Header readBanner(const TextFile& text, std::string_view line, const Purpose& purpose)
{
    const std::string subject = purpose.subject;
    const Words words(line);
    if (words.count == 0 || words.word[0].data() != line.data() || lower(words.word[0]) != "%%matrixmarket")
        refuse(text, 0, "not a Matrix Market file (no %%MatrixMarket line)" + purpose.reminder);
    if (words.count != 5)
        refuse(text, 1, "the %%MatrixMarket line needs object, format, field and symmetry");
    const std::string object = lower(words.word[1]), format = lower(words.word[2]),
                      field = lower(words.word[3]), symmetry = lower(words.word[4]);
    if (object != "matrix")
        refuse(text, 1, "the object is not a matrix but: " + shown(object));
    if (format != "array" && format != "coordinate")
        refuse(text, 1, "unknown format: " + shown(format));
    if (field == "complex")
        refuse(text, 1, subject + " is complex; only real matrices are solved" + purpose.reminder);
    if (field == "pattern")
        refuse(text, 1, subject + " is a pattern only, without values" + purpose.reminder);
    if (field != "real" && field != "integer")
        refuse(text, 1, "unknown field: " + shown(field));
    if (symmetry == "hermitian")
        refuse(text, 1, "hermitian is a symmetry of complex matrices; that of real ones is called symmetric");
    if (symmetry != "general" && symmetry != "symmetric" && symmetry != "skew-symmetric")
        refuse(text, 1, "unknown symmetry: " + shown(symmetry));
    Header header;
    header.array = format == "array";
    header.symmetric = symmetry == "symmetric";
    header.skew = symmetry == "skew-symmetric";
    return header;
}

// Rows, columns and, for coordinates, entries.
void readSizes(const TextFile& text, const Lines& lines, const Purpose& purpose, Header& header)
{
    const Words words(lines.line());
    const int count = header.array ? 2 : 3;
    std::int64_t size[3] = {};
    bool good = words.count == count, large = false;
    for (int i = 0; good && i < count; ++i) {
        const Parsed parsed = parseInteger(words.word[i], size[i]);
        good = parsed != Parsed::no && size[i] >= 0 && words.word[i][0] != '-';
        large |= parsed == Parsed::tooLarge;
    }
    if (!good)
        refuse(text, lines.number(),
               std::string("the size line is malformed; it gives rows") +
                   (header.array ? " and columns" : ", columns and entries"));
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    if (large || size[0] > most || size[1] > most)
        refuse(text, lines.number(),
               "the size line: " + std::string(purpose.subject) + " is too large for 32-bit indices");
    header.rows = size[0];
    header.columns = size[1];
    if (header.rows == 0 || header.columns == 0)
        refuse(text, lines.number(),
               std::string(purpose.subject) + " is empty (" + std::to_string(header.rows) + " x " +
                   std::to_string(header.columns) + ")");
    if (header.oneTriangle() && header.rows != header.columns)
        refuse(text, lines.number(), "a symmetric file must be square");
    const std::int64_t n = header.rows;
    header.entries = !header.array      ? size[2]
                     : header.symmetric ? n * (n + 1) / 2
                     : header.skew      ? n * (n - 1) / 2
                                        : n * header.columns;
    // Every entry has a digit: nothing is set aside for what the file cannot hold.
    if (static_cast<std::uint64_t>(header.entries) > lines.bytesLeft())
        refuse(text, 0,
               "truncated: " + std::to_string(header.entries) + " entries announced, " +
                   std::to_string(lines.bytesLeft()) + " bytes left for them");
}

} // namespace

Header readHeader(const TextFile& text, Lines& lines, const Purpose& purpose)
{
    lines.next();
    Header header = readBanner(text, lines.line(), purpose);
    while (lines.next())
        if (!lines.line().starts_with('%') && Words(lines.line()).count > 0) {
            readSizes(text, lines, purpose, header);
            return header;
        }
    refuse(text, 0, "truncated: there is no size line");
}
