// SPDX-License-Identifier: BSD-3-Clause
#include "plain_reader.h"

#include <cmath>
#include <cstdlib>
#include <regex>
#include <sstream>

namespace {

using Strings = std::vector<std::string>;

Strings lines_of(const std::string& text)
{
    std::string unix_text;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r')
            unix_text += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            unix_text += '\n';
    Strings lines;
    std::istringstream stream(unix_text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

Strings words_of(const std::string& line)
{
    Strings words(1);
    for (char c : line)
        if (c != ' ' && c != '\t')
            words.back() += c;
        else if (!words.back().empty())
            words.emplace_back();
    if (words.back().empty())
        words.pop_back();
    return words;
}

/// What is too large for any index reads as 10^18.
std::optional<std::int64_t> integer(const std::string& word)
{
    static const std::regex form("[+-]?0*([0-9]*)");
    std::smatch match;
    if (!std::regex_match(word, match, form) || word.find_first_of("0123456789") == std::string::npos)
        return {};
    const std::string digits = match[1];
    const std::int64_t size = digits.size() > 18 ? 1000000000000000000 : std::atoll(("0" + digits).c_str());
    return word[0] == '-' ? -size : size;
}

std::optional<double> number(std::string word)
{
    static const std::regex form("[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eEdD][+-]?[0-9]+)?");
    if (!std::regex_match(word, form))
        return {};
    for (char& c : word)
        if (c == 'd' || c == 'D')
            c = 'e';
    const double value = std::strtod(word.c_str(), nullptr);
    return std::fabs(value) < 1e308 ? std::optional(value) : std::nullopt;
}

std::string lower(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

} // namespace

std::optional<plain::File> plain::read(const std::string& text)
{
    const Strings lines = lines_of(text);
    if (lines.empty() || lines[0].substr(0, 2) != "%%")
        return {};
    const Strings banner = words_of(lower(lines[0]));
    if (banner.size() != 5 || banner[0] != "%%matrixmarket" || banner[1] != "matrix" ||
        (banner[2] != "array" && banner[2] != "coordinate") ||
        (banner[3] != "real" && banner[3] != "integer") ||
        (banner[4] != "general" && banner[4] != "symmetric" && banner[4] != "skew-symmetric"))
        return {};
    const bool skew = banner[4] == "skew-symmetric";
    std::vector<Strings> rest;
    for (std::size_t l = 1; l < lines.size(); ++l)
        if (lines[l].substr(0, 1) != "%" && !words_of(lines[l]).empty())
            rest.push_back(words_of(lines[l]));

    File file;
    file.array = banner[2] == "array";
    file.mirrored = banner[4] != "general";
    if (rest.empty() || rest[0].size() != (file.array ? 2u : 3u))
        return {};
    std::int64_t sizes[3] = {};
    for (std::size_t k = 0; k < rest[0].size(); ++k) {
        const auto size = integer(rest[0][k]);
        if (!size || rest[0][k][0] == '-')
            return {};
        sizes[k] = *size;
    }
    file.rows = sizes[0];
    file.columns = sizes[1];
    if (file.rows < 1 || file.columns < 1 || file.rows > 2147483647 || file.columns > 2147483647 ||
        (file.mirrored && file.rows != file.columns))
        return {};
    file.announced = static_cast<std::int64_t>(rest.size()) - 1;
    std::int64_t i = skew ? 1 : 0, j = 0; // where the next value of an array belongs
    bool below = false, above = false;
    for (std::size_t l = 1; l < rest.size(); ++l) {
        if (rest[l].size() != (file.array ? 1u : 3u) || (file.array && j >= file.columns))
            return {};
        const auto row = file.array ? i + 1 : integer(rest[l][0]),
                   column = file.array ? j + 1 : integer(rest[l][1]);
        const auto value = number(rest[l].back());
        if (!row || !column || *row < 1 || *row > file.rows || *column < 1 || *column > file.columns ||
            !value)
            return {};
        below = below || *row > *column;
        above = above || *row < *column;
        if (skew && *row == *column && *value != 0.0)
            return {};
        file.entries.push_back({*row - 1, *column - 1, *value});
        if (file.mirrored && *row != *column)
            file.entries.push_back({*column - 1, *row - 1, skew ? -*value : *value});
        ++i;
        while (i >= file.rows && j < file.columns) {
            ++j;
            i = skew ? j + 1 : file.mirrored ? j : 0;
        }
    }
    const bool complete =
        file.array ? j >= file.columns || (skew && j >= file.columns - 1) : file.announced == sizes[2];
    return complete && !(file.mirrored && below && above) ? std::optional(file) : std::nullopt;
}
