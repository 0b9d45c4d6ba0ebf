// SPDX-License-Identifier: BSD-3-Clause
#include "matrix_market_entries.h"

#include "numbers.h"

#include <cmath>

namespace {

// The rows of a matrix and their sums would overflow from here on.
constexpr double largestValue = 1e308;

class Entries
{
public:
    Entries(const TextFile& text, const Lines& lines, const Header& header)
        : text_(text), lines_(lines), header_(header), row_(header.array && header.skew ? 1 : 0)
    {
    }

    // Takes the line apart; row, column and value are those of its entry afterwards.
    void read(const Words& words, int& row, int& column, double& value)
    {
        if (words.count != (header_.array ? 1 : 3))
            refuseLine(header_.array ? "expected one value" : "expected row, column and value");
        if (header_.array)
            nextPlace(row, column);
        else
            place(words.word[0], words.word[1], row, column);
        parseValue(words.word[words.count - 1], value);
        if (header_.skew && row == column && value != 0.0)
            refuseLine("a skew-symmetric file has no diagonal");
    }

    [[noreturn]] void refuseLine(const std::string& what) const
    {
        const bool zero = lines_.line().find('\0') != std::string_view::npos;
        refuse(text_, lines_.number(),
               what + (zero            ? " (there is a zero byte: a damaged file?)"
                       : lines_.torn() ? " (file truncated?)"
                                       : ""));
    }

private:
    // Column by column, of one triangle from the diagonal or the row below it.
    void nextPlace(int& row, int& column)
    {
        row = row_;
        column = column_;
        if (++row_ == header_.rows) {
            ++column_;
            row_ = header_.symmetric ? column_ : header_.skew ? column_ + 1 : 0;
        }
    }

    void place(std::string_view first, std::string_view second, int& row, int& column)
    {
        std::int64_t i = 0, j = 0;
        const Parsed iParsed = parseInteger(first, i), jParsed = parseInteger(second, j);
        if (iParsed == Parsed::no || jParsed == Parsed::no)
            refuseLine("row and column must be integers");
        if (iParsed == Parsed::tooLarge || jParsed == Parsed::tooLarge || i < 1 || i > header_.rows ||
            j < 1 || j > header_.columns)
            refuseLine("entry (" + shown(first) + ", " + shown(second) + ") lies outside " +
                       std::to_string(header_.rows) + " x " + std::to_string(header_.columns));
        row = static_cast<int>(i - 1);
        column = static_cast<int>(j - 1);
        below_ |= i > j;
        above_ |= i < j;
        if (header_.oneTriangle() && below_ && above_)
            refuseLine("the header says one triangle is stored, but there are entries on both sides of the "
                       "diagonal");
    }

    void parseValue(std::string_view word, double& value) const
    {
        if (parseNumber(word, value) != Parsed::yes)
            refuseLine(shown(word) + " is not a number");
        if (std::isnan(value))
            refuseLine("the value is not a number (NaN)");
        if (std::fabs(value) >= largestValue)
            refuseLine("the value " + shown(word) + " is infinite, or too large to compute with");
    }

    const TextFile& text_;
    const Lines& lines_;
    const Header& header_;
    int row_, column_ = 0; // of the next value of an array
    bool below_ = false, above_ = false;
};

} // namespace

void readEntries(const TextFile& text, Lines& lines, const Header& header, const TakeEntry& take)
{
    Entries entries(text, lines, header);
    std::int64_t found = 0;
    while (lines.next()) {
        const Words words(lines.line());
        if (words.count == 0 || lines.line().starts_with('%'))
            continue;
        if (found == header.entries)
            entries.refuseLine("more than the " + std::to_string(header.entries) + " entries announced");
        ++found;
        int row, column;
        double value;
        entries.read(words, row, column, value);
        take(row, column, value);
        if (header.oneTriangle() && row != column)
            take(column, row, header.skew ? -value : value);
    }
    if (found < header.entries)
        refuse(text, 0,
               "truncated: " + std::to_string(found) + " of " + std::to_string(header.entries) + " entries");
}
