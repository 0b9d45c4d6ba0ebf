// SPDX-License-Identifier: BSD-3-Clause
// What a handle of the C interface holds: options, the rows given, their analysis, the factor, and what is
// known about them. Calls throw Failure or std::bad_alloc and then leave the handle as it was.
#pragma once

#include "analysis.h"
#include "factor.h"
#include "rows.h"
#include "scaling.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

struct Options
{
    double threads = 0.0, tolerance = 1e-14, shift = 0.0, refinements = 10.0, panelWidth = 0.0;
    double ordering = 0.0, memoryLimit = 0.0;
};

// A sentence, kept without asking for memory.
class Message
{
public:
    void clear() { text_[0] = '\0'; }
    void set(const char* text)
    {
        std::strncpy(text_, text, sizeof text_ - 1);
        text_[sizeof text_ - 1] = '\0';
    }
    const char* text() const { return text_; }

private:
    char text_[256] = "";
};

// What the pattern alone decides, or the numbers for as long as they ask for nothing else.
struct Plan
{
    Analysis analysis;
    std::vector<char> late; // symmetric: unknowns eliminated behind their neighbours
    std::vector<int> rowOf; // general: the row in the place of each, empty as long as no numbers were seen
    int ordering = 0;
};

// What the numbers decide.
struct Numbers
{
    Equilibrated equilibrated; // without its matrix once that is factorised
    std::unique_ptr<Factor> factor;
    double shift = 0.0;
};

struct bla_solver
{
    void analyse(Kind kind, int n, const std::int64_t* start, const int* column);
    void factorise(const double* value);
    void solve(bool transposed, int columns, double* b, std::int64_t ldb);
    void refine(const double* value, int columns, const double* b, std::int64_t ldb, double* x,
                std::int64_t ldx);
    void pivots(double* d) const;
    void schur(double* c, std::int64_t ldc) const;

    // Throws where the monitor asks for it.
    void report(const char* phase, double share) const;

    mutable Message message;
    Options options;
    int (*monitor)(void*, const char*, double) = nullptr;
    void* monitorContext = nullptr;
    std::vector<int> order, kept; // as given to set_order and set_schur

    std::unique_ptr<const Rows> rows;
    std::unique_ptr<Plan> plan;
    std::unique_ptr<Numbers> numbers;
    ...
};
