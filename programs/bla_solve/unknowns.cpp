// SPDX-License-Identifier: BSD-3-Clause
#include "unknowns.h"

#include "numbers.h"
#include "text_file.h"

namespace {

constexpr std::string_view blanks = " \t\f\v";

int unknownOf(const TextFile& text, std::int64_t line, std::string_view word, int n)
{
    std::int64_t value = 0;
    const Parsed parsed = parseInteger(word, value);
    if (parsed == Parsed::no)
        refuse(text, line, shown(word) + " is no number");
    if (parsed == Parsed::tooLarge || value < 1 || value > n)
        refuse(text, line, shown(word) + " is not an unknown of the matrix, 1 to " + std::to_string(n));
    return static_cast<int>(value - 1);
}

} // namespace

std::vector<int> readUnknowns(const std::string& path, int n)
{
    const TextFile text = loadText(path, "");
    std::vector<int> unknowns;
    std::vector<char> there(static_cast<std::size_t>(n), 0);
    for (Lines lines(text.content); lines.next();) {
        std::string_view rest = lines.line().substr(0, lines.line().find_first_of("%#"));
        for (std::size_t begin; (begin = rest.find_first_not_of(blanks)) != std::string_view::npos;) {
            rest.remove_prefix(begin);
            const std::string_view word = rest.substr(0, rest.find_first_of(blanks));
            rest.remove_prefix(word.size());
            const int unknown = unknownOf(text, lines.number(), word, n);
            if (there[unknown]++)
                refuse(text, lines.number(), shown(word) + " is there twice");
            unknowns.push_back(unknown);
        }
    }
    if (unknowns.empty())
        refuse(text, 0, "the file names no unknowns");
    return unknowns;
}
