// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <algorithm>
#include <vector>

using namespace support;

namespace {

constexpr int LongSizes[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,   10,  11, 12,
                             13, 15, 16, 17, 31, 33, 64, 65, 130, 257, 300};

void copy(const Guarded<double>& from, const Guarded<double>& to)
{
    for (std::int64_t i = 0; i < from.size(); ++i)
        to.set(i, from.get(i));
}

// The lower triangle of a factor; above it the canary stays. Ordinary factors are well conditioned.
void fill_factor(const Guarded<double>& l, int n, std::int64_t ld, std::mt19937_64& random, Data data)
{
    for (int j = 0; j < n; ++j)
        for (int i = j; i < n; ++i)
            l.set(i + j * ld, data == Data::Special ? special(random)
                              : i > j               ? ordinary(random) / 64.0
                                                    : 4.0 + static_cast<double>(random() % 100) / 8.0);
}

struct CholupdArguments
{
    char job;
    int n, nlead, ncol;
    double tol;
};

// Runs kernel and plain loop on equal data and compares all memory and info.
void compare_cholupd(const CholupdArguments& arguments, int ld, std::size_t gap, Data data, double x_scale,
                     std::uint64_t number)
{
    const auto [job, n, nlead, ncol, tol] = arguments;
    auto random = generator(number);
    Guarded<double> expected(extent(n, n, ld), gap), actual(extent(n, n, ld), gap), x(n, gap), y(n, gap);
    fill_factor(expected, n, ld, random, data);
    for (int i = 0; i < n; ++i)
        x.set(i, x_scale * draw(random, data));
    copy(expected, actual);
    copy(x, y);
    int info = -1;
    const int expected_info = reference::cholupd(job, n, nlead, ncol, expected, ld, x, tol);
    blac_cholupd_(&job, &n, &nlead, &ncol, actual, &ld, y, &tol, &info);
    ASSERT_EQ(info, expected_info);
    ASSERT_TRUE(same_memory(expected, actual));
    ASSERT_TRUE(same_memory(x, y));
}

TEST(Cholupd, GivesTheBitsOfThePlainLoop)
{
    on_every_tier([] {
        std::uint64_t number = 0;
        for (int n : LongSizes)
            for (char job : {'P', 'N'})
                for (int nlead : {0, 1, n / 2, n, n + 4})
                    for (int ncol : {n, n - 1, n / 2 + 1}) {
                        if (ncol > n)
                            continue;
                        ++number;
                        const int ld = n + static_cast<int>(number % 3);
                        const std::size_t gap = Gaps[number / 3 % std::size(Gaps)];
                        const Data data = number % 2 ? Data::Ordinary : Data::Special;
                        SCOPED_TRACE(::testing::Message()
                                     << "job " << job << ", n " << n << ", nlead " << nlead << ", ncol "
                                     << ncol << ", ld " << ld << ", gap " << gap);
                        // A small x lets hyperbolic sweeps run to the end, a large one has them refused.
                        compare_cholupd({job, n, nlead, ncol, 0.0}, ld, gap, data, 0.05, number);
                        compare_cholupd({job, n, nlead, ncol, 0.125}, ld, gap, data, 1.0, number);
                        if (::testing::Test::HasFatalFailure())
                            return;
                    }
    });
}

TEST(Cholupd, GivesTheBitsOfThePlainLoopForEveryLayout)
{
    on_every_tier([] {
        for (int n : Sizes)
            for (char job : {'P', 'N'})
                sweep_layouts(n, [&](int ld, std::size_t gap, Data data) {
                    compare_cholupd({job, n, n, n, 0.0}, ld, gap, data, 0.05, static_cast<std::uint64_t>(n));
                });
    });
}

// A factor of order n on which the hyperbolic sweep passes every column before `refused` and meets |t| = 1
// there.
TEST(Cholupd, IsRefusedAtEachColumnOfASweepWithTheEarlierColumnsFinished)
{
    on_every_tier([] {
        const int n = 37, ld = 40;
        const double tol = 0.0;
        for (int refused = 1; refused <= n; ++refused)
            for (bool leading : {true, false}) { // the refusal is in the first phase or in the second
                SCOPED_TRACE(refused);
                auto random = generator(static_cast<std::uint64_t>(refused));
                Guarded<double> expected(extent(n, n, ld)), actual(extent(n, n, ld)), x(n), y(n);
                fill_factor(expected, n, ld, random, Data::Ordinary);
                for (int i = 0; i < n; ++i)
                    x.set(i, 0.05 * ordinary(random));
                const char job = leading ? 'N' : 'P';
                const int nlead = leading ? n : refused / 2, before = refused - 1;
                { // x as it reaches the column that shall refuse
                    Guarded<double> l(extent(n, n, ld)), z(n);
                    copy(expected, l);
                    copy(x, z);
                    ASSERT_EQ(reference::cholupd(job, n, nlead, before, l, ld, z, tol), 0);
                    expected.set(before * (ld + 1), refused % 2 ? z.get(before) : -z.get(before));
                }
                copy(expected, actual);
                copy(x, y);
                int info = -1;
                ASSERT_EQ(reference::cholupd(job, n, nlead, n, expected, ld, x, tol), refused);
                blac_cholupd_(&job, &n, &nlead, &n, actual, &ld, y, &tol, &info);
                ASSERT_EQ(info, refused);
                ASSERT_TRUE(same_memory(expected, actual));
                ASSERT_TRUE(same_memory(x, y));
            }
    });
}

TEST(Cholupd, GoesOnBeyondTheRowsWhereNeitherCountIsBoundedByThem)
{
    on_every_tier([] {
        for (int n : {1, 5, 8, 9, 20})
            for (char job : {'P', 'N'}) {
                const int columns = n + 3, ld = n + 4;
                const double tol = 0.0;
                auto random = generator(static_cast<std::uint64_t>(n));
                Guarded<double> expected(extent(columns, columns, ld)), actual(extent(columns, columns, ld)),
                    x(columns), y(columns);
                fill_factor(expected, columns, ld, random, Data::Ordinary);
                for (int i = 0; i < columns; ++i)
                    x.set(i, 0.05 * ordinary(random));
                copy(expected, actual);
                copy(x, y);
                int info = -1;
                ASSERT_EQ(reference::cholupd(job, n, columns, columns, expected, ld, x, tol), 0);
                blac_cholupd_(&job, &n, &columns, &columns, actual, &ld, y, &tol, &info);
                ASSERT_EQ(info, 0);
                ASSERT_TRUE(same_memory(expected, actual)) << n << job;
                ASSERT_TRUE(same_memory(x, y)) << n << job;
            }
    });
}

// Long columns go four at a time.
TEST(Cholupd, GivesTheBitsOfThePlainLoopForLongColumns)
{
    on_every_tier([] {
        std::uint64_t number = 0;
        for (int n : {513, 516, 519, 530, 1031})
            for (char job : {'P', 'N'})
                for (int nlead : {0, 7, n})
                    for (int ncol : {n, 10}) {
                        SCOPED_TRACE(::testing::Message() << "job " << job << ", n " << n << ", nlead "
                                                          << nlead << ", ncol " << ncol);
                        compare_cholupd({job, n, nlead, ncol, 0.0}, n + 1, 8, Data::Ordinary, 0.01, ++number);
                        if (::testing::Test::HasFatalFailure())
                            return;
                    }
    });
}

TEST(Cholupd, IsRefusedAtEachOfFourLongColumnsWithTheEarlierColumnsFinished)
{
    on_every_tier([] {
        const int n = 523, ld = 524;
        const double tol = 0.0;
        for (int refused : {1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, 14}) {
            SCOPED_TRACE(refused);
            auto random = generator(static_cast<std::uint64_t>(refused));
            Guarded<double> expected(extent(n, n, ld)), actual(extent(n, n, ld)), x(n), y(n);
            fill_factor(expected, n, ld, random, Data::Ordinary);
            for (int i = 0; i < n; ++i)
                x.set(i, 0.01 * ordinary(random));
            const int before = refused - 1;
            { // x as it reaches the column that shall refuse
                Guarded<double> l(extent(n, n, ld)), z(n);
                copy(expected, l);
                copy(x, z);
                ASSERT_EQ(reference::cholupd('N', n, n, before, l, ld, z, tol), 0);
                expected.set(std::int64_t{before} * (ld + 1), z.get(before));
            }
            copy(expected, actual);
            copy(x, y);
            int info = -1;
            ASSERT_EQ(reference::cholupd('N', n, n, n, expected, ld, x, tol), refused);
            blac_cholupd_("N", &n, &n, &n, actual, &ld, y, &tol, &info);
            ASSERT_EQ(info, refused);
            ASSERT_TRUE(same_memory(expected, actual));
            ASSERT_TRUE(same_memory(x, y));
        }
    });
}

// A 3×3 factor and a vector that leave nothing to rounding.
struct Small
{
    double l[9] = {4.0, 2.0, 1.0, NAN, 8.0, 3.0, NAN, NAN, 2.0}, x[3] = {3.0, 5.0, 7.0};
    int info = -1;

    Small& run(char job, int nlead, int ncol, double tol = 0.0)
    {
        const int n = 3;
        blac_cholupd_(&job, &n, &nlead, &ncol, l, &n, x, &tol, &info);
        return *this;
    }
    bool operator==(const Small& other) const
    {
        return info == other.info && std::memcmp(l, other.l, sizeof l) == 0 &&
               std::memcmp(x, other.x, sizeof x) == 0;
    }
    bool unchanged() const
    {
        const Small fresh;
        return std::memcmp(l, fresh.l, sizeof l) == 0 && std::memcmp(x, fresh.x, sizeof x) == 0;
    }
};

TEST(Cholupd, RotatesAsTheFormulasSay)
{
    on_every_tier([] {
        const Small s = Small().run('P', 3, 1); // t = 3/4, c = 5/4
        EXPECT_EQ(s.info, 0);
        EXPECT_EQ(s.l[0], 5.0);
        EXPECT_EQ(s.l[1], (0.75 * 5.0 + 2.0) / 1.25);
        EXPECT_EQ(s.x[1], 5.0 * 1.25 - s.l[1] * 0.75);
        Small h; // t = 3/5, c = 4/5
        h.l[0] = 5.0;
        h.run('N', 3, 1);
        EXPECT_EQ(h.info, 0);
        const double t = 3.0 / 5.0, c = std::sqrt(1.0 - t * t);
        EXPECT_EQ(h.l[0], 5.0 * c);
        EXPECT_EQ(h.l[2], (1.0 - t * 7.0) / c);
        EXPECT_EQ(h.x[2], 7.0 * c - t * h.l[2]);
        EXPECT_EQ(h.x[0], 3.0) << "x(j) is only read";
    });
}

TEST(Cholupd, TakesLowerCaseJobs)
{
    on_every_tier([] {
        EXPECT_TRUE(Small().run('p', 3, 3) == Small().run('P', 3, 3));
        EXPECT_TRUE(Small().run('n', 0, 3) == Small().run('N', 0, 3));
        EXPECT_FALSE(Small().run('p', 3, 3).unchanged());
        EXPECT_FALSE(Small().run('n', 0, 3).unchanged());
    });
}

TEST(Cholupd, DoesNothingForAnUnknownJob)
{
    on_every_tier([] {
        for (char job : {'X', 'T', ' ', '\0'}) {
            const Small s = Small().run(job, 3, 3);
            EXPECT_TRUE(s.unchanged());
            EXPECT_EQ(s.info, 0);
        }
    });
}

TEST(Cholupd, ChangesNothingForNoColumns)
{
    on_every_tier([] {
        for (char job : {'P', 'N'})
            for (int ncol : {0, -1}) {
                const Small s = Small().run(job, 3, ncol);
                EXPECT_TRUE(s.unchanged());
                EXPECT_EQ(s.info, 0);
            }
    });
}

TEST(Cholupd, UpdatesWithoutRefusalWhenAllColumnsArePositive)
{
    on_every_tier([] {
        Small s;
        s.x[0] = 1e100; // far beyond any diagonal
        s.run('P', 3, 3, 0.5);
        EXPECT_EQ(s.info, 0);
        EXPECT_EQ(s.l[0], 1e100);
    });
}

TEST(Cholupd, TakesHyperbolicRotationsInAllColumnsWhenNoneLeads)
{
    on_every_tier([] {
        // Adding to -L·Lᵀ is the downdate of L·Lᵀ, which refuses at column 2 here: 5 > 8·(1 - tol) after
        // column 1.
        EXPECT_TRUE(Small().run('P', 0, 3) == Small().run('N', 3, 3));
        Small s;
        s.x[0] = 4.0;
        EXPECT_EQ(s.run('P', 0, 3).info, 1);
    });
}

TEST(Cholupd, RefusesADowndateAtOnceWhenTheFirstQuotientIsOne)
{
    on_every_tier([] {
        for (double sign : {1.0, -1.0})
            for (double tol : {0.0, 0.25}) {
                Small s;
                s.x[0] = sign * s.l[0];
                const Small before = s;
                s.run('N', 3, 3, tol);
                EXPECT_EQ(s.info, 1);
                EXPECT_EQ(std::memcmp(s.l, before.l, sizeof s.l), 0);
                EXPECT_EQ(std::memcmp(s.x, before.x, sizeof s.x), 0);
            }
    });
}

TEST(Cholupd, WithoutToleranceRefusesOnlyQuotientsOfOneAndMore)
{
    on_every_tier([] {
        Small s;
        s.x[0] = std::nextafter(4.0, 0.0);
        s.x[1] = s.x[2] = 0.0;
        EXPECT_EQ(s.run('N', 3, 1).info, 0);
        s.x[0] = 4.0;
        s.l[0] = 4.0;
        EXPECT_EQ(s.run('N', 3, 1).info, 1);
    });
}

TEST(Cholupd, RefusesAQuotientThatEqualsTheMargin)
{
    on_every_tier([] {
        Small s; // t = 3/4 = 1 - tol
        EXPECT_EQ(s.run('N', 3, 3, 0.25).info, 1);
        EXPECT_TRUE(s.unchanged());
        EXPECT_EQ(Small().run('N', 3, 1, 0.25 - 0x1p-52).info, 0);
    });
}

TEST(Cholupd, LetsANaNQuotientRunOn)
{
    on_every_tier([] {
        Small s;
        s.x[0] = NAN;
        s.run('N', 3, 3);
        EXPECT_EQ(s.info, 0);
        EXPECT_TRUE(std::isnan(s.l[0]) && std::isnan(s.l[2]) && std::isnan(s.l[8]) && std::isnan(s.x[2]));
        Small zero; // 0/0
        zero.l[0] = zero.x[0] = 0.0;
        zero.run('N', 3, 3);
        EXPECT_EQ(zero.info, 0);
        EXPECT_TRUE(std::isnan(zero.l[0]) && std::isnan(zero.l[8]));
    });
}

TEST(Cholupd, RefusesAnInfiniteQuotientInTheHyperbolicCaseOnly)
{
    on_every_tier([] {
        Small s; // 3/0
        s.l[0] = 0.0;
        EXPECT_EQ(s.run('N', 3, 3).info, 1);
        EXPECT_EQ(s.run('P', 3, 3).info, 0);
        EXPECT_TRUE(std::isnan(s.l[0])) << "0·inf";
    });
}

TEST(Cholupd, LeavesTheTrailingColumnsAndReturnsTheRotatedRest)
{
    on_every_tier([] {
        const Small one = Small().run('P', 3, 1), all = Small().run('P', 3, 3), fresh;
        EXPECT_EQ(std::memcmp(one.l, all.l, 3 * sizeof(double)), 0);
        EXPECT_EQ(std::memcmp(one.l + 3, fresh.l + 3, 6 * sizeof(double)), 0);
        EXPECT_NE(one.x[1], fresh.x[1]);
        EXPECT_NE(one.x[2], fresh.x[2]);
        // The second call on the rest continues where the first stopped.
        Small rest = one;
        const char job = 'P';
        const int n = 2, ld = 3;
        const double tol = 0.0;
        blac_cholupd_(&job, &n, &n, &n, rest.l + 4, &ld, rest.x + 1, &tol, &rest.info);
        EXPECT_TRUE(rest == all);
    });
}

TEST(Cholupd, AddressesColumnsBeyondTwoToThe31Elements)
{
    on_every_tier([] {
        const int n = 3, ld = 1 << 30;
        const std::size_t size = (2 * std::size_t{1 << 30} + 3) * sizeof(double);
        void* const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED)
            GTEST_SKIP() << "no address space";
        double *const wide = static_cast<double*>(memory), x[] = {3.0, 5.0, 7.0}, tol = 0.0;
        Small s;
        for (std::int64_t j = 0; j < 3; ++j)
            for (std::int64_t i = j; i < 3; ++i)
                wide[i + j * ld] = s.l[i + 3 * j];
        s.run('P', 3, 3);
        int info;
        blac_cholupd_("P", &n, &n, &n, wide, &ld, x, &tol, &info);
        for (std::int64_t j = 0; j < 3; ++j)
            for (std::int64_t i = j; i < 3; ++i)
                EXPECT_EQ(bits(wide[i + j * ld]), bits(s.l[i + 3 * j]));
        munmap(memory, size);
    });
}

// ---------------------------------------------------------------------------------------------------------------------

struct OneThread : ::testing::Test
{
    int threads = blaC_get_num_threads();
    OneThread() { blaC_set_num_threads(1); }
    ~OneThread() override { blaC_set_num_threads(threads); }
};
struct Dchud : OneThread
{
};
struct Dchdd : OneThread
{
};

void compare_dchud(int p, int ld, std::size_t gap, Data data, std::uint64_t number)
{
    SCOPED_TRACE(::testing::Message() << "p " << p << ", ld " << ld << ", gap " << gap);
    auto random = generator(number);
    Guarded<double> expected(extent(p, p, ld), gap), actual(extent(p, p, ld), gap), x(p, gap), c(p, gap),
        s(p, gap), expected_c(p, gap), expected_s(p, gap);
    fill_factor(expected, p, ld, random, data);
    fill(x, random, data);
    copy(expected, actual);
    mprotect(x.pages().begin(), x.pages().size(), PROT_READ);
    reference::dchud(expected, ld, p, x, expected_c, expected_s);
    blac_dchud_(actual, &ld, &p, x, c, s);
    ASSERT_TRUE(same_memory(expected, actual));
    ASSERT_TRUE(same_memory(expected_c, c));
    ASSERT_TRUE(same_memory(expected_s, s));
}

// Returns info of the plain loop.
int compare_dchdd(int p, int ld, std::size_t gap, Data data, double x_scale, std::uint64_t number)
{
    SCOPED_TRACE(::testing::Message() << "p " << p << ", ld " << ld << ", gap " << gap);
    auto random = generator(number);
    Guarded<double> expected(extent(p, p, ld), gap), actual(extent(p, p, ld), gap), x(p, gap), c(p, gap),
        s(p, gap), expected_c(p, gap), expected_s(p, gap);
    fill_factor(expected, p, ld, random, data);
    for (int i = 0; i < p; ++i)
        x.set(i, x_scale * draw(random, data));
    copy(expected, actual);
    mprotect(x.pages().begin(), x.pages().size(), PROT_READ);
    int info = 7;
    const int expected_info = reference::dchdd(expected, ld, p, x, expected_c, expected_s);
    blac_dchdd_(actual, &ld, &p, x, c, s, &info);
    EXPECT_EQ(info, expected_info);
    EXPECT_TRUE(same_memory(expected, actual));
    EXPECT_TRUE(same_memory(expected_c, c));
    EXPECT_TRUE(same_memory(expected_s, s));
    return expected_info;
}

TEST_F(Dchud, GivesTheBitsOfThePlainLoop)
{
    for (int p : Sizes)
        sweep_layouts(p, [&](int ld, std::size_t gap, Data data) {
            compare_dchud(p, ld, gap, data, static_cast<std::uint64_t>(p));
        });
    for (int p : {130, 255, 256, 257, 300, 511, 512, 513, 600, 1030})
        compare_dchud(p, p + 1, 0, Data::Ordinary, static_cast<std::uint64_t>(p));
}

TEST_F(Dchdd, GivesTheBitsOfThePlainLoop)
{
    int done = 0, refused = 0;
    const auto count = [&](int info) { ++(info == 0 ? done : refused); };
    for (int p : Sizes)
        sweep_layouts(p, [&](int ld, std::size_t gap, Data data) {
            count(compare_dchdd(p, ld, gap, data, 0.05, static_cast<std::uint64_t>(p)));
            count(compare_dchdd(p, ld, gap, data, 4.0, static_cast<std::uint64_t>(p)));
        });
    for (int p : {130, 255, 256, 257, 300, 511, 512, 513, 600, 1030})
        count(compare_dchdd(p, p + 1, 0, Data::Ordinary, 1e-3, static_cast<std::uint64_t>(p)));
    EXPECT_GT(done, 100);
    EXPECT_GT(refused, 100);
}

TEST_F(Dchud, OfOrderZeroTouchesNothing)
{
    for (int p : {0, -1}) {
        const int ld = 1;
        blac_dchud_(nullptr, &ld, &p, nullptr, nullptr, nullptr);
    }
}

TEST_F(Dchdd, OfOrderZeroStillWritesTheFirstQuotient)
{
    for (int p : {0, -1}) {
        const int ld = 1;
        Guarded<double> l(1), x(1), s(1);
        l.set(0, 4.0);
        x.set(0, 3.0);
        int info = 7;
        blac_dchdd_(l, &ld, &p, x, nullptr, s, &info);
        EXPECT_EQ(info, 0);
        EXPECT_EQ(l.get(0), 4.0);
        EXPECT_EQ(s.get(0), 0.75);
    }
}

struct One
{
    double l = 5.0, c = -9.0, s = -9.0;
    int info = 7;

    explicit One(double x)
    {
        const int p = 1;
        blac_dchdd_(&l, &p, &p, &x, &c, &s, &info);
    }
};

TEST_F(Dchdd, OfOrderOneScalesTheDiagonalByTheCosine)
{
    const One one(3.0);
    const double q = 3.0 / 5.0, alpha = std::sqrt(1.0 - q * q), sigma = alpha + q;
    const double a = alpha / sigma, b = q / sigma, rho = std::sqrt(a * a + b * b);
    EXPECT_EQ(one.info, 0);
    EXPECT_EQ(bits(one.c), bits(a / rho));
    EXPECT_EQ(bits(one.s), bits(b / rho));
    EXPECT_EQ(bits(one.l), bits(one.c * 5.0));
}

TEST_F(Dchdd, OfOrderOneIsRefusedWhenTheQuotientIsOneOrMore)
{
    for (double x : {5.0, -5.0, 6.0, double(INFINITY), double(NAN)}) {
        const One one(x);
        EXPECT_EQ(one.info, -1) << x;
        EXPECT_EQ(one.l, 5.0) << x;
        EXPECT_EQ(one.c, -9.0) << x;
        EXPECT_TRUE(same(one.s, x / 5.0, NaNs::Alike)) << x;
    }
    EXPECT_EQ(One(std::nextafter(5.0, 0.0)).info, 0);
}

TEST_F(Dchud, WithXZeroLeavesTheFactorAndReturnsNoRotation)
{
    const int p = 9;
    std::vector<double> l(81, 2.0), x(9, 0.0), c(9, -9.0), s(9, -9.0);
    for (std::size_t i = 0; i < l.size(); ++i)
        l[i] = static_cast<double>(i + 1);
    const std::vector<double> before = l;
    blac_dchud_(l.data(), &p, &p, x.data(), c.data(), s.data());
    EXPECT_EQ(l, before);
    EXPECT_EQ(c, std::vector<double>(9, 1.0));
    EXPECT_EQ(s, std::vector<double>(9, 0.0));
    int info = 7;
    std::fill(c.begin(), c.end(), -9.0);
    std::fill(s.begin(), s.end(), -9.0);
    blac_dchdd_(l.data(), &p, &p, x.data(), c.data(), s.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(l, before);
    EXPECT_EQ(c, std::vector<double>(9, 1.0));
    EXPECT_EQ(s, std::vector<double>(9, 0.0));
}

TEST_F(Dchud, TakesTheSignOfTheLargerElementForTheDiagonal)
{
    const int p = 1;
    for (auto [diagonal, x, r] : {std::tuple{3.0, -4.0, -5.0}, {-4.0, 3.0, -5.0}, {3.0, 4.0, 5.0}}) {
        double l = diagonal, c, s;
        blac_dchud_(&l, &p, &p, &x, &c, &s);
        EXPECT_DOUBLE_EQ(l, r);
    }
}

TEST_F(Dchud, HandsAZeroDiagonalToTheRotationOfTheLibrary)
{
    const int p = 2;
    double l[] = {0.0, 1.0, NAN, 0.0}, x[] = {2.0, 3.0}, c[2], s[2];
    blac_dchud_(l, &p, &p, x, c, s);
    EXPECT_EQ(l[0], 2.0);
    EXPECT_EQ(l[1], 3.0);
    EXPECT_EQ(std::fabs(l[3]), 1.0);
    EXPECT_EQ(c[0], 0.0);
    EXPECT_EQ(s[0], 1.0);
}

TEST_F(Dchdd, AZeroDiagonalIsRefused)
{
    const int p = 2;
    for (double first : {0.0, 1.0}) { // 0/0 and 1/0
        double l[] = {0.0, 1.0, NAN, 1.0}, x[] = {first, 0.0}, c[2] = {-9.0, -9.0}, s[2];
        int info = 7;
        blac_dchdd_(l, &p, &p, x, c, s, &info);
        EXPECT_EQ(info, -1);
        EXPECT_EQ(l[0], 0.0);
        EXPECT_EQ(l[1], 1.0);
        EXPECT_EQ(c[0], -9.0);
        EXPECT_TRUE(same(s[0], first / 0.0, NaNs::Alike));
    }
}

TEST_F(Dchdd, RefusesTheFirstColumnOfTheFactor)
{
    for (int p : {1, 2, 7, 40}) { // L⁻¹·x is the first unit vector, of length 1 exactly
        auto random = generator(static_cast<std::uint64_t>(p));
        Guarded<double> l(p * p), before(p * p), x(p), c(p), s(p);
        fill_factor(l, p, p, random, Data::Ordinary);
        copy(l, before);
        for (int i = 0; i < p; ++i)
            x.set(i, l.get(i));
        int info = 7;
        blac_dchdd_(l, &p, &p, x, c, s, &info);
        EXPECT_EQ(info, -1);
        EXPECT_TRUE(same_memory(before, l));
        EXPECT_EQ(s.get(0), 1.0);
        for (int i = 1; i < p; ++i)
            EXPECT_EQ(s.get(i), 0.0);
        EXPECT_EQ(bits(c.get(0)), Canary) << "c is not written";
    }
}

} // namespace
