// SPDX-License-Identifier: BSD-3-Clause
// Cases of the benchmark. A case is named family/size/variant, and the variants of one family and size do the
// same work on equal data: their rates are compared, never their times with those of another run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace bench {

using std::int64_t;

/// What a case repeats: reset, untimed, restores the data; run, timed, does the work once.
struct Job
{
    std::function<void()> reset;
    std::function<void()> run;
};

/// Adds a case. `work` is what one run does, in flops, bytes or elements; `make` builds the job when the case
/// runs.
void add(const std::string& name, double work, std::function<Job()> make);

/// Memory at the same place within a page for every case: they differ in code, not in the luck of their
/// addresses.
class Array
{
public:
    explicit Array(int64_t count);
    Array(const Array& other);
    Array& operator=(const Array&) = delete;
    ~Array();

    double* data() const { return data_; }
    operator double*() const { return data_; }
    int64_t size() const { return count_; }
    void copy_from(const Array& other);

private:
    int64_t count_;
    double* data_;
};

/// Uniform in [-1, 1], the same in every run.
void fill(Array& a);

/// All families of the program.
void add_families();

// Those of bla_bench, each in a source of its own.
void add_eliminations();
void add_blocked_eliminations();
void add_cholesky();
void add_sparse();
void add_transposes();
void add_block_kernels();
void add_products();
void add_limits();

/// Rates of this machine that nothing can beat, run beside the kernels. They do `work` units each.
namespace limit {
/// mul and sub on registers, without FMA; returns the flops done.
double multiply_subtract(int rounds);
constexpr double FlopsPerRound = 12 * 2 * 4;
/// Vector divisions on registers.
double divide(int rounds);
constexpr double DivisionsPerRound = 8 * 4;
/// Integer products, each of the one before: three cycles each, so that rates can be told a cycle.
void wait_for_products(int rounds);
constexpr double CyclesPerRound = 3 * 100;
} // namespace limit

} // namespace bench
