// SPDX-License-Identifier: BSD-3-Clause
// Callers who fill their memory with signalling NaNs and trap invalid operations: nothing that a routine does
// not read by definition may enter its arithmetic. Here that is the upper triangle of a symmetric front or of
// a factor, the rows up to the leading dimension, the gaps between increments, work areas, and results before
// the call; all of it holds the canary, which is a signalling NaN.
//
// This program's BLAS is that of plain loops: what an optimised one does with its arguments is its own.
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "tiers.h"

#include <cfenv>
#include <functional>
#include <vector>

using namespace support;
using std::int64_t;

namespace {

constexpr int Orders[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 12, 13, 15,
                          16, 17, 20, 23, 24, 31, 32, 33, 36, 47, 64, 65, 100};

/// Runs the calls of body on every tier; no flag of an invalid operation may be up behind any of them, and
/// nothing may happen where they are trapped.
using Quietly = std::function<void(const std::function<void()>&)>;
void raises_nothing(const std::function<void(const Quietly&)>& body)
{
    const Quietly watched = [](const std::function<void()>& call) {
        std::feclearexcept(FE_ALL_EXCEPT);
        call();
        ASSERT_FALSE(std::fetestexcept(FE_INVALID)) << "an operation was invalid";
    };
    const Quietly trapped = [](const std::function<void()>& call) {
        std::feclearexcept(FE_ALL_EXCEPT);
        feenableexcept(FE_INVALID);
        call();
        fedisableexcept(FE_INVALID);
    };
    on_every_tier([&] {
        body(watched);
        EXPECT_EXIT((body(trapped), std::_Exit(0)), ::testing::ExitedWithCode(0), "");
    });
}

enum class Shape { Full, Lower };

/// A matrix of ordinary numbers in canaries, with a heavy diagonal.
struct Matrix : Guarded<double>
{
    Matrix(int m, int n, int ld, Shape shape = Shape::Full) : Guarded(extent(m, n, ld))
    {
        auto random = generator(static_cast<std::uint64_t>(m + n));
        for (int64_t j = 0; j < n; ++j)
            for (int64_t i = shape == Shape::Full ? 0 : j; i < m; ++i)
                set(i + j * ld, i == j ? 2.0 * (m + 1) : ordinary(random) / 16);
    }
};

/// A vector of such numbers, with an increment.
struct Vector : Matrix
{
    explicit Vector(int n, int step = 1) : Matrix(1, n, step) {}
};

/// Canaries for results.
struct Room : Guarded<double>
{
    explicit Room(int n) : Guarded(n) {}
    Room(int m, int n, int ld) : Guarded(extent(m, n, ld)) {}
};

TEST(UndefinedMemory, IsNotComputedWithByTheSmallEliminations)
{
    raises_nothing([](const Quietly& quietly) {
        const double tol = 1e-9;
        for (int n : Orders)
            for (int lda : {n, n + 3}) {
                const Matrix lower(n, n, lda, Shape::Lower), full(n, n, lda);
                quietly([&] { blac_selim_small_(&n, lower, &lda, Room(n), Room(n), &tol); });
                quietly([&] { blac_uelim_small_(&n, full, &lda, Room(n), Room(n), &tol); });
            }
        for (int n : {511, 513, 516, 520, 530, 1031}) { // beyond one walk
            const Matrix lower(n, n, n + 1, Shape::Lower);
            const int lda = n + 1;
            quietly([&] { blac_selim_small_(&n, lower, &lda, Room(n), Room(n), &tol); });
        }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheRegularisedSmallEliminations)
{
    raises_nothing([](const Quietly& quietly) {
        for (int n : Orders)
            for (int lda : {n, n + 3}) {
                const Matrix lower(n, n, lda, Shape::Lower), full(n, n, lda);
                const Vector tol(n), reg(n);
                std::vector<int> down(static_cast<std::size_t>(n), 1);
                quietly([&] {
                    blac_selim_small_reg_(&n, lower, &lda, Room(n), Room(n), tol, down.data(), reg, Room(n));
                });
                quietly([&] {
                    blac_uelim_small_reg_(&n, full, &lda, Room(n), Room(n), tol, down.data(), reg, Room(n));
                });
            }
    });
}

/// Above the diagonal of every block but the first, zeros: there the trailing products compute the squares in
/// full.
void define_diagonal_blocks(const Guarded<double>& a, int n, int nb, int lda)
{
    for (int64_t j = nb; j < n; ++j)
        for (int64_t i = j / nb * nb; i < j; ++i)
            a.set(i + j * lda, 0.0);
}

TEST(UndefinedMemory, IsNotComputedWithByTheBlockedEliminations)
{
    raises_nothing([](const Quietly& quietly) {
        const double tol = 1e-9;
        for (int n : Orders)
            for (int nb : {1, 3, 8, n + 1}) {
                const int lda = n + 2;
                const Matrix lower(n, n, lda, Shape::Lower), full(n, n, lda);
                const Matrix lower_reg(n, n, lda, Shape::Lower), full_reg(n, n, lda);
                const Vector tols(n), reg(n);
                std::vector<int> up(static_cast<std::size_t>(n), 0);
                define_diagonal_blocks(lower, n, nb, lda);
                define_diagonal_blocks(lower_reg, n, nb, lda);
                quietly([&] { blac_selim_(&n, &nb, &tol, lower, &lda, Room(n), Room(n)); });
                quietly([&] { blac_uelim_(&n, &nb, &tol, full, &lda, Room(n), Room(n)); });
                quietly([&] {
                    blac_selim_reg_(&n, &nb, lower_reg, &lda, Room(n), Room(n), tols, up.data(), reg,
                                    Room(n));
                });
                quietly([&] {
                    blac_uelim_reg_(&n, &nb, full_reg, &lda, Room(n), Room(n), tols, up.data(), reg, Room(n));
                });
            }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheEliminationInBlockColumns)
{
    raises_nothing([](const Quietly& quietly) {
        for (int n : Orders)
            for (int nb : {1, 3, 8, n + 1}) {
                int64_t size = 0;
                for (int q = 0; q < n; q += nb)
                    size += int64_t{n - q} * (n - q < nb ? n - q : nb);
                const Guarded<double> a(size + 2 * n + int64_t{nb} * nb);
                int64_t column = 0;
                for (int j = 0; j < n; ++j) {
                    const int q = j / nb * nb;
                    for (int i = q; i < n; ++i)
                        if (i >= j || q > 0)
                            a.set(column + i - q, i == j ? n + 1.0 : i > j ? 0.25 : 0.0);
                    column += n - q;
                }
                quietly([&] { blaC_selimC(n, nb, 1e-9, a); });
            }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheProducts)
{
    raises_nothing([](const Quietly& quietly) {
        const double one = 1.0, minus_one = -1.0;
        for (int n : Orders)
            for (int k : {1, 2, 5, 8, 19}) {
                const int m = 7, nb = 5;
                const int ldm = m + 2, ldn = n + 3, ldk = k + 1;
                const Matrix a(m, k, ldm), at(k, m, ldk), b(k, n, ldk), bt(n, k, ldn), c(m, n, ldm),
                    square(n, n, ldn);
                const Vector d(k), spread(k, ldk + 1);
                for (int64_t j = 0; j < n; ++j)
                    for (int64_t i = 0; i < j / nb * nb; ++i) // above the diagonal blocks
                        square.set(i + j * ldn, std::bit_cast<double>(Canary));
                quietly([&] {
                    blac_dgemm_scaled_("N", "N", &m, &n, &k, &one, a, &ldm, b, &ldk, &one, c, &ldm, spread,
                                       &ldk);
                });
                quietly([&] {
                    blac_dgemm_scaled_("T", "T", &m, &n, &k, &one, at, &ldk, bt, &ldn, &one, c, &ldm, spread,
                                       &ldk);
                });
                quietly([&] {
                    blac_dgemm_scaled2_("N", "N", &m, &n, &k, &one, a, &ldm, b, &ldk, &one, c, &ldm, d);
                });
                quietly([&] {
                    blac_dgemm_scaled2_("N", "T", &m, &n, &k, &one, a, &ldm, bt, &ldn, &one, c, &ldm, d);
                });
                quietly([&] {
                    blac_dsyrk_scaled_(&nb, &n, &k, &minus_one, bt, &ldn, bt, &ldn, &one, square, &ldn, d);
                });
                quietly([&] {
                    blac_dsyrk_scaled2_(&nb, &n, &k, &minus_one, bt, &ldn, &one, square, &ldn, spread, &ldk);
                });
                quietly(
                    [&] { blac_dhamm_(&nb, &n, &k, &minus_one, bt, &ldn, bt, &ldn, &one, square, &ldn); });
            }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByScaling)
{
    raises_nothing([](const Quietly& quietly) {
        for (int n : Orders)
            for (int columns : {1, 3, 4, 5}) {
                const int ld = n + 3;
                const Matrix a(n, columns, ld), lower(n, n, ld, Shape::Lower);
                const Vector d(columns), rows(n);
                const Room all_but_last(n);
                for (int i = 0; i + 1 < n; ++i)
                    all_but_last.set(i, rows.get(i));
                quietly([&] { blac_scale_(&n, &columns, d, a, &ld, Room(n, columns, ld), &ld); });
                quietly([&] { blac_dlacpysc_(&n, &columns, a, &ld, d, Room(n, columns, ld), &ld); });
                quietly([&] { blac_scale2_(&n, &columns, a, &ld, rows); });
                quietly([&] { blac_scale2t_(&columns, &n, a, &ld, d); });
                quietly([&] { blac_scale_low_(&n, lower, &ld, all_but_last); });
                quietly([&] { blac_scale_low2_(&n, lower, &ld); });
            }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByAssemblyAndCopies)
{
    raises_nothing([](const Quietly& quietly) {
        for (int n : Orders)
            for (int m : {1, 3, 4, 5, 17, 40}) {
                const int ldm = m + 3, ldn = n + 2;
                const Matrix a(m, n, ldm), b(m, n, ldm), bt(n, m, ldn), lower(n, n, ldn, Shape::Lower),
                    other(n, n, ldn, Shape::Lower);
                const Vector diagonal(n, ldn + 1);
                quietly([&] { blac_addrectblock_(&m, &n, a, &ldm, b, &ldm); });
                quietly([&] { blac_addrectblockt_(&m, &n, a, &ldm, bt, &ldn); });
                quietly([&] { blac_addtriblock_(&n, lower, &ldn, other, &ldn); });
                quietly([&] { blac_copydiag_(&n, diagonal, &ldn, Room(n), Room(n)); });
            }
    });
}

// What is only moved may even hold signalling NaNs where it is read.
TEST(UndefinedMemory, IsMovedWithoutArithmetic)
{
    raises_nothing([](const Quietly& quietly) {
        const double canary = std::bit_cast<double>(Canary);
        for (int n : Orders) {
            const int ld = n + 2, columns = 5, two = 2, minus_one = -1;
            const Guarded<double> a(extent(n, columns, ld)), b(extent(n, columns, ld)), square(n * ld),
                transposed(extent(columns, n, ld)), x(2 * n), y(2 * n);
            const int64_t n64 = n;
            quietly([&] { blac_datcpy_(&columns, &n, a, &ld, transposed, &ld); });
            quietly([&] { blaC_copyrect_intr(n, columns, b, ld, a, ld); });
            quietly([&] { blac_dset_(&n, &canary, x, &two); });
            quietly([&] { blac_reflect_("L", &n, square, &ld); });
            quietly([&] { blac_reflect_("U", &n, square, &ld); });
            quietly([&] { tovbla_vdasn_(&n, x, &canary); });
            quietly([&] { tovbla_bvdasn_(&n64, x, &canary); });
            quietly([&] { tovbla_vdcopyi_(&n, x, &two, y + (n - 1), &minus_one); });
            quietly([&] { tovbla_vdnegcopyi_(&n, x, &two, y + (n - 1), &minus_one); });
            quietly([&] {
                tovbla_vzconj_(&n, reinterpret_cast<const blac_complex*>(x.data()),
                               reinterpret_cast<blac_complex*>(y.data()));
            });
            quietly([&] { blaC_zerotriC(n, n / 2, n - n / 2, square, ld); });
            quietly([&] { blac_zerotri_(&n, square, &ld); });
        }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheVectorSums)
{
    raises_nothing([](const Quietly& quietly) {
        for (int n : Orders)
            for (int step : {1, 2, 3}) {
                const int back = -step;
                const int64_t n64 = n;
                const double factor = 0.5;
                const Vector x(n, step), y(n, step), dense(n);
                const Guarded<double> z(extent(1, n, step));
                quietly([&] { tovbla_vdaddi_(&n, x, &step, y, &step, z, &step); });
                quietly([&] { tovbla_vdnegaddi_(&n, x, &step, y + (n - 1) * step, &back, z, &step); });
                quietly([&] { tovbla_vdscale_(&n, dense, &factor); });
                quietly([&] { tovbla_bvdscale_(&n64, dense, &factor); });
            }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheCholeskyModifications)
{
    raises_nothing([](const Quietly& quietly) {
        const double tol = 0.0;
        for (int n : {1, 2, 3, 4, 5, 7, 8, 9, 10, 11, 12, 13, 17, 33, 100, 513, 520}) {
            const int ldl = n + 3, half = n / 2;
            const Matrix l(n, n, ldl, Shape::Lower);
            const Guarded<double> x(n);
            for (int i = 0; i < n; ++i)
                x.set(i, 1.0 / 64);
            int info = -7;
            quietly([&] { blac_cholupd_("P", &n, &half, &n, l, &ldl, x, &tol, &info); });
            EXPECT_EQ(info, 0);
            quietly([&] { blac_cholupd_("N", &n, &n, &n, l, &ldl, x, &tol, &info); });
            EXPECT_EQ(info, 0);
            quietly([&] { blac_dchud_(l, &ldl, &n, x, Room(n), Room(n)); });
            quietly([&] { blac_dchdd_(l, &ldl, &n, x, Room(n), Room(n), &info); });
            EXPECT_EQ(info, 0);
        }
    });
}

TEST(UndefinedMemory, IsNotComputedWithByTheSparseProducts)
{
    raises_nothing([](const Quietly& quietly) {
        for (int m : Orders)
            for (int nrhs : {1, 2, 3, 4, 5, 6, 7, 8, 9, 19}) {
                const int n = 11;
                const Guarded<int> start(m + 1), column(3 * m), list(m);
                const Guarded<double> value(3 * m + 2);
                start.set(0, 0);
                for (int i = 0; i < m; ++i) { // rows of 0 to 3 entries, the last ones of the array unused
                    start.set(i + 1, start.get(i) + i % 4);
                    for (int p = start.get(i); p < start.get(i + 1); ++p) {
                        column.set(p, (5 * i + p) % n);
                        value.set(p, 0.5 * p - i);
                    }
                    list.set(i, m - 1 - i);
                }
                const Matrix x(n, nrhs, n), xt(m, nrhs, m);
                quietly([&] { blac_sparse_umv_(value, x, start, column, Room(m, nrhs, m), &m, &n, &nrhs); });
                quietly(
                    [&] { blac_sparse_umtv_(value, xt, start, column, Room(n, nrhs, n), &m, &n, &nrhs); });
                quietly([&] {
                    blac_sparse_sparse_umtv_(value, xt, start, column, Room(n, nrhs, n), &m, &n, &nrhs, list);
                });
            }
    });
}

} // namespace
