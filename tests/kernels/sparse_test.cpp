// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"

#include <algorithm>
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
    // Three columns of 2³⁰+5 elements; only the pages that are written exist.
    const int m = 1, n = (1 << 30) + 5, nrhs = 3;
    const std::size_t size = 3 * static_cast<std::size_t>(n) * sizeof(double);
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        GTEST_SKIP() << "no address space for " << size << " bytes";
    double* const x = static_cast<double*>(memory);
    for (std::int64_t k = 0; k < nrhs; ++k) {
        x[k * n] = static_cast<double>(k + 1);
        x[k * n + n - 1] = 10.0 * static_cast<double>(k + 1);
    }
    const int ia[] = {0, 2}, ja[] = {0, n - 1};
    const double a[] = {1.0, 1.0};
    double y[3] = {};
    blac_sparse_umv_(a, x, ia, ja, y, &m, &n, &nrhs);
    munmap(memory, size);
    EXPECT_EQ(y[0], 11.0);
    EXPECT_EQ(y[1], 22.0);
    EXPECT_EQ(y[2], 33.0);
}

} // namespace
