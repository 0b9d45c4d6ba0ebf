// SPDX-License-Identifier: BSD-3-Clause
// The solver's library as the program calls it.
#pragma once

#include "matrix.h"

#include <TOVBlaSolver.h>

#include <functional>
#include <memory>
#include <string>

// Called with what is being done and the share of it that is done.
using Monitor = std::function<void(const char*, double)>;

// The tasks of a recorded factorisation: next[start[t]] ... next[start[t + 1] - 1] wait for task t and stand
// behind it.
struct Tasks
{
    std::vector<bla_solver_task> task;
    std::vector<std::int64_t> start;
    std::vector<std::int32_t> next;
};

// Every call throws std::runtime_error with the library's sentence where it fails, std::bad_alloc without
// memory.
class Library
{
public:
    explicit Library(const Monitor& monitor);

    void set(const char* option, double value);
    double get(const char* quantity) const;

    // What the next analyses keep, for condensed().
    void keep(const std::vector<int>& unknowns);
    // As a symmetric matrix, of which the lower half is taken, or as a general one.
    void analyse(const Matrix& a, bool symmetric);
    void factorise(const Matrix& a);
    Block solve(const Block& b);
    void refine(const Matrix& a, const Block& b, Block& x);
    std::string verdict() const;
    // The matrix of the unknowns that are kept, `count` of them.
    Block condensed(int count) const;
    std::vector<int> replaced() const;
    // With the option `record` set before the factorisation.
    Tasks tasks() const;

private:
    struct Destroy
    {
        void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
    };
    void check(int status) const;

    std::unique_ptr<bla_solver, Destroy> solver_;
};
