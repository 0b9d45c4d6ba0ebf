// SPDX-License-Identifier: BSD-3-Clause
// What the program has to say: one list of named values, printed as text or as a JSON object.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

class Report
{
public:
    using Value = std::variant<bool, std::int64_t, double, std::string>;

    // `key` names the value in JSON, `label` in text ("": not shown there); `unit` follows it in text.
    void add(std::string key, std::string label, Value value, std::string unit = "");
    // Text only.
    void line(std::string label, std::string text);
    void heading(std::string text);

    std::string text() const;
    std::string json() const;

private:
    struct Item
    {
        std::string key, label;
        Value value;
        std::string unit;
    };
    std::vector<Item> items_;
};
