// SPDX-License-Identifier: BSD-3-Clause
// Every BLAS entry point of the facade on small whole numbers, where every order of summation gives the same
// bits: results are compared exactly.
#include "TOVBlaModule.h"
#include "matrix.h"

#include <gtest/gtest.h>

namespace {

const int n = 7, m = 5, k = 4, step = 1;

void draw_whole(double& x, std::mt19937_64& random)
{
    x = static_cast<double>(random() % 9) - 4;
}
void draw_whole(complex& x, std::mt19937_64& random)
{
    x = complex(static_cast<double>(random() % 9) - 4, static_cast<double>(random() % 9) - 4);
}

template <class T>
Matrix<T> whole(int rows, int columns, std::uint64_t number)
{
    std::mt19937_64 random(number);
    Matrix<T> a(rows, columns);
    for (T& x : a.data)
        draw_whole(x, random);
    return a;
}

/// Lower triangular with ones on the diagonal: solving with it stays in whole numbers.
template <class T>
Matrix<T> unit_lower(std::uint64_t number)
{
    return combine(T(1), part(whole<T>(n, n, number), [](int i, int j) { return i > j; }), T(1),
                   identity<T>(n));
}

// ---------------------------------------------------------------------------------------------------------------------
// Level 1

struct Level1 : ::testing::Test
{
    const int count = 3, incx = 2, incy = -1;
    // x is 1, -3, 5 and y is 4, 2, 6 in the order of the loop.
    double x[5] = {1, 99, -3, 99, 5}, y[3] = {6, 2, 4};
    void expect(std::initializer_list<double> xs, std::initializer_list<double> ys)
    {
        EXPECT_EQ(std::vector<double>(x, x + 5), std::vector<double>(xs));
        EXPECT_EQ(std::vector<double>(y, y + 3), std::vector<double>(ys));
    }
};

TEST_F(Level1, Functions)
{
    EXPECT_EQ(blac_dasum_(&count, x, &incx), 9);
    EXPECT_EQ(blac_ddot_(&count, x, &incx, y, &incy), 4 - 6 + 30);
    EXPECT_EQ(blac_idamax_(&count, x, &incx), 3);
    const double pythagoras[5] = {2, 99, 3, 99, 6};
    EXPECT_DOUBLE_EQ(blac_dnrm2_(&count, pythagoras, &incx), 7);
}

TEST_F(Level1, Daxpy)
{
    const double a = 10;
    blac_daxpy_(&count, &a, x, &incx, y, &incy);
    expect({1, 99, -3, 99, 5}, {56, -28, 14});
}

TEST_F(Level1, Daxpby)
{
    const double a = 10, b = 2;
    blac_daxpby_(&count, &a, x, &incx, &b, y, &incy);
    expect({1, 99, -3, 99, 5}, {62, -26, 18});
}

TEST_F(Level1, Dcopy)
{
    blac_dcopy_(&count, x, &incx, y, &incy);
    expect({1, 99, -3, 99, 5}, {5, -3, 1});
}

TEST_F(Level1, Dswap)
{
    blac_dswap_(&count, x, &incx, y, &incy);
    expect({4, 99, 2, 99, 6}, {5, -3, 1});
}

TEST_F(Level1, Dscal)
{
    const double a = -2;
    blac_dscal_(&count, &a, x, &incx);
    expect({-2, 99, 6, 99, -10}, {6, 2, 4});
}

TEST_F(Level1, Drot)
{
    const double c = 3, s = 2;
    blac_drot_(&count, x, &incx, y, &incy, &c, &s);
    expect({11, 99, -5, 99, 27}, {8, 12, 10});
}

struct ComplexLevel1 : ::testing::Test
{
    const int count = 2, incx = 2, incy = 1;
    complex x[3] = {{1, 2}, {99, 99}, {-3, 1}}, y[2] = {{5, 0}, {0, 7}};
    void expect(std::initializer_list<complex> xs, std::initializer_list<complex> ys)
    {
        EXPECT_EQ(std::vector<complex>(x, x + 3), std::vector<complex>(xs));
        EXPECT_EQ(std::vector<complex>(y, y + 2), std::vector<complex>(ys));
    }
};

TEST_F(ComplexLevel1, Izamax)
{
    EXPECT_EQ(blac_izamax_(&count, x, &incx), 2);
}

TEST_F(ComplexLevel1, Zdotc)
{
    complex result(99, 99);
    blac_zdotc_(&result, &count, x, &incx, y, &incy);
    EXPECT_EQ(result, complex(5 + 7, -10 - 21));
}

TEST_F(ComplexLevel1, Zaxpy)
{
    const complex a(0, 1);
    blac_zaxpy_(&count, &a, x, &incx, y, &incy);
    expect({{1, 2}, {99, 99}, {-3, 1}}, {{3, 1}, {-1, 4}});
}

TEST_F(ComplexLevel1, Zcopy)
{
    blac_zcopy_(&count, x, &incx, y, &incy);
    expect({{1, 2}, {99, 99}, {-3, 1}}, {{1, 2}, {-3, 1}});
}

TEST_F(ComplexLevel1, Zswap)
{
    blac_zswap_(&count, x, &incx, y, &incy);
    expect({{5, 0}, {99, 99}, {0, 7}}, {{1, 2}, {-3, 1}});
}

TEST_F(ComplexLevel1, ZscalAndZdscal)
{
    const complex i(0, 1);
    const double two = 2;
    blac_zscal_(&count, &i, x, &incx);
    expect({{-2, 1}, {99, 99}, {-1, -3}}, {{5, 0}, {0, 7}});
    blac_zdscal_(&count, &two, x, &incx);
    expect({{-4, 2}, {99, 99}, {-2, -6}}, {{5, 0}, {0, 7}});
}

// ---------------------------------------------------------------------------------------------------------------------
// Levels 2 and 3, in both fields where both are there

template <class T>
Matrix<T> op(const char* trans, const Matrix<T>& a)
{
    return *trans == 'N' ? a : transpose(a, *trans == 'C');
}

template <class T>
struct Routines;
template <>
struct Routines<double>
{
    static constexpr auto gemv = blac_dgemv_;
    static constexpr auto trmv = blac_dtrmv_;
    static constexpr auto trsv = blac_dtrsv_;
    static constexpr auto gemm = blac_dgemm_;
    static constexpr auto trmm = blac_dtrmm_;
    static constexpr auto trsm = blac_dtrsm_;
};
template <>
struct Routines<complex>
{
    static constexpr auto gemv = blac_zgemv_;
    static constexpr auto trmv = blac_ztrmv_;
    static constexpr auto trsv = blac_ztrsv_;
    static constexpr auto gemm = blac_zgemm_;
    static constexpr auto trmm = blac_ztrmm_;
    static constexpr auto trsm = blac_ztrsm_;
};

template <class T>
class Blas : public ::testing::Test
{
protected:
    const T alpha = 3, beta = -2;
};
using Fields = ::testing::Types<double, complex>;
TYPED_TEST_SUITE(Blas, Fields, );

TYPED_TEST(Blas, Gemv)
{
    const auto a = whole<TypeParam>(m, n, 1);
    for (const char* trans : {"N", "T", "C"}) {
        const auto product = op(trans, a);
        const auto x = whole<TypeParam>(product.columns, 1, 2), y = whole<TypeParam>(product.rows, 1, 3);
        auto result = y;
        Routines<TypeParam>::gemv(trans, &m, &n, &this->alpha, a, &m, x, &step, &this->beta, result, &step);
        EXPECT_EQ(result.data, combine(this->alpha, product * x, this->beta, y).data) << trans;
    }
}

TYPED_TEST(Blas, TrmvAndTrsv)
{
    const auto l = unit_lower<TypeParam>(4), x = whole<TypeParam>(n, 1, 5);
    for (const char* trans : {"N", "T", "C"}) {
        auto result = x;
        Routines<TypeParam>::trmv("L", trans, "U", &n, l, &n, result, &step);
        EXPECT_EQ(result.data, (op(trans, l) * x).data) << trans;
        Routines<TypeParam>::trsv("L", trans, "U", &n, l, &n, result, &step);
        EXPECT_EQ(result.data, x.data) << trans;
    }
}

TYPED_TEST(Blas, Gemm)
{
    for (const char* transa : {"N", "T", "C"})
        for (const char* transb : {"N", "T", "C"}) {
            const auto a = *transa == 'N' ? whole<TypeParam>(m, k, 6) : whole<TypeParam>(k, m, 6);
            const auto b = *transb == 'N' ? whole<TypeParam>(k, n, 7) : whole<TypeParam>(n, k, 7);
            const auto c = whole<TypeParam>(m, n, 8);
            auto result = c;
            Routines<TypeParam>::gemm(transa, transb, &m, &n, &k, &this->alpha, a, &a.rows, b, &b.rows,
                                      &this->beta, result, &m);
            EXPECT_EQ(result.data, combine(this->alpha, op(transa, a) * op(transb, b), this->beta, c).data)
                << transa << transb;
        }
}

TYPED_TEST(Blas, TrmmAndTrsm)
{
    const TypeParam unit = 1;
    const auto l = unit_lower<TypeParam>(9);
    const auto left = whole<TypeParam>(n, m, 10), right = whole<TypeParam>(m, n, 11);
    for (const char* trans : {"N", "T", "C"}) {
        auto result = left;
        Routines<TypeParam>::trmm("L", "L", trans, "U", &n, &m, &unit, l, &n, result, &n);
        EXPECT_EQ(result.data, (op(trans, l) * left).data) << trans;
        Routines<TypeParam>::trsm("L", "L", trans, "U", &n, &m, &unit, l, &n, result, &n);
        EXPECT_EQ(result.data, left.data) << trans;
        result = right;
        Routines<TypeParam>::trmm("R", "L", trans, "U", &m, &n, &unit, l, &n, result, &m);
        EXPECT_EQ(result.data, (right * op(trans, l)).data) << trans;
        Routines<TypeParam>::trsm("R", "L", trans, "U", &m, &n, &unit, l, &n, result, &m);
        EXPECT_EQ(result.data, right.data) << trans;
    }
}

TEST(BlasRankOne, DgerZgeruAndZgerc)
{
    const Matrix<double> x = whole<double>(m, 1, 20), y = whole<double>(n, 1, 21),
                         a = whole<double>(m, n, 22);
    const double alpha = 3;
    Matrix<double> result = a;
    blac_dger_(&m, &n, &alpha, x, &step, y, &step, result, &m);
    EXPECT_EQ(result.data, combine(alpha, x * transpose(y), 1.0, a).data);

    const Matrix<complex> zx = whole<complex>(m, 1, 23), zy = whole<complex>(n, 1, 24),
                          za = whole<complex>(m, n, 25);
    const complex zalpha(1, -2);
    Matrix<complex> z = za;
    blac_zgeru_(&m, &n, &zalpha, zx, &step, zy, &step, z, &m);
    EXPECT_EQ(z.data, combine(zalpha, zx * transpose(zy), complex(1), za).data);
    z = za;
    blac_zgerc_(&m, &n, &zalpha, zx, &step, zy, &step, z, &m);
    EXPECT_EQ(z.data, combine(zalpha, zx * adjoint(zy), complex(1), za).data);
}

struct BlasSymmetric : ::testing::Test
{
    const double alpha = 3, beta = -2;
    const Matrix<double> a = symmetric(whole<double>(n, n, 30)), x = whole<double>(n, 1, 31),
                         y = whole<double>(n, 1, 32);
    const Matrix<double> product = combine(alpha, a* x, beta, y);
    const Matrix<double> square = combine(alpha, x* transpose(x), 1.0, a);
    const Matrix<double> mixed = combine(alpha, symmetric(x* transpose(y)), 1.0, a);
    // The upper triangle holds nothing that the lower one has.
    Matrix<double> half = lower(a), result = y;
    std::vector<double> packed = pack_lower(a);
};

TEST_F(BlasSymmetric, Products)
{
    blac_dsymv_("L", &n, &alpha, half, &n, x, &step, &beta, result, &step);
    EXPECT_EQ(result.data, product.data);
    result = y;
    blac_dspmv_("L", &n, &alpha, packed.data(), x, &step, &beta, result, &step);
    EXPECT_EQ(result.data, product.data);
}

TEST_F(BlasSymmetric, BandProduct)
{
    const Matrix<double> narrow = part(a, [](int i, int j) { return std::abs(i - j) <= 2; });
    const int off = 2, lda = off + 1;
    Matrix<double> band(lda, n);
    for (int j = 0; j < n; ++j)
        for (int i = j; i <= std::min(n - 1, j + off); ++i)
            band(i - j, j) = narrow(i, j);
    blac_dsbmv_("L", &n, &off, &alpha, band, &lda, x, &step, &beta, result, &step);
    EXPECT_EQ(result.data, combine(alpha, narrow * x, beta, y).data);
}

TEST_F(BlasSymmetric, Updates)
{
    blac_dsyr_("L", &n, &alpha, x, &step, half, &n);
    EXPECT_EQ(half.data, lower(square).data);
    blac_dspr_("L", &n, &alpha, x, &step, packed.data());
    EXPECT_EQ(packed, pack_lower(square));
    half = lower(a);
    blac_dsyr2_("L", &n, &alpha, x, &step, y, &step, half, &n);
    EXPECT_EQ(half.data, lower(mixed).data);
    packed = pack_lower(a);
    blac_dspr2_("L", &n, &alpha, x, &step, y, &step, packed.data());
    EXPECT_EQ(packed, pack_lower(mixed));
}

TEST_F(BlasSymmetric, MatrixProducts)
{
    const Matrix<double> b = whole<double>(n, m, 33), c = whole<double>(n, m, 34);
    Matrix<double> left = c;
    blac_dsymm_("L", "L", &n, &m, &alpha, half, &n, b, &n, &beta, left, &n);
    EXPECT_EQ(left.data, combine(alpha, a * b, beta, c).data);
    Matrix<double> right = transpose(c);
    blac_dsymm_("R", "L", &m, &n, &alpha, half, &n, transpose(b), &m, &beta, right, &m);
    EXPECT_EQ(right.data, combine(alpha, transpose(b) * a, beta, transpose(c)).data);

    blac_dsyrk_("L", "N", &n, &m, &alpha, b, &n, &beta, half, &n);
    EXPECT_EQ(half.data, lower(combine(alpha, b * transpose(b), beta, a)).data);
    half = lower(a);
    blac_dsyr2k_("L", "N", &n, &m, &alpha, b, &n, c, &n, &beta, half, &n);
    EXPECT_EQ(half.data, lower(combine(alpha, symmetric(b * transpose(c)), beta, a)).data);
}

TEST(BlasPacked, DtpmvAndDtpsv)
{
    const Matrix<double> l = unit_lower<double>(40), x = whole<double>(n, 1, 41);
    const std::vector<double> packed = pack_lower(l);
    for (const char* trans : {"N", "T"}) {
        Matrix<double> result = x;
        blac_dtpmv_("L", trans, "U", &n, packed.data(), result, &step);
        EXPECT_EQ(result.data, (op(trans, l) * x).data) << trans;
        blac_dtpsv_("L", trans, "U", &n, packed.data(), result, &step);
        EXPECT_EQ(result.data, x.data) << trans;
    }
}

} // namespace
