// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "tiers.h"

#include <bit>
#include <vector>

using namespace support;

namespace {

/// The four unblocked kernels and their plain loops.
struct Kernel
{
    bool symmetric, regularised;
};
constexpr Kernel Selim{true, false}, SelimReg{true, true}, Uelim{false, false}, UelimReg{false, true};

/// What a call reads besides the front.
struct PivotInputs
{
    double tolerance = 0.0; // plain
    Guarded<double> tol, reg;
    Guarded<int> negpiv;

    explicit PivotInputs(int n, std::size_t gap = 0) : tol(n, gap), reg(n, gap), negpiv(n, gap / 4 * 4) {}
};

/// What a call writes, the front included.
struct Factors
{
    Guarded<double> a, d, dinv, dcorr;

    Factors(int n, int lda, std::size_t gap = 0)
        : a(extent(n, n, lda), gap), d(n, gap), dinv(n, gap), dcorr(n, gap)
    {
    }
    void copy_front(const Factors& from) const
    {
        for (std::int64_t i = 0; i < a.size(); ++i)
            a.set(i, from.a.get(i));
    }
};

void run(Kernel kernel, int n, int lda, const Factors& f, const PivotInputs& in)
{
    if (!kernel.regularised)
        (kernel.symmetric ? blac_selim_small_ : blac_uelim_small_)(&n, f.a, &lda, f.d, f.dinv, &in.tolerance);
    else
        (kernel.symmetric ? blac_selim_small_reg_ : blac_uelim_small_reg_)(&n, f.a, &lda, f.d, f.dinv, in.tol,
                                                                           in.negpiv, in.reg, f.dcorr);
}

void run_reference(Kernel kernel, int n, int lda, const Factors& f, const PivotInputs& in)
{
    if (!kernel.regularised)
        (kernel.symmetric ? reference::selim_small : reference::uelim_small)(n, f.a, lda, f.d, f.dinv,
                                                                             in.tolerance);
    else
        (kernel.symmetric ? reference::selim_small_reg : reference::uelim_small_reg)(
            n, f.a, lda, f.d, f.dinv, in.tol, in.negpiv, in.reg, f.dcorr);
}

::testing::AssertionResult same_factors(const Factors& expected, const Factors& actual)
{
    if (auto r = same_memory(expected.a, actual.a); !r)
        return r << " of a";
    if (auto r = same_memory(expected.d, actual.d); !r)
        return r << " of d";
    if (auto r = same_memory(expected.dinv, actual.dinv); !r)
        return r << " of dinv";
    if (auto r = same_memory(expected.dcorr, actual.dcorr); !r)
        return r << " of dcorr";
    return ::testing::AssertionSuccess();
}

enum class Front {
    Dominant,   // heavy diagonal of either sign: every pivot accepted
    Wild,       // small pivots on the way, large growth
    Cancelling, // small integers: many pivots exactly 0, 1 or -1
    Special     // some NaN, infinity, zero, denormal
};
constexpr Front Fronts[] = {Front::Dominant, Front::Wild, Front::Cancelling, Front::Special};

/// Fills what the kernel reads; above the diagonal of a symmetric front the canary, a NaN, stays.
void fill_front(Kernel kernel, const Factors& f, int n, int lda, Front front, std::mt19937_64& random)
{
    auto number = [&](int i, int j) -> double {
        switch (front) {
        case Front::Wild:
            return ordinary(random);
        case Front::Cancelling:
            return static_cast<double>(random() % 5) - 2.0;
        case Front::Special:
            if (random() % (4 + static_cast<unsigned>(n)) == 0)
                return special(random);
            break;
        case Front::Dominant:
            break;
        }
        const double x = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
        return i == j ? x + (random() % 2 ? n : -n) : x;
    };
    for (int j = 0; j < n; ++j)
        for (int i = kernel.symmetric ? j : 0; i < n; ++i)
            f.a.set(i + std::int64_t{j} * lda, number(i, j));
}

void fill_inputs(const PivotInputs& in, double& tolerance, std::mt19937_64& random)
{
    const double tolerances[] = {1e-12, 1e-12, 0.5, 1.0, 0.0, -1.0, double(NAN), double(INFINITY), 1e-300};
    const double scales[] = {1.0, 2.0, 1e-3, 0.0, -0.0, -1.0, double(NAN), double(INFINITY)};
    tolerance = tolerances[random() % std::size(tolerances)];
    for (std::int64_t k = 0; k < in.tol.size(); ++k) {
        in.tol.set(k, random() % 3 ? 1e-8 : tolerances[random() % std::size(tolerances)]);
        in.reg.set(k, random() % 3 ? std::abs(ordinary(random)) : scales[random() % std::size(scales)]);
        in.negpiv.set(k, static_cast<int>(random() % 4) - 1);
    }
}

void compare(Kernel kernel, int n, int lda, std::size_t gap, Front front)
{
    auto random = generator(static_cast<std::uint64_t>(n));
    PivotInputs in(n, gap);
    fill_inputs(in, in.tolerance, random);
    Factors expected(n, lda, gap), actual(n, lda, gap);
    fill_front(kernel, expected, n, lda, front, random);
    actual.copy_front(expected);
    run_reference(kernel, n, lda, expected, in);
    run(kernel, n, lda, actual, in);
    ASSERT_TRUE(same_factors(expected, actual))
        << "n " << n << ", lda " << lda << ", gap " << gap << ", front " << static_cast<int>(front);
}

void compare_everywhere(Kernel kernel)
{
    constexpr std::size_t gaps[] = {0, 8, 24, 3};
    on_every_tier([&] {
        auto compare_sizes = [&](int from, int to, bool every_layout) {
            for (int n = from; n <= to; ++n) {
                const int tight = n, power = static_cast<int>(std::bit_ceil(static_cast<unsigned>(n)));
                const int ldas[] = {tight, n + 1, n + 3, power};
                for (std::size_t l = 0; l < std::size(ldas); ++l)
                    for (std::size_t g = 0; g < std::size(gaps); ++g)
                        for (Front front : Fronts)
                            if (every_layout || l == g) {
                                ASSERT_NO_FATAL_FAILURE(compare(kernel, n, ldas[l], gaps[g], front));
                            }
            }
        };
        ASSERT_NO_FATAL_FAILURE(compare_sizes(1, 17, true));
        ASSERT_NO_FATAL_FAILURE(compare_sizes(18, 72, false));
        for (int n : {100, 128, 129, 200})
            ASSERT_NO_FATAL_FAILURE(compare_sizes(n, n, false));
    });
}

/// Orders at which a walk in panels of pivots would begin a new one.
void compare_large(Kernel kernel)
{
    on_every_tier([&] {
        for (auto [n, lda, gap] : {std::tuple{256, 256, 8},
                                   {511, 511, 0},
                                   {512, 512, 8},
                                   {515, 517, 3},
                                   {521, 521, 8},
                                   {529, 544, 0}})
            ASSERT_NO_FATAL_FAILURE(compare(kernel, n, lda, static_cast<std::size_t>(gap), Front::Dominant));
        ASSERT_NO_FATAL_FAILURE(compare(kernel, 525, 526, 8, Front::Wild));
        ASSERT_NO_FATAL_FAILURE(compare(kernel, 525, 526, 8, Front::Special));
    });
}

TEST(SelimSmall, GivesTheBitsOfThePlainLoop)
{
    compare_everywhere(Selim);
}
TEST(SelimSmallReg, GivesTheBitsOfThePlainLoop)
{
    compare_everywhere(SelimReg);
}
TEST(UelimSmall, GivesTheBitsOfThePlainLoop)
{
    compare_everywhere(Uelim);
}
TEST(UelimSmallReg, GivesTheBitsOfThePlainLoop)
{
    compare_everywhere(UelimReg);
}
TEST(SelimSmall, GivesTheBitsOfThePlainLoopOnLargeFronts)
{
    compare_large(Selim);
}
TEST(SelimSmallReg, GivesTheBitsOfThePlainLoopOnLargeFronts)
{
    compare_large(SelimReg);
}
TEST(UelimSmall, GivesTheBitsOfThePlainLoopOnLargeFronts)
{
    compare_large(Uelim);
}
TEST(UelimSmallReg, GivesTheBitsOfThePlainLoopOnLargeFronts)
{
    compare_large(UelimReg);
}

constexpr Kernel All[] = {Selim, SelimReg, Uelim, UelimReg};

/// A front whose pivot k is still `pivot` when its turn comes: nothing couples it to the pivots before.
void decouple(const Factors& f, int lda, int k, double pivot)
{
    for (int j = 0; j < k; ++j) {
        f.a.set(k + std::int64_t{j} * lda, 0.0);
        f.a.set(j + std::int64_t{k} * lda, 0.0);
    }
    f.a.set(k + std::int64_t{k} * lda, pivot);
}

/// Runs a kernel against the reference with pivot k = `pivot`; check(original, factors, inputs) looks closer.
template <class Check>
void with_pivot(Kernel kernel, int n, int k, double pivot, double tol, double reg, int negpiv, Check check)
{
    const int lda = n + 1;
    auto random = generator(static_cast<std::uint64_t>(100 * n + k));
    PivotInputs in(n);
    in.tolerance = tol;
    for (int i = 0; i < n; ++i) {
        in.tol.set(i, i == k ? tol : 1e-12);
        in.reg.set(i, i == k ? reg : 1.0);
        in.negpiv.set(i, i == k ? negpiv : 0);
    }
    Factors original(n, lda), expected(n, lda), actual(n, lda);
    fill_front(kernel, original, n, lda, Front::Dominant, random);
    decouple(original, lda, k, pivot);
    expected.copy_front(original);
    actual.copy_front(original);
    run_reference(kernel, n, lda, expected, in);
    run(kernel, n, lda, actual, in);
    ASSERT_TRUE(same_factors(expected, actual)) << "n " << n << ", pivot " << k << " = " << pivot;
    check(lda, expected, actual);
}

template <class Check>
void at_every_position(Check check)
{
    on_every_tier([&] {
        for (int n : {1, 2, 3, 4, 5, 7, 8, 9, 12, 13, 17, 21})
            for (int k = 0; k < n; ++k) {
                check(n, k);
                if (::testing::Test::HasFatalFailure())
                    return;
            }
    });
}

TEST(SmallEliminations, WriteNothingForOrdersBelowOne)
{
    on_every_tier([] {
        for (int n : {0, -1, -1000000})
            for (Kernel kernel : All) {
                PivotInputs in(4);
                Factors f(4, 4), untouched(4, 4);
                run(kernel, n, 4, f, in);
                ASSERT_TRUE(same_factors(untouched, f));
            }
    });
}

TEST(SmallEliminations, OfOrderOneWriteThePivotAndNothingElse)
{
    on_every_tier([] {
        for (Kernel kernel : All) {
            PivotInputs in(1);
            in.tolerance = 0.5;
            in.tol.set(0, 0.5);
            in.reg.set(0, 1.0);
            in.negpiv.set(0, 0);
            Factors f(1, 7), expected(1, 7); // canaries everywhere around
            f.a.set(0, 4.0);
            expected.a.set(0, 4.0);
            expected.d.set(0, 4.0);
            expected.dinv.set(0, 0.25);
            if (kernel.regularised)
                expected.dcorr.set(0, 0.0);
            run(kernel, 1, 7, f, in);
            ASSERT_TRUE(same_factors(expected, f));
        }
    });
}

TEST(SmallEliminations, APivotOfExactlyPlusOrMinusTheToleranceIsReplacedOrShifted)
{
    at_every_position([](int n, int k) {
        for (double pivot : {0.375, -0.375}) {
            for (Kernel kernel : {Selim, Uelim})
                with_pivot(kernel, n, k, pivot, 0.375, 0, 0, [&](int, const Factors&, const Factors& f) {
                    EXPECT_EQ(f.d.get(k), 1e36);
                    EXPECT_EQ(f.dinv.get(k), 1e-36);
                });
            for (Kernel kernel : {SelimReg, UelimReg})
                with_pivot(kernel, n, k, pivot, 0.375, 1.0, 0, [&](int, const Factors&, const Factors& f) {
                    EXPECT_EQ(f.d.get(k), pivot + 1.0);
                    EXPECT_EQ(f.dcorr.get(k), -1.0);
                });
        }
    });
}

TEST(SmallEliminations, APivotJustBeyondTheToleranceIsAccepted)
{
    at_every_position([](int n, int k) {
        const double beyond = std::nextafter(0.375, 1.0);
        for (double pivot : {beyond, -beyond})
            for (Kernel kernel : All)
                with_pivot(kernel, n, k, pivot, 0.375, 1.0, 0, [&](int, const Factors&, const Factors& f) {
                    EXPECT_EQ(f.d.get(k), pivot);
                    EXPECT_EQ(f.dinv.get(k), 1.0 / pivot);
                    if (kernel.regularised) {
                        EXPECT_EQ(bits(f.dcorr.get(k)), bits(0.0));
                    }
                });
    });
}

TEST(SmallEliminations, AZeroToleranceReplacesOnlyZeroAndNaN)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {Selim, Uelim}) {
            for (double pivot : {0.0, -0.0, double(NAN)})
                with_pivot(kernel, n, k, pivot, 0.0, 0, 0,
                           [&](int, const Factors&, const Factors& f) { EXPECT_EQ(f.d.get(k), 1e36); });
            for (double pivot : {5e-324, -5e-324, 1e-36, double(-INFINITY)})
                with_pivot(kernel, n, k, pivot, 0.0, 0, 0,
                           [&](int, const Factors&, const Factors& f) { EXPECT_EQ(f.d.get(k), pivot); });
        }
    });
}

TEST(SmallEliminations, ANegativeToleranceReplacesNaNOnlyAndANaNToleranceEverything)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {Selim, Uelim}) {
            for (double pivot : {0.0, 0.5, -1.0})
                with_pivot(kernel, n, k, pivot, -1.0, 0, 0,
                           [&](int, const Factors&, const Factors& f) { EXPECT_EQ(f.d.get(k), pivot); });
            with_pivot(kernel, n, k, double(NAN), -1.0, 0, 0,
                       [&](int, const Factors&, const Factors& f) { EXPECT_EQ(f.d.get(k), 1e36); });
            with_pivot(kernel, n, k, 5.0, double(NAN), 0, 0, [&](int, const Factors&, const Factors& f) {
                for (int i = 0; i < n; ++i)
                    EXPECT_EQ(f.d.get(i), 1e36);
            });
        }
    });
}

TEST(SmallEliminations, ANaNPivotIsReplacedByThePlainKernelsAndStaysNaNInTheRegularisedOnes)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {Selim, Uelim})
            with_pivot(kernel, n, k, double(NAN), 1e-12, 0, 0, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.d.get(k), 1e36);
                EXPECT_EQ(f.dinv.get(k), 1e-36);
            });
        for (Kernel kernel : {SelimReg, UelimReg})
            with_pivot(kernel, n, k, double(NAN), 1e-12, 2.0, 1, [&](int, const Factors&, const Factors& f) {
                EXPECT_TRUE(std::isnan(f.d.get(k)) && std::isnan(f.dinv.get(k)));
                EXPECT_EQ(f.dcorr.get(k), 2.0);
            });
    });
}

TEST(SelimSmall, AReplacedPivotScalesItsColumnByTheTinyReciprocal)
{
    at_every_position([](int n, int k) {
        with_pivot(Selim, n, k, 1e-14, 1e-12, 0, 0, [&](int lda, const Factors&, const Factors& f) {
            EXPECT_EQ(f.a.get(k + std::int64_t{k} * lda), 1e36);
            EXPECT_EQ(f.d.get(k), 1e36);
            EXPECT_EQ(f.dinv.get(k), 1e-36);
            for (int i = k + 1; i < n; ++i)
                EXPECT_EQ(bits(f.a.get(k + std::int64_t{i} * lda)),
                          bits(1e-36 * f.a.get(i + std::int64_t{k} * lda)));
        });
    });
}

TEST(UelimSmall, AReplacedPivotScalesItsRowAndLeavesItsColumn)
{
    on_every_tier([] {
        for (int n : {2, 5, 8, 13}) { // the first pivot: row and column are still the caller's
            const int lda = n;
            auto random = generator(static_cast<std::uint64_t>(n));
            PivotInputs in(n);
            in.tolerance = 1e-12;
            Factors f(n, lda), original(n, lda);
            fill_front(Uelim, original, n, lda, Front::Dominant, random);
            original.a.set(0, 1e-13);
            f.copy_front(original);
            run(Uelim, n, lda, f, in);
            EXPECT_EQ(f.a.get(0), 1e36);
            EXPECT_EQ(f.d.get(0), 1e36);
            EXPECT_EQ(f.dinv.get(0), 1e-36);
            for (int i = 1; i < n; ++i) {
                EXPECT_EQ(bits(f.a.get(i)), bits(original.a.get(i)));
                EXPECT_EQ(bits(f.a.get(std::int64_t{i} * lda)),
                          bits(original.a.get(std::int64_t{i} * lda) * 1e-36));
            }
        }
    });
}

TEST(SmallEliminations, RegularisedPivotOfATwentiethIsShiftedByTwoAsTheFlagTells)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {SelimReg, UelimReg}) {
            with_pivot(kernel, n, k, 0.1, 0.1, 2.0, 1, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.d.get(k), 0.1 - 2.0); // -1.9
                EXPECT_EQ(f.dcorr.get(k), 2.0);
            });
            for (int negpiv : {0, -1, 2})
                with_pivot(kernel, n, k, 0.1, 0.1, 2.0, negpiv, [&](int, const Factors&, const Factors& f) {
                    EXPECT_EQ(f.d.get(k), 0.1 + 2.0); // 2.1
                    EXPECT_EQ(f.dcorr.get(k), -2.0);
                });
        }
    });
}

TEST(SmallEliminations, RegularisedZeroPivotWithZeroRegularisationHasAnInfiniteReciprocal)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {SelimReg, UelimReg}) {
            with_pivot(kernel, n, k, 0.0, 1e-12, 0.0, 0, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.dinv.get(k), INFINITY);
                EXPECT_EQ(bits(f.dcorr.get(k)), bits(-0.0)) << "minus a shift of +0";
            });
            with_pivot(kernel, n, k, 0.0, 1e-12, 0.0, 1, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.dinv.get(k), INFINITY);
                EXPECT_EQ(bits(f.dcorr.get(k)), bits(0.0));
            });
        }
    });
}

TEST(SmallEliminations, TheTestIsRelativeToRegularisationOnlyWhereThatIsPositive)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {SelimReg, UelimReg}) {
            with_pivot(kernel, n, k, 3.0, 1.0, 4.0, 0, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.d.get(k), 7.0) << "3/4 does not exceed 1";
            });
            with_pivot(kernel, n, k, 3.0, 1.0, -4.0, 0, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.d.get(k), 3.0) << "3 exceeds 1";
            });
            with_pivot(kernel, n, k, 0.5, 1.0, -4.0, 0, [&](int, const Factors&, const Factors& f) {
                EXPECT_EQ(f.d.get(k), -3.5) << "moved up by a negative amount";
                EXPECT_EQ(f.dcorr.get(k), 4.0);
            });
        }
    });
}

TEST(SmallEliminations, TheTestedValueIsAQuotientNotAProductWithAReciprocal)
{
    at_every_position([](int n, int k) {
        for (Kernel kernel : {SelimReg, UelimReg}) // 49/49 is 1, 49·(1/49) is the number below
            with_pivot(kernel, n, k, 49.0, std::nextafter(1.0, 0.0), 49.0, 0,
                       [&](int, const Factors&, const Factors& f) { EXPECT_EQ(f.d.get(k), 49.0); });
    });
}

TEST(SmallEliminations, SeveralTinyPivotsInARow)
{
    on_every_tier([] {
        const int n = 15, lda = 16;
        for (Kernel kernel : All)
            for (int first = 0; first < n; ++first)
                for (int last = first + 1; last < n && last < first + 7; ++last) {
                    auto random = generator(static_cast<std::uint64_t>(first * 16 + last));
                    PivotInputs in(n);
                    in.tolerance = 1e-12;
                    for (int i = 0; i < n; ++i) {
                        in.tol.set(i, 1e-12);
                        in.reg.set(i, 0.5);
                        in.negpiv.set(i, i % 2);
                    }
                    Factors expected(n, lda), actual(n, lda);
                    fill_front(kernel, expected, n, lda, Front::Dominant, random);
                    for (int k = first; k <= last; ++k)
                        decouple(expected, lda, k, k % 2 ? 0.0 : -0.0);
                    actual.copy_front(expected);
                    run_reference(kernel, n, lda, expected, in);
                    run(kernel, n, lda, actual, in);
                    ASSERT_TRUE(same_factors(expected, actual)) << first << " to " << last;
                    for (int k = first; k <= last; ++k)
                        ASSERT_EQ(actual.d.get(k), kernel.regularised ? (k % 2 ? -0.5 : 0.5) : 1e36);
                }
    });
}

TEST(SelimSmall, GarbageAboveTheDiagonalDoesNotChangeTheResult)
{
    on_every_tier([] {
        for (Kernel kernel : {Selim, SelimReg})
            for (int n : {2, 3, 5, 8, 9, 16, 21, 40})
                for (double garbage : {0.0, 1e300, double(INFINITY)}) {
                    const int lda = n + 1;
                    auto random = generator(static_cast<std::uint64_t>(n));
                    PivotInputs in(n);
                    fill_inputs(in, in.tolerance, random);
                    Factors clean(n, lda), dirty(n, lda); // clean: the canary, a NaN, above the diagonal
                    fill_front(kernel, clean, n, lda, Front::Dominant, random);
                    dirty.copy_front(clean);
                    for (int j = 0; j < n; ++j)
                        for (int i = 0; i < j; ++i)
                            dirty.a.set(i + std::int64_t{j} * lda, garbage);
                    run(kernel, n, lda, clean, in);
                    run(kernel, n, lda, dirty, in);
                    ASSERT_TRUE(same_factors(clean, dirty)) << "n " << n;
                }
    });
}

TEST(SmallEliminations, TheFirstColumnBelowItsPivotKeepsEveryBit)
{
    on_every_tier([] {
        for (Kernel kernel : All)
            for (int n : {2, 4, 7, 8, 9, 13, 30}) {
                auto random = generator(static_cast<std::uint64_t>(n));
                PivotInputs in(n);
                fill_inputs(in, in.tolerance, random);
                Factors f(n, n);
                fill_front(kernel, f, n, n, Front::Dominant, random);
                auto odd = [](int i) { // quiet and signalling NaNs of either sign
                    return std::bit_cast<double>(0x7ff0000000001234u + (std::uint64_t(i % 4) << 51) +
                                                 (std::uint64_t(i % 3 == 0) << 63));
                };
                for (int i = 1; i < n; ++i)
                    f.a.set(i, odd(i));
                run(kernel, n, n, f, in);
                for (int i = 1; i < n; ++i)
                    ASSERT_EQ(bits(f.a.get(i)), bits(odd(i))) << "n " << n << ", row " << i;
            }
    });
}

TEST(SmallEliminations, TouchNothingBeforeTheArrays)
{
    on_every_tier([] {
        for (Kernel kernel : All)
            for (int n = 1; n <= 40; ++n) {
                const std::size_t bytes = static_cast<std::size_t>(n) * 8;
                Pages a(bytes * static_cast<std::size_t>(n)), d(bytes), dinv(bytes), dcorr(bytes), tol(bytes),
                    reg(bytes), negpiv(bytes / 2); // each begins right behind an inaccessible page
                auto doubles = [](const Pages& p) { return reinterpret_cast<double*>(p.begin()); };
                auto random = generator(static_cast<std::uint64_t>(n));
                PivotInputs in(n);
                fill_inputs(in, in.tolerance, random);
                Factors expected(n, n);
                fill_front(kernel, expected, n, n, Front::Dominant, random);
                for (std::int64_t i = 0; i < expected.a.size(); ++i)
                    doubles(a)[i] = expected.a.get(i);
                std::memcpy(tol.begin(), in.tol.data(), bytes);
                std::memcpy(reg.begin(), in.reg.data(), bytes);
                std::memcpy(negpiv.begin(), in.negpiv.data(), bytes / 2);
                const int* flags = reinterpret_cast<const int*>(negpiv.begin());
                run_reference(kernel, n, n, expected, in);
                if (kernel.regularised)
                    (kernel.symmetric ? blac_selim_small_reg_ : blac_uelim_small_reg_)(
                        &n, doubles(a), &n, doubles(d), doubles(dinv), doubles(tol), flags, doubles(reg),
                        doubles(dcorr));
                else
                    (kernel.symmetric ? blac_selim_small_ : blac_uelim_small_)(&n, doubles(a), &n, doubles(d),
                                                                               doubles(dinv), &in.tolerance);
                for (std::int64_t i = 0; i < expected.a.size(); ++i)
                    ASSERT_TRUE(same(expected.a.get(i), doubles(a)[i], NaNs::Alike)) << "n " << n;
                for (int i = 0; i < n; ++i)
                    ASSERT_TRUE(same(expected.dinv.get(i), doubles(dinv)[i], NaNs::Alike)) << "n " << n;
            }
    });
}

TEST(SmallEliminations, MultiplyByTheReciprocalInsteadOfDividing)
{
    ASSERT_NE(bits(5.0 / 49.0), bits(5.0 * (1.0 / 49.0))) << "the pair must tell the two apart";
    on_every_tier([] {
        for (Kernel kernel : All) {
            PivotInputs in(2);
            for (int i : {0, 1}) {
                in.tol.set(i, 0.0);
                in.reg.set(i, 0.0);
                in.negpiv.set(i, 0);
            }
            Factors f(2, 2);
            f.a.set(0, 49.0);
            f.a.set(1, 5.0);
            f.a.set(2, 5.0);
            f.a.set(3, 7.0);
            run(kernel, 2, 2, f, in);
            EXPECT_EQ(bits(f.a.get(2)), bits(5.0 * (1.0 / 49.0)));
        }
    });
}

/// |A - (L·D)·U| in the largest entry, relative to |A|, from factors as the kernels leave them.
double backward_error(Kernel kernel, int n, int lda, const Factors& original, const Factors& f)
{
    auto a = [&](const Factors& x, int i, int j) { return x.a.get(i + std::int64_t{j} * lda); };
    double error = 0.0, size = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = kernel.symmetric ? j : 0; i < n; ++i) {
            long double sum = 0.0L;
            for (int k = 0; k <= std::min(i, j); ++k)
                sum += static_cast<long double>(a(f, i, k)) * (k == j ? 1.0 : a(f, k, j));
            error = std::max(error, std::abs(static_cast<double>(sum - a(original, i, j))));
            size = std::max(size, std::abs(a(original, i, j)));
        }
    return error / size;
}

TEST(SmallEliminations, FactorsMultiplyBackToTheFront)
{
    on_every_tier([] {
        for (Kernel kernel : All)
            for (int n = 1; n <= 90; n += n < 20 ? 1 : 7) {
                auto random = generator(static_cast<std::uint64_t>(n));
                PivotInputs in(n);
                in.tolerance = 1e-12;
                for (int i = 0; i < n; ++i) {
                    in.tol.set(i, 1e-12);
                    in.reg.set(i, 1.0);
                    in.negpiv.set(i, 0);
                }
                Factors original(n, n), f(n, n);
                fill_front(kernel, original, n, n, Front::Dominant, random);
                f.copy_front(original);
                run(kernel, n, n, f, in);
                ASSERT_LT(backward_error(kernel, n, n, original, f), 1e-15 * (n + 4)) << "n " << n;
            }
    });
}

TEST(UelimSmall, AgreesWithSelimSmallOnASymmetricFrontToRoundingButNotBitForBit)
{
    on_every_tier([] {
        const int n = 40;
        auto random = generator();
        PivotInputs in(n);
        in.tolerance = 1e-12;
        Factors symmetric(n, n), square(n, n);
        fill_front(Selim, symmetric, n, n, Front::Dominant, random);
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i)
                for (auto place : {i + j * n, j + i * n})
                    square.a.set(place, symmetric.a.get(i + j * n));
        run(Selim, n, n, symmetric, in);
        run(Uelim, n, n, square, in);
        int different = 0;
        for (int i = 0; i < n * n; ++i) {
            ASSERT_NEAR(symmetric.a.get(i), square.a.get(i), 1e-13 * n);
            different += bits(symmetric.a.get(i)) != bits(square.a.get(i));
        }
        EXPECT_GT(different, 0);
    });
}

} // namespace
