// SPDX-License-Identifier: BSD-3-Clause
#include "numbers.h"

#include <charconv>
#include <cstdlib>
#include <string>

namespace {

// std::from_chars takes no plus sign.
std::string_view withoutPlus(std::string_view word)
{
    return word.size() > 1 && word[0] == '+' && word[1] != '-' ? word.substr(1) : word;
}

} // namespace

Parsed parseInteger(std::string_view word, std::int64_t& value)
{
    word = withoutPlus(word);
    const char* const last = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), last, value);
    if (error == std::errc::invalid_argument || end != last)
        return Parsed::no;
    return error == std::errc::result_out_of_range ? Parsed::tooLarge : Parsed::yes;
}

Parsed parseNumber(std::string_view word, double& value)
{
    word = withoutPlus(word);
    const char* const last = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), last, value);
    if (error == std::errc::invalid_argument)
        return Parsed::no;
    if (end != last && (*end == 'd' || *end == 'D')) {
        std::string copy(word);
        copy[static_cast<std::size_t>(end - word.data())] = 'e';
        return parseNumber(copy, value);
    }
    if (end != last)
        return Parsed::no;
    if (error == std::errc::result_out_of_range)
        value = std::strtod(std::string(word).c_str(), nullptr);
    return Parsed::yes;
}
