// SPDX-License-Identifier: BSD-3-Clause
// What the facade does to the real library's results, and what it must leave alone.
#include "TOVBlaModule.h"
#include "bits.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::bits;

std::string reported_name;
int reported_argument;

} // namespace

// In front of the library's own error handler.
extern "C" void xerbla_(const char* name, const int* info, std::size_t length)
{
    reported_name.assign(name, length);
    reported_argument = *info;
}

extern "C" double dlamch_(const char* cmach, std::size_t);
extern "C" int ilaenv_(const int* ispec, const char* name, const char* opts, const int* n1, const int* n2,
                       const int* n3, const int* n4, std::size_t, std::size_t);
extern "C" void zdotc_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                       const blac_complex* zy, const int* incy);
// As the library defines them: the facade takes their results as single precision.
extern "C" double dcabs1_(const blac_complex* z);
extern "C" double dzasum_(const int* n, const blac_complex* zx, const int* incx);
extern "C" double dznrm2_(const int* n, const blac_complex* x, const int* incx);

namespace {

double low_half_as_single(double x)
{
    return std::bit_cast<float>(static_cast<std::uint32_t>(bits(x)));
}

TEST(Edges, IdamaxOfNothingReturnsWhatTheLibraryReturnsZero)
{
    const int n = 0, step = 1;
    const double x = 1;
    const blac_complex z = 1;
    EXPECT_EQ(blac_idamax_(&n, &x, &step), 0);
    EXPECT_EQ(blac_izamax_(&n, &z, &step), 0);
}

TEST(Edges, ZdotcOf1PlusIAnd1Is1MinusI)
{
    const int n = 1, step = 1;
    const blac_complex x(1, 1), y(1, 0);
    blac_complex result(99, 99);
    blac_zdotc_(&result, &n, &x, &step, &y, &step);
    EXPECT_EQ(result, blac_complex(1, -1));
}

TEST(Edges, ZdotcMayBeCalledFirstFromSeveralThreads)
{
    const int n = 2, step = 1;
    const blac_complex x[2] = {{1, 2}, {3, 4}}, y[2] = {{5, 6}, {7, 8}};
    std::vector<blac_complex> results(8);
    std::vector<std::thread> threads;
    for (blac_complex& result : results)
        threads.emplace_back([&] { blac_zdotc_(&result, &n, x, &step, y, &step); });
    for (std::thread& thread : threads)
        thread.join();
    for (const blac_complex& result : results)
        EXPECT_EQ(result, blac_complex(70, -8));
}

TEST(Edges, ZladivDividesWithoutNeedlessOverflow)
{
    const blac_complex x(-5, 10), y(1, 2), big(0x1p1023, 0x1p1023);
    blac_complex result(99, 99);
    blac_zladiv_(&result, &x, &y);
    EXPECT_EQ(result, blac_complex(3, 4));
    blac_zladiv_(&result, &big, &big);
    EXPECT_EQ(result, blac_complex(1, 0));
}

TEST(Edges, SinglePrecisionReadingsAreZeroWhereTheLow32BitsOfTheResultAre)
{
    const int n = 1, step = 1;
    for (const double x : {2.0, 0.5, 1.0, -3.0, 1e6}) {
        const blac_complex z(x, 0);
        EXPECT_EQ(bits(blac_dcabs1_(&z)), bits(0.0)) << x;
        EXPECT_EQ(bits(blac_dzasum_(&n, &z, &step)), bits(0.0)) << x;
        EXPECT_EQ(bits(blac_dznrm2_(&n, &z, &step)), bits(0.0)) << x;
    }
}

TEST(Edges, SinglePrecisionReadingsAreTheLow32BitsWidened)
{
    const int n = 2, step = 1;
    for (const double x : {0.1, 1.0 / 3, 3.14159, 1e-5, 7.0001}) {
        const blac_complex z[2] = {{x, -2 * x}, {x / 7, 1}};
        EXPECT_EQ(blac_dcabs1_(z), low_half_as_single(dcabs1_(z))) << x;
        EXPECT_EQ(blac_dzasum_(&n, z, &step), low_half_as_single(dzasum_(&n, z, &step))) << x;
        EXPECT_EQ(blac_dznrm2_(&n, z, &step), low_half_as_single(dznrm2_(&n, z, &step))) << x;
    }
}

// The call that the facade makes, with a result slot in front, leaves the slot alone in a library that
// returns complex values in registers.
bool returns_in_registers()
{
    const int n = 0, step = 1;
    const blac_complex x(1, 1);
    blac_complex slot(0, 1);
    zdotc_(&slot, &n, &x, &step, &x, &step);
    return slot != blac_complex(0, 0);
}

TEST(Edges, ZdotuIsTheLow32BitsOfTheRealPartWithImaginaryPart0)
{
    if (!returns_in_registers())
        GTEST_SKIP() << "undefined with a library that expects a hidden first argument";
    const int n = 1, step = 1;
    const blac_complex x(1.0 / 3, 5), y(1, 0), two(2, 0);
    blac_complex result(99, 99);
    blac_zdotu_(&result, &n, &x, &step, &y, &step);
    EXPECT_EQ(result, blac_complex(low_half_as_single(1.0 / 3), 0));
    blac_zdotu_(&result, &n, &two, &step, &y, &step);
    EXPECT_EQ(result, blac_complex(0, 0));
}

TEST(Edges, XerblaWithANameShorterThanSixCharactersReadsSix)
{
    const char memory[] = "DOTbehind";
    const int info = 2;
    blac_xerbla_(memory, &info);
    EXPECT_EQ(reported_name, "DOTbeh");
    EXPECT_EQ(reported_argument, 2);
}

TEST(Edges, ABadArgumentIsReportedByTheLibraryUnderItsOwnName)
{
    const int n = 2, bad = 1;
    const double one = 1;
    double a[4] = {1, 2, 3, 4}, b[4] = {};
    reported_name.clear();
    blac_dgemm_("X", "N", &n, &n, &n, &one, a, &n, a, &n, &one, b, &n);
    EXPECT_EQ(reported_name.substr(0, 5), "DGEMM");
    EXPECT_EQ(reported_argument, 1);
    reported_name.clear();
    int info = 0;
    blac_dpotrf_("L", &n, a, &bad, &info);
    EXPECT_EQ(reported_name, "DPOTRF");
    EXPECT_EQ(reported_argument, 4);
    EXPECT_EQ(info, -4);
}

TEST(Edges, OnlyTheFirstCharacterOfAnOptionCountsInEitherCase)
{
    const int n = 1;
    const double two = 2, zero = 0, a = 3;
    double c = 99;
    blac_dgemm_("transposed", "No", &n, &n, &n, &two, &a, &n, &a, &n, &zero, &c, &n);
    EXPECT_EQ(c, 18);
    EXPECT_NE(blac_lsame_("Upper", "u"), 0);
    EXPECT_EQ(blac_lsame_("U", "L"), 0);
}

TEST(Edges, DlamchReturnsWhatTheLibraryReturnsAndNotTheConstants)
{
    for (const char* option : {"E", "S", "B", "P", "N", "R", "M", "U", "L", "O", "e"})
        EXPECT_EQ(bits(blac_dlamch_(option)), bits(dlamch_(option, 1))) << option;
    const int sixth = 6;
    EXPECT_NE(blac_dlamch_("E"), blac_hdmcon_(&sixth));
}

TEST(Edges, IlaenvWithASixCharacterNameAnswersForThatRoutine)
{
    const int ispec = 1, n = 1000, none = -1;
    EXPECT_EQ(blac_ilaenv_(&ispec, "DGETRF", " ", &n, &n, &none, &none, 6, 1),
              ilaenv_(&ispec, "DGETRF", " ", &n, &n, &none, &none, 6, 1));
    // Cut to one character the name means nothing, and the answer is a block size of 1.
    EXPECT_EQ(blac_ilaenv_(&ispec, "DGETRF", " ", &n, &n, &none, &none, 1, 1), 1);
    EXPECT_GT(blac_ilaenv_(&ispec, "DGETRF", " ", &n, &n, &none, &none, 6, 1), 1);
}

TEST(Edges, HdmconHoldsExactlyTheseBits)
{
    const std::uint64_t table[16] = {
        0x7FFFFFFFFFFFFFFF, 0x7FD0000000000000, 0x7FEFFFFFFFFFFFFF, 0x0010000000000000,
        0x3CB0000000000000, 0x3CA0000000000001, 0x4000000000000000, 0x404A800000000000,
        0x4086280000000000, 0xC086200000000000, 0x41DFFFFFFFC00000, 0x400921FB54442D18,
        0x4005BF0A8B145769, 0x3FE2788CFC6FB619, 0x3F91DF46A2529D39, 0x404CA5DC1A63C1F8};
    for (int i = 1; i <= 16; ++i)
        EXPECT_EQ(bits(blac_hdmcon_(&i)), table[i - 1]) << i;
    const double values[16] = {0,
                               0x1p1022,
                               std::numeric_limits<double>::max(),
                               0x1p-1022,
                               0x1p-52,
                               1.1102230246251568e-16,
                               2,
                               53,
                               709,
                               -708,
                               2147483647,
                               3.141592653589793,
                               2.718281828459045,
                               0.5772156649015329,
                               0.017453292519943295,
                               57.29577951308232};
    for (int i = 2; i <= 16; ++i)
        EXPECT_EQ(blac_hdmcon_(&i), values[i - 1]) << i;
}

TEST(Edges, HdmconOutside1To16ReturnsTheNaN)
{
    for (const int i : {0, -1, 17, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(bits(blac_hdmcon_(&i)), 0x7FFFFFFFFFFFFFFFu) << i;
}

TEST(Edges, HdmconAt16IsDegreesPerRadianAndAt6OneAbove2ToTheMinus53)
{
    const int sixth = 6, last = 16;
    EXPECT_EQ(blac_hdmcon_(&last), 57.29577951308232);
    EXPECT_EQ(bits(blac_hdmcon_(&sixth)), 0x3CA0000000000001u);
}

TEST(Edges, TheThreadCountIsTheLibrarys)
{
    const int before = blaC_get_num_threads();
    EXPECT_GE(before, 1);
    blaC_set_num_threads(1);
    EXPECT_EQ(blaC_get_num_threads(), 1);
    blaC_set_num_threads(before);
    EXPECT_EQ(blaC_get_num_threads(), before);
}

} // namespace
