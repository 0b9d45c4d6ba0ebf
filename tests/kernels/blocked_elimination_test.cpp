// SPDX-License-Identifier: BSD-3-Clause
// The blocked drivers on the real library: bit for bit the documented sequence of calls, on one thread.
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "tiers.h"

#include <vector>

using namespace support;

extern "C" {
void dtrsm_(const char*, const char*, const char*, const char*, const int*, const int*, const double*,
            const double*, const int*, double*, const int*, std::size_t, std::size_t, std::size_t,
            std::size_t);
void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*,
            const int*, const double*, const int*, const double*, double*, const int*, std::size_t,
            std::size_t);
}

namespace {

struct Driver
{
    bool symmetric, regularised;
};
constexpr Driver Drivers[] = {{true, false}, {true, true}, {false, false}, {false, true}};

/// A front with its pivot arrays; the arrays hold `room` pivots.
struct Problem
{
    int lda;
    double tolerance = 1e-10;
    Guarded<double> a, d, dinv, dcorr, tol, reg;
    Guarded<int> negpiv;

    Problem(int room, int lda_, std::size_t gap = 0)
        : lda(lda_), a(extent(room, room, lda_), gap), d(room, gap), dinv(room, gap), dcorr(room, gap),
          tol(room), reg(room), negpiv(room)
    {
    }

    /// Address of element (i,j), from 1 as in the formulas below.
    double* at(int i, int j) const { return a + (i - 1) + std::int64_t{j - 1} * lda; }

    /// A heavy diagonal, a few pivots too small or NaN; where a symmetric driver does not read, the canary.
    void fill(const Driver& driver, int n)
    {
        auto random = generator(static_cast<std::uint64_t>(n));
        std::uniform_real_distribution<double> uniform(-1.0, 1.0);
        for (int j = 1; j <= n; ++j)
            for (int i = driver.symmetric ? j : 1; i <= n; ++i)
                *at(i, j) = uniform(random) + (i == j ? (random() % 2 ? n : -n) : 0);
        for (int k = 1; k <= n; ++k) {
            tol.set(k - 1, 1e-10);
            reg.set(k - 1, 0.5 + 0.25 * static_cast<double>(random() % 4));
            negpiv.set(k - 1, static_cast<int>(random() % 2));
            if (random() % 8 == 0) { // tiny when its turn comes
                for (int j = 1; j < k; ++j)
                    *at(k, j) = 0.0;
                if (!driver.symmetric)
                    for (int j = 1; j < k; ++j)
                        *at(j, k) = 0.0;
                *at(k, k) = 1e-11;
            }
        }
    }
    void copy(const Problem& from)
    {
        auto all = [](auto& to, auto& source) {
            for (std::int64_t i = 0; i < to.size(); ++i)
                to.set(i, source.get(i));
        };
        all(a, from.a);
        all(tol, from.tol);
        all(reg, from.reg);
        all(negpiv, from.negpiv);
    }
};

void run(const Driver& driver, int n, int nb, Problem& x)
{
    if (!driver.regularised)
        (driver.symmetric ? blac_selim_ : blac_uelim_)(&n, &nb, &x.tolerance, x.a, &x.lda, x.d, x.dinv);
    else
        (driver.symmetric ? blac_selim_reg_ : blac_uelim_reg_)(&n, &nb, x.a, &x.lda, x.d, x.dinv, x.tol,
                                                               x.negpiv, x.reg, x.dcorr);
}

void eliminate_block(const Driver& driver, int order, int j, Problem& x)
{
    const int k = j - 1;
    if (!driver.regularised)
        (driver.symmetric ? blac_selim_small_ : blac_uelim_small_)(&order, x.at(j, j), &x.lda, x.d + k,
                                                                   x.dinv + k, &x.tolerance);
    else
        (driver.symmetric ? blac_selim_small_reg_ : blac_uelim_small_reg_)(
            &order, x.at(j, j), &x.lda, x.d + k, x.dinv + k, x.tol + k, x.negpiv + k, x.reg + k, x.dcorr + k);
}

/// The documented sequence of calls, with `full` panels of width nb and a last block of width `last`.
void run_by_hand(const Driver& driver, int n, int nb, int full, int last, Problem& x)
{
    const double one = 1.0, minus_one = -1.0;
    for (int q = 1; q <= full; ++q) {
        const int j = 1 + (q - 1) * nb, m = n - j - nb + 1;
        eliminate_block(driver, nb, j, x);
        dtrsm_("R", "U", "N", "U", &m, &nb, &one, x.at(j, j), &x.lda, x.at(j + nb, j), &x.lda, 1, 1, 1, 1);
        if (driver.symmetric) {
            blac_dsyrk_scaled_(&nb, &m, &nb, &minus_one, x.at(j + nb, j), &x.lda, x.at(j + nb, j), &x.lda,
                               &one, x.at(j + nb, j + nb), &x.lda, x.dinv + (j - 1));
        } else {
            dtrsm_("L", "L", "N", "N", &nb, &m, &one, x.at(j, j), &x.lda, x.at(j, j + nb), &x.lda, 1, 1, 1,
                   1);
            dgemm_("N", "N", &m, &m, &nb, &minus_one, x.at(j + nb, j), &x.lda, x.at(j, j + nb), &x.lda, &one,
                   x.at(j + nb, j + nb), &x.lda, 1, 1);
        }
    }
    eliminate_block(driver, last, full * nb + 1, x);
}

::testing::AssertionResult same_results(const Problem& expected, const Problem& actual)
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

class BlockedEliminations : public ::testing::Test
{
protected:
    void SetUp() override
    {
        threads_ = blaC_get_num_threads();
        blaC_set_num_threads(1);
    }
    void TearDown() override { blaC_set_num_threads(threads_); }

    void compare(const Driver& driver, int n, int nb, int lda, std::size_t gap = 0)
    {
        int full = 0; // panels that leave something over
        while ((full + 1) * nb < n)
            ++full;
        Problem expected(n, lda, gap), actual(n, lda, gap);
        expected.fill(driver, n);
        actual.copy(expected);
        run_by_hand(driver, n, nb, full, n - full * nb, expected);
        run(driver, n, nb, actual);
        ASSERT_TRUE(same_results(expected, actual))
            << "n " << n << ", nb " << nb << ", symmetric " << driver.symmetric << ", regularised "
            << driver.regularised;
    }

private:
    int threads_ = 1;
};

TEST_F(BlockedEliminations, GiveTheBitsOfTheDocumentedCalls)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers) {
            for (int n = 1; n <= 40; ++n)
                for (int nb : {1, 2, 3, 5, 8, 16, n, n + 3})
                    ASSERT_NO_FATAL_FAILURE(compare(driver, n, nb, n + nb % 3, nb % 2 ? 8 : 0));
            for (auto [n, nb] : {std::pair{100, 32}, {257, 48}, {300, 64}})
                ASSERT_NO_FATAL_FAILURE(compare(driver, n, nb, n + 1));
        }
    });
}

TEST_F(BlockedEliminations, OfOrdersUpToThePanelWidthAreOneUnblockedElimination)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers)
            for (int n = 1; n <= 12; ++n)
                for (int nb : {n, n + 1, n + 100}) {
                    Problem expected(n, n), actual(n, n);
                    expected.fill(driver, n);
                    actual.copy(expected);
                    eliminate_block(driver, n, 1, expected);
                    run(driver, n, nb, actual);
                    ASSERT_TRUE(same_results(expected, actual));
                }
    });
}

TEST_F(BlockedEliminations, OfOrderZeroWithPanelsOfFourEliminateTheFirstFourByFourBlock)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers) {
            Problem expected(4, 5), actual(4, 5);
            expected.fill(driver, 4);
            actual.copy(expected);
            eliminate_block(driver, 4, 1, expected);
            run(driver, 0, 4, actual);
            ASSERT_TRUE(same_results(expected, actual));
            EXPECT_NE(bits(actual.d.get(3)), Canary);
            EXPECT_NE(bits(actual.dinv.get(3)), Canary);
        }
    });
}

// The division truncates towards zero: -1 panels and a last block of width n + nb as long as n > 1 - 2·nb.
TEST_F(BlockedEliminations, OfNegativeOrderFollowThePanelArithmeticAsItFalls)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers)
            for (auto [n, order] : {std::pair{-1, 3}, {-2, 2}, {-3, 1}, {-4, 0}, {-5, -1}, {-6, -2}}) {
                Problem expected(4, 5), actual(4, 5);
                expected.fill(driver, 4);
                actual.copy(expected);
                if (order > 0)
                    eliminate_block(driver, order, 1, expected);
                run(driver, n, 4, actual);
                ASSERT_TRUE(same_results(expected, actual)) << "n " << n;
            }
    });
}

TEST_F(BlockedEliminations, OfAMultipleOfThePanelWidthEndWithAFullBlock)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers)
            for (int panels = 1; panels <= 4; ++panels) {
                const int nb = 6, n = panels * nb;
                Problem expected(n, n), actual(n, n);
                expected.fill(driver, n);
                actual.copy(expected);
                run_by_hand(driver, n, nb, panels - 1, nb, expected);
                run(driver, n, nb, actual);
                ASSERT_TRUE(same_results(expected, actual));
            }
    });
}

TEST_F(BlockedEliminations, OfOrderSevenInPanelsOfThreeHavePanelsAtColumnsOneAndFourAndALastBlockAtSeven)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers) {
            Problem expected(7, 7), actual(7, 7);
            expected.fill(driver, 7);
            actual.copy(expected);
            run_by_hand(driver, 7, 3, 2, 1, expected);
            run(driver, 7, 3, actual);
            ASSERT_TRUE(same_results(expected, actual));
        }
    });
}

TEST_F(BlockedEliminations, AReplacedPivotAddsNothingToTheTrailingUpdate)
{
    on_every_tier([&] {
        for (const Driver& driver : {Drivers[0], Drivers[2]}) {
            // Pivot 1 is zero, columns 2 and 3 are decoupled from the rest: what stands behind must not move.
            const int n = 9, nb = 3;
            Problem x(n, n), before(n, n);
            x.fill(driver, n);
            for (int k = 1; k <= nb; ++k)
                for (int i = 1; i <= n; ++i)
                    if (i != k) {
                        *x.at(i, k) = k == 1 ? 3.0 : 0.0;
                        *x.at(k, i) = k == 1 ? 5.0 : 0.0;
                    }
            *x.at(1, 1) = 0.0;
            for (int i = nb + 1; i <= n; ++i)
                *x.at(i, i) = n; // every later pivot regular
            before.copy(x);
            run(driver, n, nb, x);
            EXPECT_EQ(x.d.get(0), 1e36);
            EXPECT_EQ(x.dinv.get(0), 1e-36);
            for (int i = nb + 1; i <= n; ++i)
                EXPECT_NEAR(*x.at(i, nb + 1), *before.at(i, nb + 1), 1e-34) << "column behind the panel";
        }
    });
}

TEST_F(BlockedEliminations, OfSymmetricFrontsLeaveWhatIsAboveTheDiagonalBlocksUnchanged)
{
    on_every_tier([&] {
        for (const Driver& driver : {Drivers[0], Drivers[1]})
            for (auto [n, nb] : {std::pair{7, 3}, {40, 8}, {50, 16}, {33, 1}}) {
                Problem x(n, n + 1);
                x.fill(driver, n);
                run(driver, n, nb, x);
                for (int j = 1; j <= n; ++j)
                    for (int i = 1; i <= j - 1; ++i) {
                        const bool inside = (i - 1) / nb == (j - 1) / nb;
                        ASSERT_EQ(bits(*x.at(i, j)) != Canary, inside) << i << ", " << j;
                    }
            }
    });
}

TEST_F(BlockedEliminations, FactorsMultiplyBackToTheFront)
{
    on_every_tier([&] {
        for (const Driver& driver : Drivers)
            for (auto [n, nb] : {std::pair{60, 16}, {97, 32}, {150, 48}}) {
                auto random = generator(static_cast<std::uint64_t>(n));
                Problem f(n, n), original(n, n);
                for (int j = 1; j <= n; ++j)
                    for (int i = j; i <= n; ++i) {
                        *f.at(i, j) = std::uniform_real_distribution<double>(-1.0, 1.0)(random) +
                                      (i == j ? (random() % 2 ? n : -n) : 0);
                        *f.at(j, i) = *f.at(i, j);
                    }
                for (int k = 0; k < n; ++k) {
                    f.tol.set(k, 1e-10);
                    f.reg.set(k, 1.0);
                    f.negpiv.set(k, 0);
                }
                original.copy(f);
                run(driver, n, nb, f);
                double error = 0.0;
                for (int j = 1; j <= n; ++j)
                    for (int i = j; i <= n; ++i) {
                        long double sum = 0.0L;
                        for (int k = 1; k <= j; ++k) // symmetric: U is L transposed, in the lower triangle
                            sum += static_cast<long double>(*f.at(i, k)) *
                                   (k == j             ? 1.0
                                    : driver.symmetric ? *f.at(j, k) * f.dinv.get(k - 1)
                                                       : *f.at(k, j));
                        error = std::max(error, std::abs(static_cast<double>(sum - *original.at(i, j))));
                    }
                ASSERT_LT(error / n, 1e-15 * n) << "n " << n;
            }
    });
}

} // namespace
