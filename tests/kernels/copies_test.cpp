// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <cfenv>
#include <vector>

using namespace support;

// The entry points of C++ linkage, by their plain names.
extern "C" {
void plain_copyrect(int m, int n, double* b, int ldb, const double* a, int lda) __asm__("blaC_copyrect_intr");
void plain_zerotri(int n, int k0, int m, double* a, int lda) __asm__("blaC_zerotriC");
}

namespace {

/// Sizes below, at and above the tiles and bands of the transposing kernels.
constexpr int TileSizes[] = {1, 2, 3, 4, 5, 8, 11, 16, 17, 19, 32, 33, 37, 70};

void copy_elements(const Guarded<double>& from, const Guarded<double>& to)
{
    for (std::int64_t i = 0; i < from.size(); ++i)
        to.set(i, from.get(i));
}

TEST(CopyDiag, GivesTheBitsOfThePlainLoopAndLeavesTheMatrixAlone)
{
    on_every_tier([] {
        for (int n : Sizes)
            sweep_layouts(n, [&](int lda, std::size_t gap, Data data) {
                auto random = generator(static_cast<std::uint64_t>(n));
                Guarded<double> a(extent(n, n, lda), gap), before(extent(n, n, lda), gap), d(n, gap),
                    dinv(n, gap), expected_d(n, gap), expected_dinv(n, gap);
                for (std::int64_t i = 0; i < n; ++i)
                    a.set(i * (lda + 1), draw(random, data));
                copy_elements(a, before);
                reference::copydiag(n, a, lda, expected_d, expected_dinv);
                blac_copydiag_(&n, a, &lda, d, dinv);
                ASSERT_TRUE(same_memory(expected_d, d)) << "n " << n << ", lda " << lda;
                ASSERT_TRUE(same_memory(expected_dinv, dinv)) << "n " << n << ", lda " << lda;
                ASSERT_TRUE(same_memory(before, a, NaNs::Exact)) << "n " << n << ", lda " << lda;
            });
    });
}

TEST(CopyDiag, ReplacesTinyPivotsByTheFixedRule)
{
    on_every_tier([] {
        const double pivots[] = {4.0, 0.0, -1e-40, 1e-36, -2.0}, d_expected[] = {4.0, 1e36, 1e36, 1e36, -2.0},
                     dinv_expected[] = {0.25, 1e-36, 1e-36, 1e-36, -0.5};
        const int n = 5, lda = 6;
        std::vector<double> a(30, 77.0);
        double d[5], dinv[5];
        for (int i = 0; i < n; ++i)
            a[static_cast<std::size_t>(i * (lda + 1))] = pivots[i];
        blac_copydiag_(&n, a.data(), &lda, d, dinv);
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(bits(d[i]), bits(d_expected[i])) << i;
            EXPECT_EQ(bits(dinv[i]), bits(dinv_expected[i])) << i;
        }
    });
}

/// (d, dinv) of a pivot, the same at every place of a vector.
std::pair<double, double> copied_pivot(double pivot)
{
    const int n = 11, lda = -1 + 1; // steps by one: a is read as a plain vector
    std::vector<double> a(11, pivot), d(11), dinv(11);
    blac_copydiag_(&n, a.data(), &lda, d.data(), dinv.data());
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_EQ(bits(d[i]), bits(d[0]));
        EXPECT_EQ(bits(dinv[i]), bits(dinv[0]));
    }
    return {d[0], dinv[0]};
}

TEST(CopyDiag, ReplacesANaN)
{
    on_every_tier([] {
        for (double nan : {double(NAN), -double(NAN), std::bit_cast<double>(Canary)})
            EXPECT_EQ(copied_pivot(nan), std::pair(1e36, 1e-36));
    });
}

TEST(CopyDiag, TheThresholdItselfIsReplacedAndTheNextNumberIsNot)
{
    EXPECT_EQ(bits(1e-36), 0x38754484932d2e72u);
    EXPECT_EQ(bits(1e36), 0x476812f9cf7920e3u);
    on_every_tier([] {
        for (double pivot : {1e-36, -1e-36, std::nextafter(1e-36, 0.0), -0.0})
            EXPECT_EQ(copied_pivot(pivot), std::pair(1e36, 1e-36));
        for (double sign : {1.0, -1.0}) {
            const double pivot = sign * std::nextafter(1e-36, 1.0);
            EXPECT_EQ(copied_pivot(pivot), std::pair(pivot, 1.0 / pivot));
            EXPECT_EQ(copied_pivot(sign * INFINITY), std::pair(sign * INFINITY, sign * 0.0));
            EXPECT_EQ(bits(copied_pivot(sign * INFINITY).second), bits(sign * 0.0));
        }
    });
}

TEST(CopyDiag, TheReciprocalOfAReplacedPivotIsTheSameInEveryRoundingMode)
{
    on_every_tier([] {
        for (int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
            const int order[] = {3, 4, 5, 11}, step = 0;
            const double pivots[11] = {};
            double d[11], dinv[11];
            for (const int& n : order) {
                std::fesetround(mode);
                blac_copydiag_(&n, pivots, &step, d, dinv);
                std::fesetround(FE_TONEAREST);
                for (int i = 0; i < n; ++i) {
                    EXPECT_EQ(bits(d[i]), 0x476812f9cf7920e3u);
                    EXPECT_EQ(bits(dinv[i]), 0x38754484932d2e72u) << "rounding mode " << mode;
                }
            }
        }
    });
}

TEST(Copies, ReadAndWriteNothingForEmptyCounts)
{
    on_every_tier([] {
        double* const nowhere = nullptr; // reading or writing anything would fault
        const int ld = 40, one = 1;
        for (int n : {0, -1}) {
            blac_copydiag_(&n, nowhere, &ld, nowhere, nowhere);
            blac_dset_(&n, nowhere, nowhere, &one);
            blac_dset_(&n, nowhere, nowhere, &ld);
            blac_zerotri_(&n, nowhere, &ld);
            blaC_zerotriC(5, 2, n, nowhere, ld);
            blaC_copyrect_intr(3, n, nowhere, ld, nowhere, ld);
            blaC_copyrect_intr(-3, n, nowhere, ld, nowhere, ld);
        }
        for (auto [m, n] : {std::pair{0, 3}, {3, 0}, {-1, 3}, {3, -2}, {0, 0}, {-4, -4}, {40, 0}, {0, 40}}) {
            blac_datcpy_(&m, &n, nowhere, &ld, nowhere, &ld);
            blac_dlacpysc_(&m, &n, nowhere, &ld, nowhere, nowhere, &ld);
        }
    });
}

TEST(Datcpy, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int m : TileSizes)
            for (int n : TileSizes)
                sweep_layouts(m, [&](int ldb, std::size_t gap, Data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int lda = n + (ldb - m);
                    Guarded<double> a(extent(n, m, lda), gap), expected(extent(m, n, ldb), gap),
                        actual(extent(m, n, ldb), gap);
                    fill_matrix(a, n, m, lda, random, Data::Bits);
                    reference::datcpy(m, n, a, lda, expected, ldb);
                    blac_datcpy_(&m, &n, a, &lda, actual, &ldb);
                    ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact))
                        << "m " << m << ", n " << n << ", ldb " << ldb << ", gap " << gap;
                });
    });
}

TEST(Datcpy, Of2By3LeavesTheRowsBetweenUntouched)
{
    on_every_tier([] {
        const int m = 2, n = 3, lda = 4, ldb = 5;
        const double a[] = {11, 21, 31, -1, 12, 22, 32, -1}; // 3×2
        double b[15];
        for (double& x : b)
            x = 7.0;
        blac_datcpy_(&m, &n, a, &lda, b, &ldb);
        const double expected[] = {11, 12, 7, 7, 7, 21, 22, 7, 7, 7, 31, 32, 7, 7, 7};
        for (int i = 0; i < 15; ++i)
            EXPECT_EQ(b[i], expected[i]) << i;
    });
}

TEST(Dlacpysc, GivesTheBitsOfThePlainLoopAlsoInPlace)
{
    on_every_tier([] {
        for (int m : Sizes)
            for (int n : {1, 2, 5})
                sweep_layouts(m, [&](int lda, std::size_t gap, Data data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int ldb = lda + 2;
                    Guarded<double> s(n, gap), a(extent(m, n, lda), gap), expected(extent(m, n, ldb), gap),
                        actual(extent(m, n, ldb), gap), in_place(extent(m, n, ldb), gap);
                    fill(s, random, data);
                    fill_matrix(a, m, n, lda, random, data);
                    for (std::int64_t j = 0; j < n; ++j)
                        for (std::int64_t i = 0; i < m; ++i)
                            in_place.set(i + j * ldb, a.get(i + j * lda));
                    reference::dlacpysc(m, n, a, lda, s, expected, ldb);
                    blac_dlacpysc_(&m, &n, a, &lda, s, actual, &ldb);
                    ASSERT_TRUE(same_memory(expected, actual)) << "m " << m << ", n " << n << ", lda " << lda;
                    blac_dlacpysc_(&m, &n, in_place, &ldb, s, in_place, &ldb);
                    ASSERT_TRUE(same_memory(expected, in_place)) << "in place, m " << m << ", n " << n;
                });
    });
}

TEST(Dlacpysc, AZeroFactorFormsThePlainProduct)
{
    on_every_tier([] {
        const int m = 4, n = 1, ld = 4;
        const double a[] = {3.0, -3.0, INFINITY, NAN}, s = 0.0;
        double b[4];
        blac_dlacpysc_(&m, &n, a, &ld, &s, b, &ld);
        EXPECT_EQ(bits(b[0]), bits(0.0));
        EXPECT_EQ(bits(b[1]), bits(-0.0));
        EXPECT_TRUE(std::isnan(b[2]));
        EXPECT_TRUE(std::isnan(b[3]));
    });
}

TEST(Copyrect, GivesTheBitsOfThePlainLoopUnderBothItsNames)
{
    for (auto kernel : {&blaC_copyrect_intr, &plain_copyrect})
        for (int m : Sizes)
            for (int n : {1, 2, 5})
                sweep_layouts(m, [&](int lda, std::size_t gap, Data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int ldb = m + 5 - (lda - m);
                    Guarded<double> a(extent(m, n, lda), gap), expected(extent(m, n, ldb), gap),
                        actual(extent(m, n, ldb), gap);
                    fill_matrix(a, m, n, lda, random, Data::Bits);
                    reference::copyrect(m, n, expected, ldb, a, lda);
                    kernel(m, n, actual, ldb, a, lda);
                    ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact)) << "m " << m << ", n " << n;
                });
}

TEST(Copyrect, OfNoRowsWritesNothing)
{
    Guarded<double> a(1), b(1);
    blaC_copyrect_intr(0, 3, b, 1, a, 1);
    EXPECT_EQ(bits(b.get(0)), Canary);
}

TEST(Dset, GivesTheBitsOfThePlainLoopForAllIncrements)
{
    for (int n : Sizes)
        for (int incx : {1, 2, 5, -1, -3, 0})
            for (std::size_t gap : Gaps) {
                auto random = generator(static_cast<std::uint64_t>(n));
                const std::int64_t size = std::int64_t{n - 1} * std::abs(incx) + 1,
                                   first = incx < 0 ? size - 1 : 0;
                Guarded<double> a(1, gap), expected(size, gap), actual(size, gap);
                a.set(0, any_bits(random));
                const auto start = [&](const Guarded<double>& x) {
                    return reinterpret_cast<double*>(reinterpret_cast<char*>(x.data()) + first * 8);
                };
                reference::dset(n, a, start(expected), incx);
                blac_dset_(&n, a, start(actual), &incx);
                ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact))
                    << "n " << n << ", incx " << incx << ", gap " << gap;
            }
}

TEST(Dset, KeepsASignallingNaN)
{
    const int n = 9, inc = 1;
    const double a = std::bit_cast<double>(std::uint64_t{0xfff0000000000001});
    double x[9];
    blac_dset_(&n, &a, x, &inc);
    for (double value : x)
        EXPECT_EQ(bits(value), bits(a));
}

// The canary stands everywhere, so that it is seen to stay above the diagonal and around the matrix.
TEST(Zerotri, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int n : Sizes)
            sweep_layouts(n, [&](int lda, std::size_t gap, Data) {
                Guarded<double> expected(extent(n, n, lda), gap), actual(extent(n, n, lda), gap);
                reference::zerotri(n, 0, n, expected, lda);
                blac_zerotri_(&n, actual, &lda);
                ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact)) << "n " << n << ", lda " << lda;
            });
    });
}

TEST(Zerotri, OfOrderThreeClearsSixElements)
{
    on_every_tier([] {
        const int n = 3, lda = 4;
        double a[20];
        for (int i = 0; i < 20; ++i)
            a[i] = i + 1.0;
        blac_zerotri_(&n, a, &lda);
        for (int j = 0; j < 5; ++j)
            for (int i = 0; i < lda; ++i)
                EXPECT_EQ(bits(a[i + j * lda]), bits(j < n && j <= i && i < n ? 0.0 : i + j * lda + 1.0))
                    << i << " " << j;
    });
}

TEST(ZerotriC, GivesTheBitsOfThePlainLoopUnderBothItsNames)
{
    for (auto kernel : {&blaC_zerotriC, &plain_zerotri})
        for (int n : Sizes)
            for (int k0 : {0, 1, n / 2, n - 1})
                for (int m : {1, (n - k0) / 2, n - k0}) {
                    if (k0 + m > n)
                        continue;
                    const int lda = n + 2;
                    Guarded<double> expected(extent(n, n, lda)), actual(extent(n, n, lda));
                    reference::zerotri(n, k0, m, expected, lda);
                    kernel(n, k0, m, actual, lda);
                    ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact))
                        << "n " << n << ", k0 " << k0 << ", m " << m;
                }
}

TEST(ZerotriC, OfTwoColumnsFromTheThirdClearsTheirLowerParts)
{
    const int n = 5, lda = 6;
    double a[30];
    for (double& x : a)
        x = 1.0;
    blaC_zerotriC(n, 2, 2, a, lda);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < lda; ++i) {
            const bool cleared = (j == 2 && i >= 2 && i < 5) || (j == 3 && i >= 3 && i < 5);
            EXPECT_EQ(bits(a[i + j * lda]), bits(cleared ? 0.0 : 1.0)) << i << " " << j;
        }
}

void expect_reflection_of_plain_loop(char uplo, int n)
{
    sweep_layouts(n, [&](int lda, std::size_t gap, Data) {
        auto random = generator(static_cast<std::uint64_t>(n));
        Guarded<double> expected(extent(n, n, lda), gap), actual(extent(n, n, lda), gap);
        fill_matrix(expected, n, n, lda, random, Data::Bits);
        copy_elements(expected, actual);
        reference::reflect(uplo, n, expected, lda);
        blac_reflect_(&uplo, &n, actual, &lda);
        ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact))
            << uplo << ", n " << n << ", lda " << lda << ", gap " << gap;
    });
}

TEST(Reflect, GivesTheBitsOfThePlainLoopAndKeepsDiagonalAndSource)
{
    on_every_tier([] {
        for (char uplo : {'L', 'l', 'U', 'u'})
            for (int n : Sizes)
                expect_reflection_of_plain_loop(uplo, n);
    });
}

TEST(Reflect, GivesTheBitsOfThePlainLoopWhereItsBandsStartWithACacheLine)
{
    on_every_tier([] {
        for (char uplo : {'L', 'U'})
            for (int n : {150, 171})
                expect_reflection_of_plain_loop(uplo, n);
    });
}

/// Calls blac_reflect_ on a matrix that cannot be written.
void reflect_read_only(char uplo, int n)
{
    const int lda = 5;
    Guarded<double> a(lda * 5);
    mprotect(a.pages().begin(), a.pages().size(), PROT_READ);
    blac_reflect_(&uplo, &n, a, &lda);
}

TEST(Reflect, OfOrderOneOrBelowWritesNothing)
{
    on_every_tier([] {
        for (char uplo : {'L', 'l', 'U', 'u'})
            for (int n : {1, 0, -1})
                reflect_read_only(uplo, n);
    });
}

// The diagonal lies on a page that cannot be written, the other entry of its column on the page before or
// behind.
TEST(Reflect, NeverWritesTheDiagonal)
{
    on_every_tier([] {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::int64_t entries = static_cast<std::int64_t>(page / 8);
        const int n = 2, lda = static_cast<int>(3 * entries);
        for (char uplo : {'L', 'U'}) {
            const Pages pages(8 * page);
            double* const memory = reinterpret_cast<double*>(pages.begin());
            // L: a(1,2) ends page 3, a(2,2) begins page 4; U: a(1,1) ends page 0, a(2,1) begins page 1.
            double* const a = memory + (uplo == 'L' ? 4 * entries - 1 - lda : entries - 1);
            a[1] = 5.0;
            a[lda] = 6.0;
            mprotect(pages.begin() + (uplo == 'L' ? 4 : 0) * page, page, PROT_READ);
            blac_reflect_(&uplo, &n, a, &lda);
            EXPECT_EQ(a[1], a[lda]);
            EXPECT_EQ(a[1], uplo == 'L' ? 5.0 : 6.0);
        }
    });
}

TEST(Reflect, WithAnotherUploWritesNothing)
{
    on_every_tier([] {
        for (char uplo : {'N', 'n', 'A', ' '})
            reflect_read_only(uplo, 5);
    });
}

} // namespace
