// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"

#include <algorithm>
#include <cfenv>
#include <vector>

using namespace support;

namespace {

// Row pointers: ascending, as a matrix has them; or anything between 0 and the number of entries, so that
// rows overlap, run backwards or are empty.
enum class Rows { Ascending, Any };

// A random m×n matrix, its arrays ending right before guard pages (or `gap` bytes before them).
struct Matrix
{
    Guarded<int> ia, ja;
    Guarded<double> a;

    Matrix(int m, int n, int entries, Rows rows, std::size_t gap, std::mt19937_64& random, Data data)
        : ia(m + 1, gap), ja(entries, gap), a(entries, gap)
    {
        std::vector<int> start(static_cast<std::size_t>(m) + 1);
        for (int& s : start)
            s = static_cast<int>(random() % static_cast<unsigned>(entries + 1));
        if (rows == Rows::Ascending)
            std::sort(start.begin(), start.end()); // the first one is seldom 0
        for (int i = 0; i <= m; ++i)
            ia.set(i, start[static_cast<std::size_t>(i)]);
        for (int p = 0; p < entries; ++p) // runs of neighbours, repeats and jumps
            ja.set(p, p > 0 && random() % 3 ? (ja.get(p - 1) + static_cast<int>(random() % 2)) % n
                                            : static_cast<int>(random() % static_cast<unsigned>(n)));
        fill(a, random, data);
    }
};

// A matrix that is written down: row pointers, columns, values.
struct Written
{
    std::vector<int> ia, ja;
    std::vector<double> a;
};

std::vector<double> umv(const Written& w, int n, const std::vector<double>& x, int nrhs = 1)
{
    const int m = static_cast<int>(w.ia.size()) - 1;
    std::vector<double> y(static_cast<std::size_t>(m) * static_cast<std::size_t>(nrhs), -777.0);
    blac_sparse_umv_(w.a.data(), x.data(), w.ia.data(), w.ja.data(), y.data(), &m, &n, &nrhs);
    return y;
}

std::vector<double> umtv(const Written& w, int n, const std::vector<double>& x, int nrhs = 1)
{
    const int m = static_cast<int>(w.ia.size()) - 1;
    std::vector<double> y(static_cast<std::size_t>(n) * static_cast<std::size_t>(nrhs), -777.0);
    blac_sparse_umtv_(w.a.data(), x.data(), w.ia.data(), w.ja.data(), y.data(), &m, &n, &nrhs);
    return y;
}

std::vector<double> sparse_umtv(const Written& w, int n, const std::vector<int>& list,
                                const std::vector<double>& x, int nrhs = 1)
{
    const int nl = static_cast<int>(list.size());
    std::vector<double> y(static_cast<std::size_t>(n) * static_cast<std::size_t>(nrhs), -777.0);
    blac_sparse_sparse_umtv_(w.a.data(), x.data(), w.ia.data(), w.ja.data(), y.data(), &nl, &n, &nrhs,
                             list.data());
    return y;
}

// Calls body(matrix, m, n, nrhs, gap, random, data) over shapes, densities, alignments and kinds of data.
template <class Body>
void sweep_matrices(Body body)
{
    std::uint64_t number = 0;
    for (int nrhs = 1; nrhs <= 25; ++nrhs)
        for (auto [m, n] : {std::pair{1, 1}, {1, 9}, {2, 5}, {3, 4}, {7, 1}, {10, 13}, {33, 30}})
            for (int per_row : {0, 1, 3, 20})
                for (Rows rows : {Rows::Ascending, Rows::Any})
                    for (Data data : {Data::Ordinary, Data::Special}) {
                        auto random = generator(++number);
                        const std::size_t gap = Gaps[number % std::size(Gaps)];
                        const Matrix matrix(m, n, m * per_row, rows, gap, random, data);
                        body(matrix, m, n, nrhs, gap, random, data);
                        if (::testing::Test::HasFatalFailure())
                            return;
                    }
}

// Address space far larger than memory. Repeated maps one window over and over, so that all of it can be
// written; Untouched costs memory only where it is written and reads as zeros elsewhere.
class Space
{
public:
    explicit operator bool() const { return begin_ != nullptr; }
    double* reals() const { return static_cast<double*>(begin_); }
    int* integers() const { return static_cast<int*>(begin_); }
    Space(const Space&) = delete;
    Space& operator=(const Space&) = delete;

protected:
    explicit Space(std::size_t size) : size_(size)
    {
        void* const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        begin_ = memory == MAP_FAILED ? nullptr : memory;
    }
    ~Space() { release(); }
    void release()
    {
        if (begin_)
            munmap(begin_, size_);
        begin_ = nullptr;
    }

    std::size_t size_;
    void* begin_;
};

class Untouched : public Space
{
public:
    explicit Untouched(std::int64_t count, std::size_t element)
        : Space(static_cast<std::size_t>(count) * element)
    {
    }
};

class Repeated : public Space
{
public:
    static constexpr std::int64_t Window = 1 << 18; // elements until the same memory comes again

    explicit Repeated(std::int64_t count) : Space(static_cast<std::size_t>((count / Window + 1) * Window) * 8)
    {
        const std::size_t window = Window * 8;
        const int file = memfd_create("window", 0);
        bool fits = *this && file >= 0 && ftruncate(file, window) == 0;
        for (std::size_t at = 0; fits && at < size_; at += window)
            fits = mmap(static_cast<char*>(begin_) + at, window, PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_FIXED | MAP_POPULATE, file, 0) != MAP_FAILED;
        close(file);
        if (!fits)
            release();
    }
};

// Rows of a matrix in which the seventh column, inside a block of eight, and the ninth, behind it, start
// beyond 2³¹ elements.
constexpr int Tall = 358000000;
static_assert(std::int64_t{6} * Tall > std::int64_t{1} << 31);

TEST(SparseUmv, GivesTheBitsOfTheColumnByColumnLoopForOneTo25Columns)
{
    sweep_matrices(
        [](const Matrix& matrix, int m, int n, int nrhs, std::size_t gap, auto& random, Data data) {
            Guarded<double> x(n * nrhs, gap), expected(m * nrhs, gap), actual(m * nrhs, gap);
            fill(x, random, data);
            reference::sparse_umv(matrix.a, x, matrix.ia, matrix.ja, expected, m, n, nrhs);
            blac_sparse_umv_(matrix.a, x, matrix.ia, matrix.ja, actual, &m, &n, &nrhs);
            ASSERT_TRUE(same_memory(expected, actual))
                << "m " << m << ", n " << n << ", nrhs " << nrhs << ", gap " << gap;
        });
}

TEST(SparseUmv, LeavesYUntouchedForNoRowsOrNoColumns)
{
    for (auto [m, nrhs] : {std::pair{0, 3}, {-2, 3}, {3, 0}, {3, -1}, {3, -9}, {0, 0}}) {
        const int n = 2;
        double* nowhere = nullptr; // reading or writing anything would fault
        blac_sparse_umv_(nowhere, nowhere, nullptr, nullptr, nowhere, &m, &n, &nrhs);
    }
}

TEST(SparseUmv, GivesPlusZeroForEmptyAndDecreasingRows)
{
    for (int nrhs : {1, 2, 5, 8, 11}) {
        const std::vector<double> x(static_cast<std::size_t>(3 * nrhs), -1.0);
        // Row 0 is empty, row 1 runs from 4 back to 1, row 2 has entries.
        const auto y = umv({{4, 4, 1, 3}, {0, 1, 2, 0}, {1.0, 2.0, 4.0, 8.0}}, 3, x, nrhs);
        for (int k = 0; k < nrhs; ++k) {
            EXPECT_EQ(bits(y[static_cast<std::size_t>(3 * k)]), bits(0.0));
            EXPECT_EQ(bits(y[static_cast<std::size_t>(3 * k + 1)]), bits(0.0));
            EXPECT_EQ(y[static_cast<std::size_t>(3 * k + 2)], -6.0);
        }
    }
}

TEST(SparseUmv, TakesEntriesAtTheAbsoluteOffsetsWhenTheFirstPointerIsNotZero)
{
    EXPECT_EQ(umv({{2, 3, 4}, {9, 9, 1, 0}, {NAN, NAN, 3.0, 5.0}}, 2, {10.0, 20.0}),
              (std::vector<double>{60.0, 50.0}));
}

TEST(SparseUmv, SumsRepeatedColumnsInStorageOrder)
{
    // (1e16 + 1) + 1 = 1e16, while 1e16 + (1 + 1) and (1 + 1) + 1e16 = 1e16 + 2.
    for (int nrhs = 1; nrhs <= 17; ++nrhs) {
        const std::vector<double> x(static_cast<std::size_t>(nrhs), 1.0);
        for (double sum : umv({{0, 3}, {0, 0, 0}, {1e16, 1.0, 1.0}}, 1, x, nrhs))
            ASSERT_EQ(sum, 1e16) << nrhs;
        for (double sum : umv({{0, 3}, {0, 0, 0}, {1.0, 1.0, 1e16}}, 1, x, nrhs))
            ASSERT_EQ(sum, 1e16 + 2.0) << nrhs;
    }
}

TEST(SparseUmv, SumsUnsortedColumnsInStorageOrder)
{
    for (int nrhs = 1; nrhs <= 17; ++nrhs) {
        std::vector<double> x;
        for (int k = 0; k < nrhs; ++k)
            x.insert(x.end(), {1.0, 1e16, 1.0});
        for (double sum : umv({{0, 3}, {1, 2, 0}, {1.0, 1.0, 1.0}}, 3, x, nrhs))
            ASSERT_EQ(sum, 1e16) << nrhs;
    }
}

TEST(SparseUmv, GivesPlusZeroForASingleProductOfMinusZero)
{
    for (int nrhs = 1; nrhs <= 9; ++nrhs)
        for (double sum :
             umv({{0, 1}, {0}, {-1.0}}, 1, std::vector<double>(static_cast<std::size_t>(nrhs), 0.0), nrhs))
            ASSERT_EQ(bits(sum), bits(0.0));
}

TEST(SparseUmv, RoundsEachProductBeforeItIsAdded)
{
    // (1 + 2⁻³⁰)² rounds to 1 + 2⁻²⁹; a fused product and sum would leave 2⁻⁶⁰.
    for (int nrhs = 1; nrhs <= 9; ++nrhs) {
        std::vector<double> x;
        for (int k = 0; k < nrhs; ++k)
            x.insert(x.end(), {1.0, 1.0 + 0x1p-30});
        for (double sum : umv({{0, 2}, {0, 1}, {-1.0 - 0x1p-29, 1.0 + 0x1p-30}}, 2, x, nrhs))
            ASSERT_EQ(bits(sum), bits(0.0));
    }
}

TEST(SparseUmv, DropsNoProductWithZero)
{
    EXPECT_TRUE(std::isnan(umv({{0, 1}, {0}, {0.0}}, 1, {INFINITY})[0]));
    EXPECT_TRUE(std::isnan(umv({{0, 1}, {0}, {NAN}}, 1, {0.0})[0]));
}

TEST(SparseUmv, AddressesXBeyondTwoToThe31Elements)
{
    const int m = 1, n = Tall, nrhs = 9, ia[] = {0, 2}, ja[] = {0, n - 1};
    const double a[] = {1.0, 1.0};
    const Untouched x(std::int64_t{n} * nrhs, sizeof(double));
    if (!x)
        GTEST_SKIP() << "no address space";
    for (std::int64_t k = 0; k < nrhs; ++k) {
        x.reals()[k * n] = static_cast<double>(k);
        x.reals()[k * n + n - 1] = 10.0 * static_cast<double>(k);
    }
    double y[nrhs] = {};
    blac_sparse_umv_(a, x.reals(), ia, ja, y, &m, &n, &nrhs);
    for (int k = 0; k < nrhs; ++k)
        EXPECT_EQ(y[k], 11.0 * k);
}

TEST(SparseUmv, AddressesYBeyondTwoToThe31Elements)
{
    // All rows are empty but the last.
    const int m = Tall, n = 1, nrhs = 9, ja[] = {0};
    const double a[] = {2.0}, x[] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0};
    const Repeated y(std::int64_t{m} * nrhs);
    const Untouched ia(std::int64_t{m} + 1, sizeof(int));
    if (!y || !ia)
        GTEST_SKIP() << "no address space";
    ia.integers()[m] = 1;
    y.reals()[0] = y.reals()[Repeated::Window - 1] = -1.0;
    blac_sparse_umv_(a, x, ia.integers(), ja, y.reals(), &m, &n, &nrhs);
    const std::int64_t last = std::int64_t{m} * nrhs - 1;
    EXPECT_EQ(y.reals()[last], 18.0);
    EXPECT_EQ(y.reals()[last - 1], 0.0);
    EXPECT_EQ(y.reals()[0], 0.0);
}

TEST(SparseUmtv, GivesTheBitsOfTheColumnByColumnLoopForOneTo25Columns)
{
    sweep_matrices(
        [](const Matrix& matrix, int m, int n, int nrhs, std::size_t gap, auto& random, Data data) {
            Guarded<double> x(m * nrhs, gap), expected(n * nrhs, gap), actual(n * nrhs, gap);
            fill(x, random, data);
            reference::sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, expected, m, n, nrhs);
            blac_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, actual, &m, &n, &nrhs);
            ASSERT_TRUE(same_memory(expected, actual))
                << "m " << m << ", n " << n << ", nrhs " << nrhs << ", gap " << gap;
        });
}

TEST(SparseSparseUmtv, GivesTheBitsOfTheColumnByColumnLoopForOneTo25Columns)
{
    sweep_matrices(
        [](const Matrix& matrix, int m, int n, int nrhs, std::size_t gap, auto& random, Data data) {
            const int nl = static_cast<int>(random() % 12);
            Guarded<int> list(nl, gap); // any order, with repeats
            for (int r = 0; r < nl; ++r)
                list.set(r, static_cast<int>(random() % static_cast<unsigned>(m)));
            Guarded<double> x(nl * nrhs, gap), expected(n * nrhs, gap), actual(n * nrhs, gap);
            fill(x, random, data);
            reference::sparse_sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, expected, nl, n, nrhs, list);
            blac_sparse_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, actual, &nl, &n, &nrhs, list);
            ASSERT_TRUE(same_memory(expected, actual))
                << "nl " << nl << ", n " << n << ", nrhs " << nrhs << ", gap " << gap;
        });
}

TEST(SparseUmtv, ClearsYToPlusZeroWhenThereAreNoRows)
{
    for (int m : {0, -3})
        for (int nrhs : {1, 3, 8, 10}) {
            const int n = 5;
            Guarded<double> expected(n * nrhs), full(n * nrhs), listed(n * nrhs);
            for (int i = 0; i < n * nrhs; ++i)
                expected.set(i, 0.0);
            blac_sparse_umtv_(nullptr, nullptr, nullptr, nullptr, full, &m, &n, &nrhs);
            blac_sparse_sparse_umtv_(nullptr, nullptr, nullptr, nullptr, listed, &m, &n, &nrhs, nullptr);
            EXPECT_TRUE(same_memory(expected, full));
            EXPECT_TRUE(same_memory(expected, listed));
        }
}

TEST(SparseUmtv, LeavesYUntouchedForNoColumnsOfX)
{
    for (int nrhs : {0, -1, -8})
        for (int n : {2, 0, -2}) {
            const int m = 3;
            double* nowhere = nullptr; // reading or writing anything would fault
            blac_sparse_umtv_(nowhere, nowhere, nullptr, nullptr, nowhere, &m, &n, &nrhs);
            blac_sparse_sparse_umtv_(nowhere, nowhere, nullptr, nullptr, nowhere, &m, &n, &nrhs, nullptr);
        }
}

TEST(SparseUmtv, GivesPlusZeroForAColumnWithoutEntries)
{
    for (int nrhs : {1, 2, 7, 8, 9}) {
        const std::vector<double> x(static_cast<std::size_t>(2 * nrhs), -1.0);
        const Written a{{0, 1, 2}, {0, 2}, {3.0, 4.0}};
        for (const auto& y : {umtv(a, 3, x, nrhs), sparse_umtv(a, 3, {0, 1}, x, nrhs)})
            for (int k = 0; k < nrhs; ++k) {
                EXPECT_EQ(y[static_cast<std::size_t>(3 * k)], -3.0);
                EXPECT_EQ(bits(y[static_cast<std::size_t>(3 * k + 1)]), bits(0.0));
                EXPECT_EQ(y[static_cast<std::size_t>(3 * k + 2)], -4.0);
            }
    }
}

TEST(SparseUmtv, ReadsNoXForAnEmptyRow)
{
    const int m = 3, n = 2, nrhs = 9, ia[] = {4, 4, 3, 3}, list[] = {0, 1, 2};
    double full[18], listed[18];
    blac_sparse_umtv_(nullptr, nullptr, ia, nullptr, full, &m, &n, &nrhs);
    blac_sparse_sparse_umtv_(nullptr, nullptr, ia, nullptr, listed, &m, &n, &nrhs, list);
    for (int i = 0; i < 18; ++i) {
        EXPECT_EQ(bits(full[i]), bits(0.0));
        EXPECT_EQ(bits(listed[i]), bits(0.0));
    }
    // Rows 0 and 2 are empty, 2 by a decreasing pointer.
    EXPECT_EQ(umtv({{1, 1, 3, 2}, {9, 0, 1}, {9.0, 2.0, 3.0}}, 2, {NAN, 10.0, NAN}),
              (std::vector<double>{20.0, 30.0}));
}

TEST(SparseUmtv, TakesEntriesAtTheAbsoluteOffsetsWhenTheFirstPointerIsNotZero)
{
    const Written a{{2, 3, 4}, {9, 9, 1, 0}, {NAN, NAN, 3.0, 5.0}};
    EXPECT_EQ(umtv(a, 2, {10.0, 20.0}), (std::vector<double>{100.0, 30.0}));
    EXPECT_EQ(sparse_umtv(a, 2, {1, 0}, {10.0, 20.0}), (std::vector<double>{50.0, 60.0}));
}

TEST(SparseUmtv, AddsRepeatedColumnsInStorageOrder)
{
    for (int nrhs = 1; nrhs <= 17; ++nrhs) {
        const std::vector<double> x(static_cast<std::size_t>(nrhs), 1.0);
        for (double y : umtv({{0, 3}, {0, 0, 0}, {1e16, 1.0, 1.0}}, 1, x, nrhs))
            ASSERT_EQ(y, 1e16) << nrhs;
        for (double y : umtv({{0, 3}, {0, 0, 0}, {1.0, 1.0, 1e16}}, 1, x, nrhs))
            ASSERT_EQ(y, 1e16 + 2.0) << nrhs;
    }
}

TEST(SparseUmtv, AddsTheRowsInAscendingOrder)
{
    for (int nrhs = 1; nrhs <= 17; ++nrhs) {
        const std::vector<double> x(static_cast<std::size_t>(3 * nrhs), 1.0);
        for (double y : umtv({{0, 1, 2, 3}, {0, 0, 0}, {1e16, 1.0, 1.0}}, 1, x, nrhs))
            ASSERT_EQ(y, 1e16) << nrhs;
        for (double y : umtv({{0, 1, 2, 3}, {0, 0, 0}, {1.0, 1.0, 1e16}}, 1, x, nrhs))
            ASSERT_EQ(y, 1e16 + 2.0) << nrhs;
    }
}

TEST(SparseSparseUmtv, AddsARowListedTwiceTwiceInListOrder)
{
    const Written a{{0, 1, 3}, {0, 0, 1}, {5.0, 1.0, 2.0}};
    EXPECT_EQ(sparse_umtv(a, 2, {1, 1}, {10.0, 100.0}), (std::vector<double>{110.0, 220.0}));
    for (int nrhs = 1; nrhs <= 17; ++nrhs) { // X has the rows 1e16, 1, 1 or 1, 1, 1e16
        std::vector<double> falling, rising;
        for (int k = 0; k < nrhs; ++k) {
            falling.insert(falling.end(), {1e16, 1.0, 1.0});
            rising.insert(rising.end(), {1.0, 1.0, 1e16});
        }
        for (double y : sparse_umtv({{0, 1}, {0}, {1.0}}, 1, {0, 0, 0}, falling, nrhs))
            ASSERT_EQ(y, 1e16);
        for (double y : sparse_umtv({{0, 1}, {0}, {1.0}}, 1, {0, 0, 0}, rising, nrhs))
            ASSERT_EQ(y, 1e16 + 2.0);
    }
}

// Y is not cleared when n < 1, so that a -0 in it can be seen: with it, (-0 + 0) + -0 is +0 and not -0. With
// n = 0 all columns are Y as it stands.
TEST(SparseUmtv, AddsPlusZeroToEachProductInEveryRoundingMode)
{
    for (int mode : {FE_TONEAREST, FE_UPWARD, FE_TOWARDZERO, FE_DOWNWARD})
        for (double value : {1.0, -1.0})
            for (int nrhs = 1; nrhs <= 9; ++nrhs) {
                SCOPED_TRACE(::testing::Message()
                             << "mode " << mode << ", value " << value << ", nrhs " << nrhs);
                const int m = 1, n = 0, ia[] = {0, 5}, ja[] = {0, 1, 2, 3, 5}, list[] = {0};
                const double x[9] = {}, a[] = {value, value, value, value, value};
                double full[] = {-0.0, -0.0, 0.0, -0.0, 7.0, -0.0},
                       listed[] = {-0.0, -0.0, 0.0, -0.0, 7.0, -0.0};
                double expected[] = {-0.0, -0.0, 0.0, -0.0, 7.0, -0.0};
                std::fesetround(mode);
                reference::sparse_umtv(a, x, ia, ja, expected, m, n, nrhs);
                blac_sparse_umtv_(a, x, ia, ja, full, &m, &n, &nrhs);
                blac_sparse_sparse_umtv_(a, x, ia, ja, listed, &m, &n, &nrhs, list);
                std::fesetround(FE_TONEAREST);
                for (int i = 0; i < 6; ++i) {
                    EXPECT_EQ(bits(full[i]), bits(expected[i])) << "element " << i;
                    EXPECT_EQ(bits(listed[i]), bits(expected[i])) << "element " << i;
                }
                EXPECT_EQ(bits(full[0]), bits(mode == FE_DOWNWARD ? -0.0 : 0.0));
            }
}

TEST(SparseUmtv, AddsToYWithoutClearingItWhenNIsBelowOne)
{
    for (int n : {0, -1, -2})
        for (int nrhs = 1; nrhs <= 10; ++nrhs)
            for (int first : {0, 1}) { // neighbouring columns, aligned either way
                auto random = generator(static_cast<std::uint64_t>(100 * nrhs - n));
                const int m = 2, ia[] = {0, 5, 8}, ja[] = {first, first + 1, first + 2, 7, 8, 3, 3, 4};
                Guarded<double> a(8), x(m * nrhs), expected(40), actual(40);
                fill(a, random, Data::Ordinary);
                fill(x, random, Data::Ordinary);
                for (int i = 0; i < 40; ++i)
                    expected.set(i, ordinary(random)), actual.set(i, expected.get(i));
                // Columns of Y lie on one another; plain order is entry by entry, then column by column.
                double* const y = expected + 25;
                for (int k0 = 0; k0 < nrhs; k0 += 8)
                    for (int i = 0; i < m; ++i)
                        for (int p = ia[i]; p < ia[i + 1]; ++p)
                            for (int k = k0; k < std::min(k0 + 8, nrhs); ++k)
                                y[ja[p] + k * n] = (a[p] * x[i + k * m] + 0.0) + y[ja[p] + k * n];
                blac_sparse_umtv_(a, x, ia, ja, actual + 25, &m, &n, &nrhs);
                ASSERT_TRUE(same_memory(expected, actual)) << "n " << n << ", nrhs " << nrhs;
            }
}

// Denormals treated as this thread's control word says while it lives: results flushed (0x8000), operands
// taken for zero (0x0040).
class Denormals
{
public:
    explicit Denormals(unsigned bits) : before_(__builtin_ia32_stmxcsr())
    {
        __builtin_ia32_ldmxcsr((before_ & ~0x8040u) | bits);
    }
    ~Denormals() { __builtin_ia32_ldmxcsr(before_); }
    Denormals(const Denormals&) = delete;
    Denormals& operator=(const Denormals&) = delete;

private:
    unsigned before_;
};

constexpr unsigned TreatmentsOfDenormals[] = {0x0000, 0x8000, 0x0040, 0x8040};

TEST(SparseUmtv, AddsPlusZeroToAProductOfMinusZeroAlsoWhereATinySumBecameMinusZero)
{
    // 2⁻¹⁰²² - 1.5·2⁻¹⁰²² is -2⁻¹⁰²³, or -0 where results are flushed; then comes a product of -0. Where
    // operands are taken for zero, the sum of +0 and -2⁻¹⁰²³ is +0.
    for (unsigned treatment : TreatmentsOfDenormals)
        for (int nrhs = 1; nrhs <= 17; ++nrhs)
            for (bool neighbours : {false, true}) {
                const std::vector<double> x(static_cast<std::size_t>(3 * nrhs), 1.0);
                const Written w =
                    neighbours ? Written{{0, 2, 4, 6},
                                         {0, 1, 0, 1, 0, 1},
                                         {0x1p-1022, 0x1p-1022, -0x1.8p-1022, -0x1.8p-1022, -0.0, -0.0}}
                               : Written{{0, 1, 2, 3}, {0, 0, 0}, {0x1p-1022, -0x1.8p-1022, -0.0}};
                std::vector<double> full, listed;
                {
                    const Denormals denormals(treatment);
                    full = umtv(w, 2, x, nrhs);
                    listed = sparse_umtv(w, 2, {0, 1, 2}, x, nrhs);
                }
                const double sum = treatment == 0 ? -0x1p-1023 : 0.0;
                for (int k = 0; k < nrhs; ++k) {
                    ASSERT_EQ(bits(full[static_cast<std::size_t>(2 * k)]), bits(sum))
                        << std::hex << treatment << ", nrhs " << std::dec << nrhs;
                    ASSERT_EQ(bits(listed[static_cast<std::size_t>(2 * k)]), bits(sum));
                }
            }
}

// Of a small matrix, and of one that no cache holds.
TEST(SparseUmtv, GivesTheBitsOfThePlainLoopInEveryRoundingModeAndTreatmentOfDenormals)
{
    struct Case
    {
        int m, n, per_row, most_columns;
    };
    int lost = 0; // results that the treatment changed
    for (auto [m, n, per_row, most_columns] : {Case{40, 5, 8, 17}, {4400, 3000, 30, 3}})
        for (int nrhs = 1; nrhs <= most_columns; ++nrhs) {
            auto random = generator(static_cast<std::uint64_t>(nrhs));
            const Matrix matrix(m, n, per_row * m, Rows::Ascending, 0, random, Data::Ordinary);
            matrix.ia.set(0, 0);
            matrix.ia.set(m, per_row * m);
            Guarded<double> x(m * nrhs), expected(n * nrhs), actual(n * nrhs), listed(n * nrhs),
                ieee(n * nrhs);
            for (int i = 0; i < x.size(); ++i) // products and sums of few different sizes about 2⁻¹⁰²²
                x.set(i, static_cast<double>(static_cast<int>(random() % 5) - 2) * 0x1p-1022);
            for (int p = 0; p < matrix.a.size(); ++p)
                matrix.a.set(p, static_cast<double>(static_cast<int>(random() % 9) - 4) / 8.0);
            std::vector<int> list(static_cast<std::size_t>(m));
            for (int i = 0; i < m; ++i)
                list[static_cast<std::size_t>(i)] = i;
            reference::sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, ieee, m, n, nrhs);
            for (unsigned treatment : TreatmentsOfDenormals)
                for (int mode : {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
                    {
                        const Denormals denormals(treatment);
                        std::fesetround(mode);
                        reference::sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, expected, m, n, nrhs);
                        blac_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, actual, &m, &n, &nrhs);
                        blac_sparse_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, listed, &m, &n, &nrhs,
                                                 list.data());
                        std::fesetround(FE_TONEAREST);
                    }
                    ASSERT_TRUE(same_memory(expected, actual)) << std::hex << treatment << ' ' << mode;
                    ASSERT_TRUE(same_memory(expected, listed)) << std::hex << treatment << ' ' << mode;
                    lost += !same_memory(expected, ieee);
                }
        }
    EXPECT_GT(lost, 100) << "the data do not reach what is tested";
}

// Columns of Y a whole number of pages apart go four at a time.
TEST(SparseUmtv, GivesTheBitsOfThePlainLoopForColumnsOfYThatShareASetOfTheCache)
{
    for (int n : {512, 1024})
        for (int nrhs = 1; nrhs <= 17; ++nrhs) {
            auto random = generator(static_cast<std::uint64_t>(n + nrhs));
            const int m = 75;
            const Matrix matrix(m, n, 40 * m, Rows::Ascending, 0, random, Data::Special);
            Guarded<double> x(m * nrhs), expected(n * nrhs), actual(n * nrhs);
            fill(x, random, Data::Special);
            reference::sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, expected, m, n, nrhs);
            blac_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, actual, &m, &n, &nrhs);
            ASSERT_TRUE(same_memory(expected, actual)) << "n " << n << ", nrhs " << nrhs;
        }
}

// More entries than a cache holds, in rows of unequal length: what comes later is asked for.
TEST(SparseProducts, GiveTheBitsOfThePlainLoopsForLargeMatrices)
{
    auto random = generator(5);
    const int m = 3001, n = 700, entries = 150000;
    const Matrix matrix(m, n, entries, Rows::Ascending, 0, random, Data::Ordinary);
    matrix.ia.set(0, 0);
    matrix.ia.set(m, entries);
    for (int nrhs : {1, 2, 3, 4, 8, 11}) {
        Guarded<double> x(m * nrhs), expected(m * nrhs), actual(m * nrhs);
        fill(x, random, Data::Ordinary);
        reference::sparse_umv(matrix.a, x, matrix.ia, matrix.ja, expected, m, n, nrhs);
        blac_sparse_umv_(matrix.a, x, matrix.ia, matrix.ja, actual, &m, &n, &nrhs);
        ASSERT_TRUE(same_memory(expected, actual)) << nrhs;
        Guarded<double> expected_t(n * nrhs), actual_t(n * nrhs);
        reference::sparse_umtv(matrix.a, x, matrix.ia, matrix.ja, expected_t, m, n, nrhs);
        blac_sparse_umtv_(matrix.a, x, matrix.ia, matrix.ja, actual_t, &m, &n, &nrhs);
        ASSERT_TRUE(same_memory(expected_t, actual_t)) << nrhs;
    }
}

TEST(SparseUmtv, RoundsEachProductBeforeItIsAdded)
{
    for (int nrhs = 1; nrhs <= 9; ++nrhs) {
        std::vector<double> x;
        for (int k = 0; k < nrhs; ++k)
            x.insert(x.end(), {1.0, 1.0 + 0x1p-30});
        for (double y : umtv({{0, 1, 2}, {0, 0}, {-1.0 - 0x1p-29, 1.0 + 0x1p-30}}, 1, x, nrhs))
            ASSERT_EQ(bits(y), bits(0.0));
    }
}

TEST(SparseUmtv, AddressesXBeyondTwoToThe31Elements)
{
    // All rows are empty but the last; all rows listed are row 0, which is empty, but the last.
    const int m = (1 << 27) + 1, n = 1, nrhs = 17, ja[] = {0}, start[] = {0, 0, 1};
    const double a[] = {2.0};
    const Untouched x(std::int64_t{m} * nrhs, sizeof(double)), ia(std::int64_t{m} + 1, sizeof(int)),
        list(m, sizeof(int));
    if (!x || !ia || !list)
        GTEST_SKIP() << "no address space";
    ia.integers()[m] = 1;
    list.integers()[m - 1] = 1;
    for (std::int64_t k = 0; k < nrhs; ++k)
        x.reals()[m - 1 + k * m] = static_cast<double>(k);
    double full[nrhs], listed[nrhs];
    blac_sparse_umtv_(a, x.reals(), ia.integers(), ja, full, &m, &n, &nrhs);
    blac_sparse_sparse_umtv_(a, x.reals(), start, ja, listed, &m, &n, &nrhs, list.integers());
    for (int k = 0; k < nrhs; ++k) {
        EXPECT_EQ(full[k], 2.0 * k);
        EXPECT_EQ(listed[k], 2.0 * k);
    }
}

TEST(SparseUmtv, AddressesYBeyondTwoToThe31Elements)
{
    const int m = 1, n = Tall, nrhs = 9, ia[] = {0, 3}, ja[] = {n - 1, n - 3, n - 2}; // alone, and a pair
    const double a[] = {2.0, 3.0, 4.0}, x[] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0};
    const Repeated y(std::int64_t{n} * nrhs);
    if (!y)
        GTEST_SKIP() << "no address space";
    for (std::int64_t i = 0; i < Repeated::Window; ++i)
        y.reals()[i] = -1.0;
    blac_sparse_umtv_(a, x, ia, ja, y.reals(), &m, &n, &nrhs);
    for (std::int64_t k = 0; k < nrhs; ++k) {
        EXPECT_EQ(y.reals()[k * n + n - 1], 2.0 * static_cast<double>(k + 1));
        EXPECT_EQ(y.reals()[k * n + n - 2], 4.0 * static_cast<double>(k + 1));
        EXPECT_EQ(y.reals()[k * n + n - 3], 3.0 * static_cast<double>(k + 1));
    }
    EXPECT_EQ(y.reals()[0], 0.0);
}

} // namespace
