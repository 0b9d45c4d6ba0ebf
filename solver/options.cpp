// SPDX-License-Identifier: BSD-3-Clause
#include "options.h"

#include "failure.h"

#include <cmath>
#include <string>

namespace {

struct Option
{
    const char* name;
    double Options::*place;
    double most; // from 0
    bool whole;
};

constexpr Option known[] = {
    {"threads", &Options::threads, 4096.0, true},
    {"tolerance", &Options::tolerance, 1.0, false},
    {"shift", &Options::shift, 1.0, false},
    {"refinements", &Options::refinements, 1000.0, true},
    {"panel_width", &Options::panelWidth, 4096.0, true},
    {"ordering", &Options::ordering, 3.0, true},
    {"memory_limit", &Options::memoryLimit, 0x1p63, false},
    {"record", &Options::record, 1.0, true},
};

std::string names()
{
    std::string text;
    for (const Option& option : known)
        text += (text.empty() ? "" : ", ") + std::string(option.name);
    return text;
}

} // namespace

void Options::set(std::string_view name, double value)
{
    for (const Option& option : known)
        if (name == option.name) {
            if (!(value >= 0.0 && value <= option.most) || (option.whole && value != std::floor(value)))
                throw Failure(BLA_SOLVER_BAD_ARGUMENT,
                              std::string(name) + " = " + std::to_string(value) + " is not a sensible value");
            this->*option.place = value;
            return;
        }
    throw Failure(BLA_SOLVER_BAD_ARGUMENT, "there is no option '" + std::string(name) + "' but " + names());
}

const double* Options::find(std::string_view name) const
{
    for (const Option& option : known)
        if (name == option.name)
            return &(this->*option.place);
    return nullptr;
}
