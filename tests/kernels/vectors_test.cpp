// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <array>
#include <vector>

using namespace support;

namespace {

const double Signalling = std::bit_cast<double>(std::uint64_t{0x7ff00000deadbeef});

/// A vector of n elements with an increment; for a negative one its first element stands at the end.
class Strided
{
public:
    Strided(int n, int inc, std::size_t gap)
        : array_(n < 1 ? 0 : std::int64_t{n - 1} * std::abs(inc) + 1, gap)
    {
        first_ = inc < 0 && n > 1 ? std::int64_t{n - 1} * -inc : 0;
    }
    const Guarded<double>& array() const { return array_; }
    double* first() const
    {
        return reinterpret_cast<double*>(reinterpret_cast<char*>(array_.data()) + first_ * 8);
    }

private:
    Guarded<double> array_;
    std::int64_t first_;
};

constexpr int Increments[] = {1, 2, 3, -1, -2, 0};

void copy_elements(const Guarded<double>& from, const Guarded<double>& to)
{
    for (std::int64_t i = 0; i < from.size(); ++i)
        to.set(i, from.get(i));
}

/// kernel(n, x, a) against loop(n, x, a) on a contiguous vector x with one scalar a.
template <class Kernel, class Loop>
void compare_contiguous(Kernel kernel, Loop loop, Data data, NaNs nans)
{
    on_every_tier([&] {
        for (int n : Sizes)
            for (std::size_t gap : Gaps)
                for (int round = 0; round < 4; ++round) {
                    auto random = generator(static_cast<std::uint64_t>(n * 100 + round));
                    Guarded<double> expected(n, gap), actual(n, gap), a(1, gap);
                    fill(expected, random, data);
                    copy_elements(expected, actual);
                    fill(a, random, data);
                    loop(n, expected, a);
                    kernel(n, actual, a);
                    ASSERT_TRUE(same_memory(expected, actual, nans)) << "n " << n << ", gap " << gap;
                }
    });
}

/// kernel(n, x, incx, y, incy) against loop, over all pairs of increments.
template <class Kernel, class Loop>
void compare_strided(Kernel kernel, Loop loop)
{
    on_every_tier([&] {
        for (int n : Sizes)
            for (int incx : Increments)
                for (int incy : Increments)
                    for (std::size_t gap : Gaps) {
                        auto random = generator(static_cast<std::uint64_t>(n));
                        Strided x(n, incx, gap), expected(n, incy, gap), actual(n, incy, gap);
                        fill(x.array(), random, Data::Bits);
                        loop(n, x.first(), incx, expected.first(), incy);
                        kernel(&n, x.first(), &incx, actual.first(), &incy);
                        ASSERT_TRUE(same_memory(expected.array(), actual.array(), NaNs::Exact))
                            << "n " << n << ", incx " << incx << ", incy " << incy << ", gap " << gap;
                    }
    });
}

/// kernel(n, x, incx, y, incy, z, incz) against loop, over triples of increments.
template <class Kernel, class Loop>
void compare_sums(Kernel kernel, Loop loop)
{
    const auto one = [&](int n, int incx, int incy, int incz, std::size_t gap, Data data) {
        auto random = generator(static_cast<std::uint64_t>(n));
        Strided x(n, incx, gap), y(n, incy, gap), expected(n, incz, gap), actual(n, incz, gap);
        fill(x.array(), random, data);
        fill(y.array(), random, data);
        loop(n, x.first(), incx, y.first(), incy, expected.first(), incz);
        kernel(&n, x.first(), &incx, y.first(), &incy, actual.first(), &incz);
        ASSERT_TRUE(same_memory(expected.array(), actual.array()))
            << "n " << n << ", increments " << incx << " " << incy << " " << incz << ", gap " << gap;
    };
    on_every_tier([&] {
        for (std::size_t gap : Gaps)
            for (Data data : {Data::Ordinary, Data::Special}) {
                for (int n : Sizes)
                    one(n, 1, 1, 1, gap, data);
                for (int n : {1, 2, 3, 4, 5, 9, 17, 33})
                    for (int incx : Increments)
                        for (int incy : Increments)
                            for (int incz : {1, 2, -1, 0})
                                one(n, incx, incy, incz, gap, data);
            }
    });
}

/// Calls body(expected, actual, first, second) on two equal arrays, with the places of two vectors in them
/// that lie up to eight elements apart: walks that read what they have written.
template <class Body>
void sweep_overlaps(Body body)
{
    on_every_tier([&] {
        for (int n : {1, 2, 5, 16, 40})
            for (int distance = -8; distance <= 8; ++distance)
                for (int inc : {1, -1, 2}) {
                    auto random = generator(static_cast<std::uint64_t>(n));
                    const std::int64_t size = 2 * n + 20, first = (inc < 0 ? n : 0) + 8;
                    Guarded<double> expected(size), actual(size);
                    fill(expected, random, Data::Special);
                    copy_elements(expected, actual);
                    body(n, inc, expected, actual, first, first + distance);
                    ASSERT_TRUE(same_memory(expected, actual))
                        << "n " << n << ", inc " << inc << ", distance " << distance;
                }
    });
}

TEST(Vectors, OfLengthZeroAndMinusFiveAreNeitherReadNorWritten)
{
    on_every_tier([] {
        double* const nowhere = nullptr; // reading or writing anything would fault
        const int one = 1;
        for (int n : {0, -5}) {
            const std::int64_t length = n;
            tovbla_vdasn_(&n, nowhere, nowhere);
            tovbla_bvdasn_(&length, nowhere, nowhere);
            tovbla_vdscale_(&n, nowhere, nowhere);
            tovbla_bvdscale_(&length, nowhere, nowhere);
            tovbla_vzconj_(&n, nullptr, nullptr);
            for (int inc : {one, 2, -1, 0}) {
                tovbla_vdcopyi_(&n, nowhere, &inc, nowhere, &one);
                tovbla_vdnegcopyi_(&n, nowhere, &inc, nowhere, &one);
                tovbla_vdaddi_(&n, nowhere, &inc, nowhere, &one, nowhere, &one);
                tovbla_vdnegaddi_(&n, nowhere, &inc, nowhere, &one, nowhere, &one);
            }
        }
    });
}

TEST(VectorFill, GivesTheBitsOfThePlainLoop)
{
    compare_contiguous([](int n, double* x, const double* a) { tovbla_vdasn_(&n, x, a); },
                       [](int n, double* x, const double* a) { reference::vdasn(n, x, a); }, Data::Bits,
                       NaNs::Exact);
    compare_contiguous(
        [](int n, double* x, const double* a) {
            const std::int64_t length = n;
            tovbla_bvdasn_(&length, x, a);
        },
        [](int n, double* x, const double* a) { reference::vdasn(n, x, a); }, Data::Bits, NaNs::Exact);
}

TEST(VectorFill, ReadsOnlyA32BitLength)
{
    on_every_tier([] {
        Guarded<int> n(1); // four bytes before the inaccessible page
        n.set(0, 3);
        Guarded<double> x(5);
        const double a = 7.0;
        tovbla_vdasn_(n, x, &a);
        EXPECT_EQ(x.get(2), 7.0);
        EXPECT_EQ(bits(x.get(3)), Canary);
        const std::int64_t long_length = (std::int64_t{1} << 32) + 4;
        tovbla_vdasn_(reinterpret_cast<const int*>(&long_length), x, &a);
        EXPECT_EQ(x.get(3), 7.0);
        EXPECT_EQ(bits(x.get(4)), Canary);
    });
}

TEST(VectorScale, GivesTheBitsOfThePlainLoop)
{
    for (Data data : {Data::Ordinary, Data::Special}) {
        compare_contiguous([](int n, double* x, const double* a) { tovbla_vdscale_(&n, x, a); },
                           [](int n, double* x, const reference::number* a) { reference::vdscale(n, x, *a); },
                           data, NaNs::Alike);
        compare_contiguous(
            [](int n, double* x, const double* a) {
                const std::int64_t length = n;
                tovbla_bvdscale_(&length, x, a);
            },
            [](int n, double* x, const reference::number* a) { reference::vdscale(n, x, *a); }, data,
            NaNs::Alike);
    }
}

/// 2^31 + 1 doubles: one mebibyte of memory that is mapped over and over, and a page of its own for the last
/// element.
class RepeatedArray
{
public:
    static constexpr std::int64_t Size = (std::int64_t{1} << 31) + 1, PieceSize = 1 << 17,
                                  Repetitions = (Size - 1) / PieceSize;

    RepeatedArray()
    {
        const std::size_t piece = PieceSize * 8, all = Repetitions * piece;
        const int file = memfd_create("piece", 0);
        void* const none =
            mmap(nullptr, all + Page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (file < 0 || ftruncate(file, static_cast<off_t>(piece)) != 0 || none == MAP_FAILED)
            return;
        start_ = static_cast<char*>(none);
        usable_ = true;
        for (std::size_t i = 0; i < all; i += piece)
            usable_ &= mmap(start_ + i, piece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED | MAP_POPULATE,
                            file, 0) != MAP_FAILED;
        usable_ &= mprotect(start_ + all, Page, PROT_READ | PROT_WRITE) == 0;
        close(file);
    }
    ~RepeatedArray()
    {
        if (start_)
            munmap(start_, static_cast<std::size_t>(Size - 1) * 8 + Page);
    }
    RepeatedArray(const RepeatedArray&) = delete;
    RepeatedArray& operator=(const RepeatedArray&) = delete;

    bool usable() const { return usable_; }
    double* data() const { return reinterpret_cast<double*>(start_); }

private:
    static constexpr std::size_t Page = 4096;
    char* start_ = nullptr;
    bool usable_ = false;
};

TEST(VectorFillAndScale, OfMoreThanTwoToThe31ElementsReachEveryElement)
{
    const RepeatedArray array;
    ASSERT_TRUE(array.usable());
    double* const x = array.data();
    const std::int64_t n = RepeatedArray::Size;

    const double value = 3.0;
    x[n] = 1.0;
    tovbla_bvdasn_(&n, x, &value);
    for (std::int64_t i = 0; i < RepeatedArray::PieceSize; ++i)
        ASSERT_EQ(x[i], value) << i;
    EXPECT_EQ(x[n - 1], value);
    EXPECT_EQ(x[n], 1.0) << "behind the array";

    // Every element of the piece is met once per repetition.
    const double factor = 1.0 + 0x1p-20;
    double expected = value;
    for (std::int64_t i = 0; i < RepeatedArray::Repetitions; ++i)
        reference::vdscale(1, &expected, factor);
    tovbla_bvdscale_(&n, x, &factor);
    for (std::int64_t i = 0; i < RepeatedArray::PieceSize; ++i)
        ASSERT_EQ(bits(x[i]), bits(expected)) << i;
    EXPECT_EQ(bits(x[n - 1]), bits(value * factor));
    EXPECT_EQ(x[n], 1.0) << "behind the array";
}

TEST(VectorFillAndScale, WithANegativeLengthWhoseLowHalfIsPositiveDoNothing)
{
    on_every_tier([] {
        const std::int64_t n = std::numeric_limits<std::int64_t>::min() + 5;
        tovbla_bvdasn_(&n, nullptr, nullptr);
        tovbla_bvdscale_(&n, nullptr, nullptr);
    });
}

TEST(VectorCopy, GivesTheBitsOfThePlainLoopForAllIncrements)
{
    compare_strided(tovbla_vdcopyi_, reference::vdcopyi);
}

TEST(VectorCopy, WithIncrement2GathersEveryOtherElement)
{
    const int n = 3, incx = 2, incy = 1;
    const double x[] = {1.0, 2.0, Signalling, 4.0, -0.0};
    double y[] = {9.0, 9.0, 9.0, 9.0};
    tovbla_vdcopyi_(&n, x, &incx, y, &incy);
    EXPECT_EQ(y[0], 1.0);
    EXPECT_EQ(bits(y[1]), bits(Signalling));
    EXPECT_EQ(bits(y[2]), bits(-0.0));
    EXPECT_EQ(y[3], 9.0);
}

TEST(VectorCopy, WithANegativeIncrementStartsAtTheFirstElementGiven)
{
    const int n = 3, incx = -1, incy = 1;
    const double x[] = {1.0, 2.0, 3.0};
    double y[3];
    tovbla_vdcopyi_(&n, x + 2, &incx, y, &incy);
    EXPECT_EQ(y[0], 3.0);
    EXPECT_EQ(y[2], 1.0);
}

TEST(VectorCopy, OfOverlappingVectorsGoesElementByElement)
{
    sweep_overlaps([](int n, int inc, double* expected, double* actual, std::int64_t x, std::int64_t y) {
        reference::vdcopyi(n, expected + x, inc, expected + y, inc);
        tovbla_vdcopyi_(&n, actual + x, &inc, actual + y, &inc);
    });
}

TEST(VectorNegCopy, GivesTheBitsOfThePlainLoopForAllIncrements)
{
    compare_strided(tovbla_vdnegcopyi_, reference::vdnegcopyi);
}

TEST(VectorNegCopy, InPlaceOrOverlappingGoesElementByElement)
{
    sweep_overlaps([](int n, int inc, double* expected, double* actual, std::int64_t x, std::int64_t y) {
        reference::vdnegcopyi(n, expected + x, inc, expected + y, inc);
        tovbla_vdnegcopyi_(&n, actual + x, &inc, actual + y, &inc);
    });
}

TEST(VectorAdd, GivesTheBitsOfThePlainLoopForAllIncrements)
{
    compare_sums(tovbla_vdaddi_, reference::vdaddi);
}

TEST(VectorAdd, WithOutputIncrement0LeavesTheLastSum)
{
    const int n = 3, one = 1, zero = 0;
    const double x[] = {1.0, 2.0, 3.0}, y[] = {10.0, 20.0, 30.0};
    double z[] = {0.0, 9.0};
    tovbla_vdaddi_(&n, x, &one, y, &one, z, &zero);
    EXPECT_EQ(z[0], 33.0);
    EXPECT_EQ(z[1], 9.0);
}

TEST(VectorAdd, InPlaceOrOverlappingGoesElementByElement)
{
    sweep_overlaps([](int n, int inc, double* expected, double* actual, std::int64_t x, std::int64_t z) {
        reference::vdaddi(n, expected + x, inc, expected + 8, 1, expected + z, inc);
        const int one = 1;
        tovbla_vdaddi_(&n, actual + x, &inc, actual + 8, &one, actual + z, &inc);
    });
}

TEST(VectorNegAdd, GivesTheBitsOfThePlainLoopForAllIncrements)
{
    compare_sums(tovbla_vdnegaddi_, reference::vdnegaddi);
}

/// -(x + y) as the kernel gives it, in a vector long enough for every path.
double negated_sum(double x, double y)
{
    const int n = 19, inc = 1;
    std::vector<double> xs(19, x), ys(19, y), zs(19);
    tovbla_vdnegaddi_(&n, xs.data(), &inc, ys.data(), &inc, zs.data(), &inc);
    for (double z : zs)
        EXPECT_EQ(bits(z), bits(zs[0]));
    return zs[0];
}

TEST(VectorNegAdd, OfZerosAndOfOppositeNumbersGivesMinusZero)
{
    on_every_tier([] {
        EXPECT_EQ(bits(negated_sum(0.0, 0.0)), bits(-0.0));
        EXPECT_EQ(bits(negated_sum(1.0, -1.0)), bits(-0.0));
        EXPECT_EQ(bits(negated_sum(-0.0, -0.0)), bits(0.0));
    });
}

TEST(VectorNegAdd, FlipsTheSignOfANaN)
{
    on_every_tier([] {
        for (double nan : {double(NAN), -double(NAN)}) {
            EXPECT_EQ(std::signbit(negated_sum(nan, 1.0)), !std::signbit(nan));
            EXPECT_EQ(std::signbit(negated_sum(1.0, nan)), !std::signbit(nan));
        }
    });
}

TEST(VectorNegAdd, InPlaceOrOverlappingGoesElementByElement)
{
    sweep_overlaps([](int n, int inc, double* expected, double* actual, std::int64_t x, std::int64_t z) {
        reference::vdnegaddi(n, expected + x, inc, expected + 8, 1, expected + z, inc);
        const int one = 1;
        tovbla_vdnegaddi_(&n, actual + x, &inc, actual + 8, &one, actual + z, &inc);
    });
}

const blac_complex* complex(const double* x)
{
    return reinterpret_cast<const blac_complex*>(x);
}
blac_complex* complex(double* x)
{
    return reinterpret_cast<blac_complex*>(x);
}

TEST(VectorConj, GivesTheBitsOfThePlainLoopAlsoInPlace)
{
    on_every_tier([] {
        for (int n : Sizes)
            for (std::size_t gap : Gaps) {
                auto random = generator(static_cast<std::uint64_t>(n));
                Guarded<double> x(2 * n, gap), expected(2 * n, gap), actual(2 * n, gap);
                fill(x, random, Data::Bits);
                reference::vzconj(n, x, expected);
                tovbla_vzconj_(&n, complex(x.data()), complex(actual.data()));
                ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact)) << "n " << n << ", gap " << gap;
                tovbla_vzconj_(&n, complex(x.data()), complex(x.data()));
                ASSERT_TRUE(same_memory(expected, x, NaNs::Exact)) << "in place, n " << n << ", gap " << gap;
            }
    });
}

TEST(VectorConj, FlipsTheSignOfTheImaginaryPartAlsoOfZero)
{
    on_every_tier([] {
        const int n = 1;
        double y[2];
        for (const auto& [x, imaginary] :
             {std::pair{std::array{2.0, 3.0}, -3.0}, {{2.0, -0.0}, 0.0}, {{1.0, 0.0}, -0.0}}) {
            tovbla_vzconj_(&n, complex(x.data()), complex(y));
            EXPECT_EQ(bits(y[0]), bits(x[0]));
            EXPECT_EQ(bits(y[1]), bits(imaginary));
        }
    });
}

TEST(Vectors, OfLength1To17AndUnalignedGiveTheSameBitsInEveryTier)
{
    for (int n = 1; n <= 17; ++n)
        for (std::size_t gap : Gaps) {
            std::vector<std::vector<std::uint64_t>> results; // one per tier
            on_every_tier([&] {
                auto random = generator(static_cast<std::uint64_t>(n));
                Guarded<double> x(2 * n, gap), y(2 * n, gap), z(2 * n, gap);
                fill(x, random, Data::Ordinary);
                fill(y, random, Data::Ordinary);
                const double a = ordinary(random);
                const int inc = 1, twice = 2;
                const std::int64_t length = n;
                std::vector<std::uint64_t> result;
                const auto keep = [&](const Guarded<double>& v) {
                    for (std::int64_t i = 0; i < v.size(); ++i)
                        result.push_back(bits(v.get(i)));
                };
                tovbla_vdscale_(&n, x, &a), keep(x);
                tovbla_bvdscale_(&length, y, &a), keep(y);
                tovbla_vdnegcopyi_(&n, x, &inc, z, &twice), keep(z);
                tovbla_vdnegaddi_(&n, x, &inc, y, &inc, z, &inc), keep(z);
                tovbla_vdaddi_(&n, x, &inc, y, &inc, z, &twice), keep(z);
                tovbla_vzconj_(&n, complex(x.data()), complex(z.data())), keep(z);
                tovbla_vdcopyi_(&n, x, &twice, z, &inc), keep(z);
                tovbla_vdasn_(&n, z, &a), keep(z);
                tovbla_bvdasn_(&length, y, &a), keep(y);
                results.push_back(result);
            });
            for (const auto& result : results)
                ASSERT_EQ(result, results[0]) << "n " << n << ", gap " << gap;
        }
}

} // namespace
