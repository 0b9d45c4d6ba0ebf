// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

using namespace support;

namespace {

// Runs a kernel and its reference loop on equal copies of an m×n matrix, over sizes, leading dimensions,
// alignments and kinds of data; Kernel(a, lda, d) and Reference(a, lda, d) work in place.
template <class Kernel, class Reference>
void compare_in_place(int m, int n, int diagonal, Kernel kernel, Reference loop)
{
    sweep_layouts(m, [&](int ld, std::size_t gap, Data data) {
        auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
        Guarded<double> expected(extent(m, n, ld), gap), actual(extent(m, n, ld), gap), d(diagonal, gap);
        fill(d, random, data);
        fill_matrix(expected, m, n, ld, random, data);
        for (std::int64_t i = 0; i < expected.size(); ++i)
            actual.set(i, expected.get(i));
        loop(expected, ld, d);
        kernel(actual, ld, d);
        ASSERT_TRUE(same_memory(expected, actual))
            << "m " << m << ", n " << n << ", ld " << ld << ", gap " << gap;
    });
}

TEST(Scale, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int m : Sizes)
            for (int n : {1, 2, 5})
                sweep_layouts(m, [&](int ld, std::size_t gap, Data data) {
                    auto random = generator(static_cast<std::uint64_t>(m * 1000 + n));
                    const int ldb = ld + 2;
                    Guarded<double> d(n, gap), a(extent(m, n, ld), gap), expected(extent(m, n, ldb), gap),
                        actual(extent(m, n, ldb), gap);
                    fill(d, random, data);
                    fill_matrix(a, m, n, ld, random, data);
                    reference::scale(m, n, d, a, ld, expected, ldb);
                    blac_scale_(&m, &n, d, a, &ld, actual, &ldb);
                    ASSERT_TRUE(same_memory(expected, actual)) << "m " << m << ", n " << n << ", ld " << ld;
                });
    });
}

TEST(Scale, InPlaceGivesWhatScale2tGivesWithTheCountsExchanged)
{
    on_every_tier([] {
        for (int m : Sizes) {
            const int n = 6, ld = m + 1;
            auto random = generator(static_cast<std::uint64_t>(m));
            Guarded<double> d(n), a(extent(m, n, ld)), b(extent(m, n, ld));
            fill(d, random, Data::Special);
            fill_matrix(a, m, n, ld, random, Data::Special);
            for (std::int64_t i = 0; i < a.size(); ++i)
                b.set(i, a.get(i));
            blac_scale_(&m, &n, d, a, &ld, a, &ld);
            blac_scale2t_(&n, &m, b, &ld, d);
            ASSERT_TRUE(same_memory(b, a));
        }
    });
}

TEST(Scale, ReadsAndWritesNothingForEmptyCounts)
{
    on_every_tier([] {
        for (auto [m, n] : {std::pair{0, 3}, {3, 0}, {-1, 3}, {3, -2}, {0, 0}}) {
            const int ld = 4;
            double* nowhere = nullptr; // reading or writing anything would fault
            blac_scale_(&m, &n, nowhere, nowhere, &ld, nowhere, &ld);
            blac_scale2_(&m, &n, nowhere, &ld, nowhere);
            blac_scale2t_(&m, &n, nowhere, &ld, nowhere);
        }
        for (int n : {0, -1}) {
            const int ld = 4;
            blac_scale_low_(&n, nullptr, &ld, nullptr);
            blac_scale_low2_(&n, nullptr, &ld);
        }
    });
}

TEST(Scale2, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int m : Sizes)
            for (int n : {1, 2, 5})
                compare_in_place(
                    m, n, m, [&](double* a, int ld, const double* d) { blac_scale2_(&m, &n, a, &ld, d); },
                    [&](double* a, int ld, const double* d) { reference::scale2(m, n, a, ld, d); });
    });
}

TEST(Scale2t, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int rows : Sizes)
            for (int columns : {1, 2, 5})
                compare_in_place(
                    rows, columns, columns,
                    [&](double* a, int ld, const double* d) { blac_scale2t_(&columns, &rows, a, &ld, d); },
                    [&](double* a, int ld, const double* d) { reference::scale2t(columns, rows, a, ld, d); });
    });
}

TEST(ScaleLow, GivesTheBitsOfThePlainLoopAndNeverReadsTheLastDiagonalEntry)
{
    on_every_tier([] {
        for (int n : Sizes) // d has n-1 entries, a guard page behind them
            compare_in_place(
                n, n, n - 1, [&](double* a, int ld, const double* d) { blac_scale_low_(&n, a, &ld, d); },
                [&](double* a, int ld, const double* d) { reference::scale_low(n, a, ld, d); });
    });
}

TEST(ScaleLow, OfOrderOneChangesNothingAndReadsNothing)
{
    on_every_tier([] {
        const int n = 1, ld = 1;
        blac_scale_low_(&n, nullptr, &ld, nullptr);
    });
}

TEST(ScaleLow2, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        for (int n : Sizes)
            compare_in_place(
                n, n, 0, [&](double* a, int ld, const double*) { blac_scale_low2_(&n, a, &ld); },
                [&](double* a, int ld, const double*) { reference::scale_low2(n, a, ld); });
    });
}

TEST(ScaleLow2, OfOrderOneWritesNothing)
{
    on_every_tier([] {
        const int n = 1, ld = 1;
        Guarded<double> a(1);
        a.set(0, 4.0);
        mprotect(a.pages().begin(), a.pages().size(), PROT_READ);
        blac_scale_low2_(&n, a, &ld);
        EXPECT_EQ(a.get(0), 4.0);
    });
}

// Column (pivot, 3, -5, inf, NaN) of a 5×5 matrix, scaled by its pivot.
struct Scaled
{
    double below[4];
};
Scaled scale_below(double pivot)
{
    const double inf = INFINITY;
    double a[25] = {pivot, 3.0, -5.0, inf, NAN};
    const int n = 5, ld = 5;
    blac_scale_low2_(&n, a, &ld);
    EXPECT_EQ(bits(a[0]), bits(pivot)) << "the diagonal stays as it was";
    return {{a[1], a[2], a[3], a[4]}};
}

TEST(ScaleLow2, ATinyOrNaNPivotClearsItsColumnToSignedZeros)
{
    on_every_tier([] {
        for (double pivot : {1e-36, -1e-36, 0.0, -0.0, double(NAN), 5e-37, -1e-300}) {
            const Scaled s = scale_below(pivot);
            EXPECT_EQ(bits(s.below[0]), bits(0.0)) << pivot;
            EXPECT_EQ(bits(s.below[1]), bits(-0.0)) << pivot;
            EXPECT_TRUE(std::isnan(s.below[2]) && std::isnan(s.below[3])) << pivot;
        }
    });
}

TEST(ScaleLow2, APivotJustAboveTheThresholdIsInverted)
{
    on_every_tier([] {
        const Scaled s = scale_below(2e-36);
        EXPECT_EQ(bits(s.below[0]), bits(3.0 * (1.0 / 2e-36)));
        EXPECT_EQ(s.below[2], INFINITY);
        const double above = std::nextafter(1e-36, 1.0);
        EXPECT_EQ(bits(scale_below(above).below[0]), bits(3.0 * (1.0 / above)));
        EXPECT_EQ(bits(scale_below(-above).below[0]), bits(3.0 * (1.0 / -above)));
    });
}

TEST(ScaleLow2, AnInfinitePivotGivesSignedZeros)
{
    on_every_tier([] {
        EXPECT_EQ(bits(scale_below(INFINITY).below[1]), bits(-0.0));
        EXPECT_EQ(bits(scale_below(-INFINITY).below[1]), bits(0.0));
    });
}

TEST(ScaleLow2, MultipliesByTheReciprocalInsteadOfDividing)
{
    on_every_tier([] {
        const double pivot = 49.0;
        ASSERT_NE(bits(5.0 / pivot), bits(5.0 * (1.0 / pivot))) << "the pair must tell the two apart";
        EXPECT_EQ(bits(scale_below(pivot).below[1]), bits(-5.0 * (1.0 / pivot)));
    });
}

} // namespace
