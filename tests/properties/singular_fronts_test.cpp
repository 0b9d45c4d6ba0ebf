// SPDX-License-Identifier: BSD-3-Clause
// Fronts made singular on purpose, thousands of random ones through every driver and panel width.
//
// The exact fronts are sums of terms d(k)·l(k)·u(k)ᵀ of small integers, d(k) a power of two: every step of
// the elimination is exact, in the libraries' kernels too, so each pivot is known beforehand, to the bit, and
// spoilt pivots can be placed where they are wanted. The rough fronts are random numbers; they are judged by
// their backward error, entry by entry: |A + E - L·D·U| in units of 2⁻⁵³·|L·D|·|U|, E being the changes of
// pivots. Largest of 16000 fronts: 25, orders up to 300. The bound is that of the theory, n + 1 for order n.
#include "TOVBlaModule.h"
#include "random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

using namespace support;

namespace {

using Vector = std::vector<double>;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr int Rounds = 2000, LargestOrder = 300;

enum class Form { Small, Blocked, Packed };
struct Driver
{
    const char* name;
    bool symmetric, regularised;
    Form form;
};
// Names of tests show a driver by its name, not by its address.
void PrintTo(const Driver& driver, std::ostream* out)
{
    *out << driver.name;
}
constexpr Driver Drivers[] = {
    {"selim_small", true, false, Form::Small}, {"selim", true, false, Form::Blocked},
    {"selimC", true, false, Form::Packed},     {"selim_small_reg", true, true, Form::Small},
    {"selim_reg", true, true, Form::Blocked},  {"uelim_small", false, false, Form::Small},
    {"uelim", false, false, Form::Blocked},    {"uelim_small_reg", false, true, Form::Small},
    {"uelim_reg", false, true, Form::Blocked},
};

/// A front, what the call reads with it and what it writes.
struct Problem
{
    int n, nb, lda;
    Vector a, d, dinv, dcorr, tols, reg;
    std::vector<int> negpiv;
    double tol = 0.0;

    Problem(int order, int width, int extra)
        : n(order), nb(width), lda(order + extra), a(size(lda) * size(n), NaN), d(size(n), NaN), dinv(d),
          dcorr(d), tols(d), reg(d), negpiv(size(n))
    {
    }
    static std::size_t size(int i) { return static_cast<std::size_t>(i); }
    double& at(int i, int j) { return a[size(i) + size(j) * size(lda)]; }
    double at(int i, int j) const { return a[size(i) + size(j) * size(lda)]; }

    void run(const Driver& driver)
    {
        if (driver.form == Form::Packed)
            return run_packed();
        const bool small = driver.form == Form::Small;
        double* const x = a.data();
        if (driver.regularised && small)
            (driver.symmetric ? blac_selim_small_reg_ : blac_uelim_small_reg_)(
                &n, x, &lda, d.data(), dinv.data(), tols.data(), negpiv.data(), reg.data(), dcorr.data());
        else if (driver.regularised)
            (driver.symmetric ? blac_selim_reg_ : blac_uelim_reg_)(&n, &nb, x, &lda, d.data(), dinv.data(),
                                                                   tols.data(), negpiv.data(), reg.data(),
                                                                   dcorr.data());
        else if (small)
            (driver.symmetric ? blac_selim_small_ : blac_uelim_small_)(&n, x, &lda, d.data(), dinv.data(),
                                                                       &tol);
        else
            (driver.symmetric ? blac_selim_ : blac_uelim_)(&n, &nb, &tol, x, &lda, d.data(), dinv.data());
    }

private:
    /// Through storage in block columns; of the factors only the pivots come back.
    void run_packed()
    {
        Vector packed;
        for (int first = 0; first < n; first += nb)
            for (int j = first; j < std::min(n, first + nb); ++j)
                for (int i = first; i < n; ++i)
                    packed.push_back(i >= j ? at(i, j) : NaN);
        const std::size_t factors = packed.size(), order = size(n);
        packed.resize(factors + 2 * order + size(nb) * size(nb), 0.0);
        double* const work = packed.data() + factors + 2 * order;
        for (int j = 0; j < nb; ++j)
            work[size(j) * size(nb + 1)] = 1.0;
        blaC_selimC(n, nb, tol, packed.data());
        std::copy_n(packed.data() + factors, order, d.data());
        std::copy_n(packed.data() + factors + order, order, dinv.data());
    }
};

Problem draw_shape(const Driver& driver, std::mt19937_64& random)
{
    const int n = 1 + static_cast<int>(random() % (random() % 40 == 0 ? LargestOrder : 40));
    const int any = 1 + static_cast<int>(random() % static_cast<unsigned>(n + 3));
    const int widths[] = {1, 2, 3, 8, 16, 32, 48, 64, n, any};
    int nb = widths[random() % std::size(widths)];
    if (driver.form == Form::Packed && nb < n)
        nb = std::min(nb, 8); // it multiplies by inverses of blocks, whose elements grow with their order
    return Problem(n, nb, static_cast<int>(random() % 4));
}

/// What becomes of pivot k, as documented.
enum class Fate { Accepted, Changed, NotANumber };
struct Outcome
{
    std::vector<Fate> fate;
    Vector pivot; // as used, but 1e36 for a replaced one
    Vector shift; // of a regularised one
};

/// An exact front. About one pivot in four is spoilt: zero, tiny, ±tol or NaN when its turn comes.
Outcome draw_exact(Problem& x, const Driver& driver, std::mt19937_64& random)
{
    const std::size_t n = x.a.size() / Problem::size(x.lda);
    Outcome outcome{std::vector<Fate>(n, Fate::Accepted), Vector(n), Vector(n)};
    const int spoilt_in = random() % 4 == 0 ? 1000000 : 4; // some fronts have no spoilt pivot
    x.tol = 0.5;
    for (int j = 0; j < x.n; ++j)
        for (int i = driver.symmetric ? j : 0; i < x.n; ++i)
            x.at(i, j) = 0.0;
    bool poisoned = false;
    for (int k = 0; k < x.n; ++k) {
        const std::size_t at = Problem::size(k);
        auto unit = [&] { return static_cast<double>(random() % 3) - 1.0; };
        Vector l(n), u(n);
        for (std::size_t i = at + 1; i < n; ++i) {
            l[i] = unit();
            u[i] = driver.symmetric ? l[i] : unit();
        }
        const bool spoilt = random() % static_cast<unsigned>(spoilt_in) == 0;
        const double sign = random() % 2 ? 1.0 : -1.0;
        const double used = sign * static_cast<double>(1 << random() % 3);
        x.reg[at] = static_cast<double>(1 << random() % 3);
        x.negpiv[at] = sign < 0.0 ? 1 : static_cast<int>(random() % 2) * 2;
        x.tols[at] = spoilt ? 0.5 : 0x1p-10;

        double before = used; // the pivot when its turn comes
        double scale = used;  // its terms are scale·l·uᵀ
        if (spoilt) {
            // Tiny ones vanish beside the shift. ±tol leaves a power of two behind when shifted the other
            // way.
            const double s = driver.regularised ? x.reg[at] : 1.0;
            const double spoils[] = {0.0, -0.0, 1e-36, -1e-30, -sign * 0.5 * s, NaN};
            before = spoils[random() % (random() % 8 == 0 ? 6 : 5)];
            outcome.fate[at] = Fate::Changed;
            if (driver.regularised) {
                outcome.shift[at] = sign * s;
                outcome.pivot[at] = scale = before + sign * s;
                if (std::isnan(before)) {
                    poisoned = true;
                    scale = 1.0;
                }
            } else {
                outcome.pivot[at] = 1e36;
            }
        } else {
            outcome.pivot[at] = used;
            if (random() % 16 == 0) { // just accepted, and alone: its reciprocal is not exact
                const double limit = driver.regularised ? x.reg[at] * x.tols[at] : x.tol;
                outcome.pivot[at] = before = sign * (limit + 0x1p-30);
                std::fill(l.begin(), l.end(), 0.0);
                std::fill(u.begin(), u.end(), 0.0);
            }
        }
        if (poisoned) { // NaN runs through all that follows
            outcome.fate[at] = Fate::NotANumber;
            outcome.shift[at] = sign * x.reg[at];
        }
        const bool replaced = spoilt && !driver.regularised; // takes nothing off the rest
        x.at(k, k) += before;
        for (int i = k + 1; i < x.n; ++i) {
            const double column = scale * l[Problem::size(i)];
            x.at(i, k) += column;
            if (!driver.symmetric)
                x.at(k, i) += scale * u[Problem::size(i)];
        }
        for (int j = k + 1; j < x.n && !replaced; ++j)
            for (int i = driver.symmetric ? j : k + 1; i < x.n; ++i)
                x.at(i, j) += scale * l[Problem::size(i)] * u[Problem::size(j)];
    }
    return outcome;
}

/// The documented outcome, pivot by pivot, and that of an unblocked front in its multipliers.
void expect_outcome(const Driver& driver, const Problem& x, const Outcome& outcome)
{
    for (int k = 0; k < x.n; ++k) {
        const std::size_t at = Problem::size(k);
        const double pivot = outcome.pivot[at];
        SCOPED_TRACE(::testing::Message() << "pivot " << k << " from 0");
        if (outcome.fate[at] == Fate::NotANumber) {
            ASSERT_TRUE(std::isnan(x.d[at]) && std::isnan(x.dinv[at])) << x.d[at];
            ASSERT_EQ(x.dcorr[at], -outcome.shift[at]);
            continue;
        }
        ASSERT_EQ(x.d[at], pivot);
        ASSERT_EQ(x.dinv[at], pivot == 1e36 ? 1e-36 : 1.0 / pivot);
        if (driver.regularised) {
            ASSERT_EQ(x.dcorr[at], outcome.fate[at] == Fate::Changed ? -outcome.shift[at] : 0.0);
        }
        if (driver.form == Form::Packed)
            continue;
        ASSERT_EQ(x.at(k, k), pivot);
        const int panel_end = driver.form == Form::Small ? x.n : std::min(x.n, k / x.nb * x.nb + x.nb);
        for (int i = k + 1; i < panel_end && driver.symmetric; ++i)
            ASSERT_EQ(x.at(k, i), x.dinv[at] * x.at(i, k)) << "multiplier " << i;
    }
}

/// A replaced unknown is decoupled: the rest is what it would be if the front had never had it. That is so by
/// construction, see `replaced` above; here the trace that it leaves is held to be negligible.
void expect_decoupled(const Driver& driver, const Problem& x, const Outcome& outcome)
{
    for (int k = 0; k < x.n && driver.form != Form::Packed; ++k) {
        if (outcome.pivot[Problem::size(k)] != 1e36)
            continue;
        for (int i = k + 1; i < x.n; ++i) {
            const double multiplier = driver.symmetric ? x.at(i, k) * x.dinv[Problem::size(k)] : x.at(k, i);
            ASSERT_LT(std::abs(multiplier), 1e-30) << "unknown " << k << " still acts on " << i;
        }
    }
}

/// Random numbers; the diagonal heavy, or as it comes, with pivots of any size down to those replaced.
void draw_rough(Problem& x, const Driver& driver, std::mt19937_64& random)
{
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    const bool heavy = driver.form == Form::Packed || random() % 2;
    const bool symmetric = driver.symmetric;
    x.tol = heavy ? 1e-12 : 0.05;
    for (int j = 0; j < x.n; ++j)
        for (int i = symmetric ? j : 0; i < x.n; ++i)
            x.at(i, j) = uniform(random) + (i == j && heavy ? (random() % 2 ? x.n : -x.n) : 0.0);
    for (std::size_t k = 0; k < x.d.size(); ++k) {
        x.tols[k] = heavy ? 1e-12 : 0.05;
        x.reg[k] = 0.5 + static_cast<double>(random() % 4);
        x.negpiv[k] = static_cast<int>(random() % 3);
    }
}

/// The largest |A + E - L·D·U| in units of 2⁻⁵³·|L·D|·|U|.
double backward_error(const Driver& driver, const Problem& before, const Problem& x)
{
    double worst = 0.0;
    for (int j = 0; j < x.n; ++j)
        for (int i = driver.symmetric ? j : 0; i < x.n; ++i) {
            if (i == j && x.d[Problem::size(i)] == 1e36)
                continue; // E swallows what was there
            long double sum = before.at(i, j), size = 0.0;
            if (i == j && driver.regularised)
                sum -= x.dcorr[Problem::size(i)];
            for (int k = 0; k <= std::min(i, j); ++k) {
                const double ld = x.at(i, k);
                const double u = k == j             ? 1.0
                                 : driver.symmetric ? x.at(j, k) * x.dinv[Problem::size(k)]
                                                    : x.at(k, j);
                sum -= static_cast<long double>(ld) * u;
                size += std::abs(static_cast<long double>(ld) * u);
            }
            if (size > 0.0)
                worst = std::max(worst, static_cast<double>(std::abs(sum) / (0x1p-53 * size)));
        }
    return worst;
}

class SingularFronts : public ::testing::TestWithParam<Driver>
{
};

TEST_P(SingularFronts, HaveTheDocumentedOutcome)
{
    const Driver& driver = GetParam();
    auto random = generator(1);
    int changed = 0, poisoned = 0;
    for (int round = 0; round < Rounds; ++round) {
        Problem x = draw_shape(driver, random);
        const Outcome outcome = draw_exact(x, driver, random);
        x.run(driver);
        SCOPED_TRACE(::testing::Message()
                     << "front " << round << ", order " << x.n << ", panels of " << x.nb);
        ASSERT_NO_FATAL_FAILURE(expect_outcome(driver, x, outcome));
        ASSERT_NO_FATAL_FAILURE(expect_decoupled(driver, x, outcome));
        changed += static_cast<int>(std::count(outcome.fate.begin(), outcome.fate.end(), Fate::Changed));
        poisoned += static_cast<int>(std::count(outcome.fate.begin(), outcome.fate.end(), Fate::NotANumber));
    }
    EXPECT_GT(changed, Rounds); // the generator does what it is for
    EXPECT_EQ(poisoned > 0, driver.regularised);
}

TEST_P(SingularFronts, RoughOnesHaveASmallBackwardError)
{
    const Driver& driver = GetParam();
    auto random = generator(2);
    double worst = 0.0;
    for (int round = 0; round < Rounds; ++round) {
        Problem x = draw_shape(driver, random);
        draw_rough(x, driver, random);
        const Problem before = x;
        x.run(driver);
        if (driver.form == Form::Packed) { // it keeps inverses: held against the pivots of the other storage
            Problem other = before;
            other.run(Drivers[1]);
            for (std::size_t k = 0; k < x.d.size(); ++k)
                ASSERT_NEAR(x.d[k], other.d[k], 1e-13 * x.n * std::abs(other.d[k]));
            continue;
        }
        const double error = backward_error(driver, before, x);
        worst = std::max(worst, error);
        ASSERT_LE(error, x.n + 1) << "front " << round << ", order " << x.n << ", panels of " << x.nb;
    }
    RecordProperty("largest_backward_error", std::to_string(worst));
    std::printf("largest backward error of blac_%s: %.2f\n", driver.name, worst);
}

TEST(SingularFronts, ARegularisationByNothingLeavesAnInfiniteReciprocal)
{
    for (const Driver& driver : Drivers)
        for (int n : {1, 2, 9, 33}) {
            if (!driver.regularised)
                continue;
            auto random = generator(3);
            Problem x(n, 4, 0);
            draw_rough(x, driver, random);
            for (int i = 0; i < n - 1; ++i) {
                x.at(n - 1, i) = x.at(i, n - 1) = 0.0;
                x.at(i, i) = 2.0 * n;
            }
            x.at(n - 1, n - 1) = 0.0;
            x.reg.back() = 0.0;
            x.run(driver);
            EXPECT_EQ(x.d.back(), 0.0);
            EXPECT_TRUE(std::isinf(x.dinv.back()));
            EXPECT_EQ(x.dcorr.back(), 0.0);
        }
}

INSTANTIATE_TEST_SUITE_P(AllDrivers, SingularFronts, ::testing::ValuesIn(Drivers),
                         [](const auto& driver) { return driver.param.name; });

} // namespace
