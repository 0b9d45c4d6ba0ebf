// SPDX-License-Identifier: BSD-3-Clause
// Cases for the kernels' digest: a case draws its sizes, layouts and data from its own number with integer
// arithmetic only, so that it is the same with every compiler and standard library.
//
// A kernel enters the digest in one place, a DIGEST block:
//
//     DIGEST(blac_scale2_, Computed)
//     {
//         const int m = c.size(), n = c.count(6), lda = c.leading(m);
//         double* const a = c.matrix(m, n, lda);
//         blac_scale2_(&m, &n, a, &lda, c.vector(m));
//     }
//
// Only one thing is drawn in an expression: compilers evaluate arguments and operands in different orders.
#pragma once

#include "TOVBlaModule.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace digest {

/// Where results are computed, any NaN stands for any other; where they are copied, every bit counts.
enum Results { Computed, Copied };

/// One call of a kernel: its arguments, and afterwards the hash of all memory around and in its arrays.
class Case
{
public:
    /// Case `number` of a kernel. `variation` 0 aligns every array to 64 bytes, the others move each array by
    /// its own number of bytes; nothing else depends on it.
    Case(std::uint64_t kernel, int number, int variation);

    std::uint64_t bits();                  ///< 64 random bits
    int below(int n);                      ///< 0..n-1
    bool odds(int n) { return !below(n); } ///< true once in n
    int size();                            ///< a length: the small ones one after the other, then up to 100
    int count(int n) { return below(n + 1); }
    int leading(int rows) { return (rows > 0 ? rows : 1) + below(4); }
    double number(); ///< of either sign over a few decades; in special cases NaN, infinity, ±0, denormal ...

    // Arrays. What does not belong to them holds a pattern that must not change.
    double* vector(std::int64_t n);              ///< n numbers
    double* room(std::int64_t n);                ///< n doubles for results
    int* integers(const std::vector<int>& list); ///< these integers
    double* matrix(std::int64_t m, std::int64_t n, std::int64_t ld);
    double* matrix_room(std::int64_t m, std::int64_t n, std::int64_t ld); ///< for results
    double* ordinary(std::int64_t n);                                     ///< n numbers, never special ones
    /// An n×n front with a heavy diagonal; in special cases some diagonal entries are tiny, zero or not
    /// finite.
    double* front(std::int64_t n, std::int64_t ld);
    double* factor(std::int64_t n, std::int64_t ld); ///< a lower factor with diagonal entries in 1..2

    static void set(double* x, std::int64_t i, double value); ///< x[i] := value, wherever x lies

    void result(double x) { scalars_.push_back(x); } ///< a result that is not in an array

    std::uint64_t hash(Results results) const;
    int control() const { return control_; } ///< rounding mode and treatment of denormals of this case

private:
    char* array(std::int64_t bytes);

    std::uint64_t state_;
    std::uint64_t moves_; // of the arrays: a generator of its own, so that the data stays the same
    int number_, control_;
    bool special_, moved_;
    struct Array
    {
        std::vector<char> memory;
        std::size_t begin, size;
        bool of_doubles = true;
    };
    std::vector<Array> arrays_;
    std::vector<double> scalars_;
};

struct Kernel
{
    const char* name;
    Results results;
    void (*call)(Case&);
};

struct Registration
{
    explicit Registration(const Kernel& kernel);
};

} // namespace digest

#define DIGEST(kernel, results)                                                                              \
    static void digest_of_##kernel(digest::Case& c);                                                         \
    static const digest::Registration registration_of_##kernel(                                              \
        {#kernel, digest::results, digest_of_##kernel});                                                     \
    static void digest_of_##kernel(digest::Case& c)
