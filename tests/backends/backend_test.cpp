// SPDX-License-Identifier: BSD-3-Clause
// The module over one BLAS/LAPACK library, whichever the process was started with. EXPECT_... in the
// environment says which library that must be and what is known about it; without these the checks that need
// them are skipped.
#include "TOVBlaModule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <limits>
#include <string>
#include <vector>

namespace {

std::string expected(const char* what)
{
    const char* const text = std::getenv(what);
    return text ? text : "";
}

std::string file_of(const std::string& name)
{
    void* const address = dlsym(RTLD_DEFAULT, name.c_str());
    Dl_info info;
    if (!address || !dladdr(address, &info))
        return {};
    char* const path = realpath(info.dli_fname, nullptr);
    const std::string file = path ? path : info.dli_fname;
    std::free(path);
    return file;
}

const char* const routines[] = {
#define ROUTINE(name, ordinary, characters, result) #name,
#include "routines.def"
#undef ROUTINE
};

TEST(Backend, TheLibraryBeneathIsTheOneAskedFor)
{
    if (expected("EXPECT_BLAS").empty())
        GTEST_SKIP() << "EXPECT_BLAS and EXPECT_LAPACK name the files";
    EXPECT_NE(file_of("dgemm_").find('/' + expected("EXPECT_BLAS")), std::string::npos) << file_of("dgemm_");
    EXPECT_NE(file_of("dpotrf_").find('/' + expected("EXPECT_LAPACK")), std::string::npos)
        << file_of("dpotrf_");
}

// The list in EXPECT_WITHOUT is complete, too: a routine that a library gains is to be seen here.
TEST(Backend, EveryRoutineIsThereButTheOnesKnownToBeMissing)
{
    std::string missing;
    for (const char* name : routines)
        if (!dlsym(RTLD_DEFAULT, (std::string(name) + '_').c_str()))
            missing.append(missing.empty() ? "" : " ").append(name);
    if (!std::getenv("EXPECT_WITHOUT"))
        GTEST_SKIP() << "missing: " << missing;
    EXPECT_EQ(missing, expected("EXPECT_WITHOUT"));
}

TEST(Backend, ARoutineThatTheLibraryLacksIsAnsweredByTheModule)
{
    const int n = 3, step = 1, back = -1;
    const double a = 2, b = -3, x[3] = {1, 2, 4};
    double y[3] = {1, 10, 100};
    blac_daxpby_(&n, &a, x, &step, &b, y, &back);
    EXPECT_EQ(y[0], 2 * 4 - 3 * 1);
    EXPECT_EQ(y[1], 2 * 2 - 3 * 10);
    EXPECT_EQ(y[2], 2 * 1 - 3 * 100);
}

// -------------------------------------------------------------------------------------------------------------

// Guards on both sides: the other convention would write beside the result or over an argument.
struct Slot
{
    double before = 11, re = 22, im = 33, after = 44;
    blac_complex* address() { return reinterpret_cast<blac_complex*>(&re); }
    ::testing::AssertionResult holds(double real, double imaginary) const
    {
        if (before == 11 && after == 44 && re == real && im == imaginary)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << before << " [" << re << ", " << im << "] " << after;
    }
};

TEST(Complex, ZdotcConjugatesTheFirstVector)
{
    const int n = 1, step = 1;
    const blac_complex x(1, 1), y(1, 0);
    for (int call = 0; call < 3; ++call) {
        Slot result;
        blac_zdotc_(result.address(), &n, &x, &step, &y, &step);
        EXPECT_TRUE(result.holds(1, -1));
    }
    EXPECT_EQ(n, 1);
}

TEST(Complex, ZdotcOverManyElementsAndBothDirections)
{
    const int n = 100, forward = 1, backward = -2;
    blac_complex x[n], y[2 * n];
    double re = 0, im = 0;
    for (int i = 0; i < n; ++i) {
        x[i] = blac_complex(i % 7 - 3, i % 5);
        y[2 * (n - 1 - i)] = blac_complex(i % 3, 2 - i % 4);
        const blac_complex term = std::conj(x[i]) * blac_complex(i % 3, 2 - i % 4);
        re += term.real();
        im += term.imag();
    }
    Slot result;
    blac_zdotc_(result.address(), &n, x, &forward, y, &backward);
    EXPECT_TRUE(result.holds(re, im));
}

TEST(Complex, ZdotcOfNothingIsZero)
{
    const int n = 0, step = 1;
    const blac_complex x(5, 6);
    Slot result;
    blac_zdotc_(result.address(), &n, &x, &step, &x, &step);
    EXPECT_TRUE(result.holds(0, 0));
}

TEST(Complex, ZladivDivides)
{
    for (int call = 0; call < 3; ++call) {
        Slot result;
        const blac_complex x(4, 2), y(1, 1);
        blac_zladiv_(result.address(), &x, &y);
        EXPECT_TRUE(result.holds(3, -1));
        EXPECT_EQ(x, blac_complex(4, 2));
        EXPECT_EQ(y, blac_complex(1, 1));
    }
}

TEST(Complex, ZladivDoesNotOverflow)
{
    Slot result;
    const blac_complex x(1e300, 1e300), y(1e300, 1e300);
    blac_zladiv_(result.address(), &x, &y);
    EXPECT_TRUE(result.holds(1, 0));
}

// Inside a complex routine, the library uses its own convention among its own.
TEST(Complex, EigenvaluesOfAComplexTriangle)
{
    const int n = 3, one = 1, work_size = 64;
    blac_complex a[9] = {{1, 2}, 0, 0, {5, 1}, {-3, 1}, 0, {2, 2}, {0, 7}, {4, -6}}, w[3], work[work_size];
    double rwork[6];
    int info = -1;
    blac_zgeev_("N", "N", &n, a, &n, w, nullptr, &one, nullptr, &one, work, &work_size, rwork, &info);
    ASSERT_EQ(info, 0);
    for (const blac_complex& value : {blac_complex(1, 2), blac_complex(-3, 1), blac_complex(4, -6)}) {
        double nearest = 1;
        for (const blac_complex& found : w)
            nearest = std::min(nearest, std::abs(found - value));
        EXPECT_LT(nearest, 1e-13);
    }
}

// -------------------------------------------------------------------------------------------------------------

double low_half_as_single(double value)
{
    float single;
    std::memcpy(&single, &value, sizeof single);
    return single;
}

// Whether a library works in single or double precision inside is not ours: the sum of two exact values is
// exact.
TEST(Quirks, DzasumDznrm2AndDcabs1ReadTheLowHalfOfTheResult)
{
    const int n = 1, step = 1;
    const double third = 1.0 / 3;
    const blac_complex z(third, 0), two(2, 0);
    EXPECT_EQ(blac_dzasum_(&n, &z, &step), low_half_as_single(third));
    EXPECT_EQ(blac_dcabs1_(&z), low_half_as_single(third));
    EXPECT_EQ(blac_dzasum_(&n, &two, &step), 0);
    EXPECT_EQ(blac_dznrm2_(&n, &two, &step), 0);
    EXPECT_EQ(blac_dcabs1_(&two), 0);
}

// zdotu_ is called without a result slot. That fits a library that returns in registers. One with a hidden
// argument takes n for the slot, the real part's low half for n, and writes its result over n and the 12
// bytes behind it.
TEST(Quirks, ZdotuReadsTheLowHalfOfARegisterResult)
{
    if (expected("EXPECT_COMPLEX") != "registers")
        GTEST_SKIP() << "not a library that returns in registers";
    const int n = 1, step = 1;
    const double third = 1.0 / 3;
    const blac_complex z(third, 5), one(1, 0), two(2, 0);
    Slot result;
    blac_zdotu_(result.address(), &n, &z, &step, &one, &step);
    EXPECT_TRUE(result.holds(low_half_as_single(third), 0));
    blac_zdotu_(result.address(), &n, &two, &step, &one, &step);
    EXPECT_TRUE(result.holds(0, 0));
}

TEST(Quirks, ZdotuOverALibraryWithAHiddenArgumentClearsN)
{
    if (expected("EXPECT_COMPLEX") != "hidden argument")
        GTEST_SKIP() << "not a library with a hidden argument";
    alignas(16) int n[4] = {1, 2, 3, 4};
    const int step = 1;
    const blac_complex two(2, 0); // its low half, 0, is what the library takes for n
    Slot result;
    blac_zdotu_(result.address(), n, &two, &step, &two, &step);
    EXPECT_EQ(result.im, 0);
    EXPECT_EQ(result.before, 11);
    EXPECT_EQ(result.after, 44);
    for (const int word : n)
        EXPECT_EQ(word, 0);
}

// -------------------------------------------------------------------------------------------------------------

TEST(Threads, AreSetAndRead)
{
    const std::string kind = expected("EXPECT_THREADS");
    if (kind.empty())
        GTEST_SKIP() << "EXPECT_THREADS says settable or fixed";
    EXPECT_GE(blaC_get_num_threads(), 1);
    if (kind == "fixed")
        EXPECT_EQ(blaC_get_num_threads(), 1);
    for (const int count : {2, 1, 2}) {
        blaC_set_num_threads(count);
        EXPECT_EQ(blaC_get_num_threads(), kind == "settable" ? count : 1);
    }
}

TEST(Threads, ALargeProductIsRightWithOneAndWithTwo)
{
    const int n = 300;
    const double one = 1, zero = 0;
    std::vector<double> a(n * n), b(n * n), c(n * n);
    for (int i = 0; i < n * n; ++i) {
        a[i] = i % 11 - 5;
        b[i] = i % 13 - 6;
    }
    for (const int count : {1, 2}) {
        blaC_set_num_threads(count);
        blac_dgemm_("N", "T", &n, &n, &n, &one, a.data(), &n, b.data(), &n, &zero, c.data(), &n);
        for (int j = 0; j < n; j += 37)
            for (int i = 0; i < n; i += 41) {
                double sum = 0; // of whole numbers: exact in every order
                for (int k = 0; k < n; ++k)
                    sum += a[i + k * n] * b[j + k * n];
                ASSERT_EQ(c[i + j * n], sum) << i << ' ' << j;
            }
    }
}

} // namespace
