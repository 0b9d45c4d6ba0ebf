// SPDX-License-Identifier: BSD-3-Clause
#include "report.h"

#include <cmath>
#include <cstdio>

namespace {

std::string format(const char* pattern, double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, pattern, value);
    return buffer;
}

std::string grouped(std::int64_t value)
{
    const std::string digits = std::to_string(value);
    std::string result;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            result += ' ';
        result += digits[i];
    }
    return result;
}

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\')
            (result += '\\') += static_cast<char>(c);
        else if (c < 0x20)
            ((result += "\\u00") += "0123456789abcdef"[c >> 4]) += "0123456789abcdef"[c & 15];
        else
            result += static_cast<char>(c);
    }
    return result + '"';
}

} // namespace

void Report::add(std::string key, std::string label, Value value, std::string unit)
{
    items_.push_back({std::move(key), std::move(label), std::move(value), std::move(unit)});
}

void Report::line(std::string label, std::string text)
{
    items_.push_back({"", std::move(label), std::move(text), ""});
}

void Report::heading(std::string text)
{
    items_.push_back({"", std::move(text), std::string(), ""});
}

std::string Report::text() const
{
    std::string out;
    for (const Item& item : items_) {
        if (item.key.empty() && std::get<std::string>(item.value).empty()) {
            out += (out.empty() ? "" : "\n") + item.label + "\n";
            continue;
        }
        if (item.label.empty())
            continue;
        std::string value;
        if (const auto* b = std::get_if<bool>(&item.value))
            value = *b ? "yes" : "no";
        else if (const auto* i = std::get_if<std::int64_t>(&item.value))
            value = grouped(*i);
        else if (const auto* d = std::get_if<double>(&item.value))
            value = format("%.4g", *d);
        else
            value = std::get<std::string>(item.value);
        out += "  " + item.label + std::string(item.label.size() < 26 ? 26 - item.label.size() : 1, ' ') +
               value + (item.unit.empty() ? "" : " " + item.unit) + "\n";
    }
    return out;
}

std::string Report::json() const
{
    std::string out = "{";
    const char* separator = "\n";
    for (const Item& item : items_) {
        if (item.key.empty())
            continue;
        out += separator + ("  " + quoted(item.key)) + ": ";
        separator = ",\n";
        if (const auto* b = std::get_if<bool>(&item.value))
            out += *b ? "true" : "false";
        else if (const auto* i = std::get_if<std::int64_t>(&item.value))
            out += std::to_string(*i);
        else if (const auto* d = std::get_if<double>(&item.value))
            out += std::isfinite(*d) ? format("%.17g", *d) : "null";
        else
            out += quoted(std::get<std::string>(item.value));
    }
    return out + "\n}\n";
}
