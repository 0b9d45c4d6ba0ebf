// SPDX-License-Identifier: BSD-3-Clause
// Every LAPACK entry point of the facade on a small problem, held to what its result must satisfy.
#include "TOVBlaModule.h"
#include "matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>

namespace {

using real_matrix = Matrix<double>;
using complex_matrix = Matrix<complex>;

constexpr double Rounding = 1e-11;
constexpr int n = 12; // order of the problems, where nothing else is said
const int lwork = 4000;
const int step = 1;

#define EXPECT_SAME(a, b) EXPECT_LT(largest((a) - (b)), Rounding)
#define EXPECT_ZERO(a) EXPECT_LT(largest(a), Rounding)
#define EXPECT_UNITARY(q)                                                                                    \
    EXPECT_SAME(adjoint(q) * (q), identity<std::decay_t<decltype((q)(0, 0))>>((q).columns))

template <class T>
struct Routines;
template <>
struct Routines<double>
{
    static constexpr auto gesv = blac_dgesv_;
    static constexpr auto getrf = blac_dgetrf_;
    static constexpr auto getrs = blac_dgetrs_;
    static constexpr auto sysv = blac_dsysv_;
    static constexpr auto lacpy = blac_dlacpy_;
    static constexpr auto laset = blac_dlaset_;
    static constexpr auto larfg = blac_dlarfg_;
    static constexpr auto gehrd = blac_dgehrd_;
    static constexpr auto unmhr = blac_dormhr_;
};
template <>
struct Routines<complex>
{
    static constexpr auto gesv = blac_zgesv_;
    static constexpr auto getrf = blac_zgetrf_;
    static constexpr auto getrs = blac_zgetrs_;
    static constexpr auto sysv = blac_zsysv_;
    static constexpr auto lacpy = blac_zlacpy_;
    static constexpr auto laset = blac_zlaset_;
    static constexpr auto larfg = blac_zlarfg_;
    static constexpr auto gehrd = blac_zgehrd_;
    static constexpr auto unmhr = blac_zunmhr_;
};

template <class T>
class Lapack : public ::testing::Test
{
};
using Fields = ::testing::Types<double, complex>;
TYPED_TEST_SUITE(Lapack, Fields, );

TYPED_TEST(Lapack, GesvSolves)
{
    const int nrhs = 3;
    const auto a = random_matrix<TypeParam>(n, n, 1), b = random_matrix<TypeParam>(n, nrhs, 2);
    auto lu = a, x = b;
    int ipiv[n], info = 99;
    Routines<TypeParam>::gesv(&n, &nrhs, lu, &n, ipiv, x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);
}

TYPED_TEST(Lapack, GetrfAndGetrsSolveWithTheMatrixAndItsTransposes)
{
    const int nrhs = 2;
    const auto a = random_matrix<TypeParam>(n, n, 3), b = random_matrix<TypeParam>(n, nrhs, 4);
    auto lu = a;
    int ipiv[n], info = 99;
    Routines<TypeParam>::getrf(&n, &n, lu, &n, ipiv, &info);
    EXPECT_EQ(info, 0);
    for (const char* trans : {"N", "T", "C"}) {
        auto x = b;
        info = 99;
        Routines<TypeParam>::getrs(trans, &n, &nrhs, lu, &n, ipiv, x, &n, &info);
        EXPECT_EQ(info, 0);
        EXPECT_SAME((*trans == 'N' ? a : transpose(a, *trans == 'C')) * x, b) << trans;
    }
}

TYPED_TEST(Lapack, SysvSolvesASymmetricSystem)
{
    const int nrhs = 2;
    const auto a = symmetric(random_matrix<TypeParam>(n, n, 5)), b = random_matrix<TypeParam>(n, nrhs, 6);
    auto factor = lower(a), x = b;
    Matrix<TypeParam> work(lwork, 1);
    int ipiv[n], info = 99;
    Routines<TypeParam>::sysv("L", &n, &nrhs, factor, &n, ipiv, x, &n, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);
}

TYPED_TEST(Lapack, LacpyAndLasetReachTheNamedTriangle)
{
    const auto a = random_matrix<TypeParam>(n, n, 7);
    Matrix<TypeParam> b(n, n);
    Routines<TypeParam>::lacpy("L", &n, &n, a, &n, b, &n);
    EXPECT_EQ(b.data, lower(a).data);
    Routines<TypeParam>::lacpy("A", &n, &n, a, &n, b, &n);
    EXPECT_EQ(b.data, a.data);
    const TypeParam zero = 0, one = 1;
    Routines<TypeParam>::laset("U", &n, &n, &zero, &one, b, &n);
    EXPECT_EQ(upper(b).data, identity<TypeParam>(n).data);
    EXPECT_EQ(b(1, 0), a(1, 0));
}

TYPED_TEST(Lapack, LarfgReflectsAVectorOntoTheFirstAxis)
{
    const auto x = random_matrix<TypeParam>(n, 1, 8);
    auto v = x;
    TypeParam beta = x(0, 0), tau = 99;
    Routines<TypeParam>::larfg(&n, &beta, &v.data[1], &step, &tau);
    v(0, 0) = 1;
    // Hᴴ·x = x - conj(tau)·v·vᴴ·x = beta·e1
    auto reflected = combine(TypeParam(1), x, -conjugate(tau) * (adjoint(v) * x)(0, 0), v);
    reflected(0, 0) -= beta;
    EXPECT_ZERO(reflected);
}

TYPED_TEST(Lapack, GehrdAndItsQReduceToHessenbergForm)
{
    const auto a = random_matrix<TypeParam>(n, n, 9);
    auto h = a, q = identity<TypeParam>(n);
    Matrix<TypeParam> tau(n, 1), work(lwork, 1);
    const int ilo = 1, ihi = n;
    int info = 99;
    Routines<TypeParam>::gehrd(&n, &ilo, &ihi, h, &n, tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    info = 99;
    Routines<TypeParam>::unmhr("L", "N", &n, &n, &ilo, &ihi, h, &n, tau, q, &n, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(q);
    EXPECT_SAME(a * q, q * hessenberg(h));
}

// ---------------------------------------------------------------------------------------------------------------------
// Linear systems

TEST(LapackLinear, DgetriInverts)
{
    const real_matrix a = random_matrix<double>(n, n, 10);
    real_matrix inverse = a, work(lwork, 1);
    int ipiv[n], info = 99;
    blac_dgetrf_(&n, &n, inverse, &n, ipiv, &info);
    info = 99;
    blac_dgetri_(&n, inverse, &n, ipiv, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * inverse, identity<double>(n));
}

TEST(LapackLinear, DgbsvSolvesABandSystem)
{
    const int kl = 2, ku = 1, nrhs = 2, ldab = 2 * kl + ku + 1;
    const real_matrix a =
        part(random_matrix<double>(n, n, 11), [](int i, int j) { return i - j <= 2 && j - i <= 1; });
    const real_matrix b = random_matrix<double>(n, nrhs, 12);
    real_matrix ab(ldab, n), x = b;
    for (int j = 0; j < n; ++j)
        for (int i = std::max(0, j - ku); i <= std::min(n - 1, j + kl); ++i)
            ab(kl + ku + i - j, j) = a(i, j);
    int ipiv[n], info = 99;
    blac_dgbsv_(&n, &kl, &ku, &nrhs, ab, &ldab, ipiv, x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);
}

TEST(LapackLinear, DpotrfFactorises)
{
    const real_matrix a = positive_definite(random_matrix<double>(n, n, 13));
    real_matrix l = a;
    int info = 99;
    blac_dpotrf_("L", &n, l, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(lower(l) * transpose(lower(l)), a);
}

TEST(LapackLinear, PackedCholeskySolvesAndInverts)
{
    const int nrhs = 2;
    const real_matrix a = positive_definite(random_matrix<double>(n, n, 14));
    const real_matrix b = random_matrix<double>(n, nrhs, 15);
    std::vector<double> ap = pack_lower(a);
    real_matrix x = b;
    int info = 99;
    blac_dppsv_("L", &n, &nrhs, ap.data(), x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);

    ap = pack_lower(a);
    info = 99;
    blac_dpptrf_("L", &n, ap.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(unpack_lower(ap, n) * transpose(unpack_lower(ap, n)), a);
    x = b;
    info = 99;
    blac_dpptrs_("L", &n, &nrhs, ap.data(), x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);
    info = 99;
    blac_dpptri_("L", &n, ap.data(), &info);
    EXPECT_EQ(info, 0);
    real_matrix inverse = unpack_lower(ap, n);
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            inverse(i, j) = inverse(j, i);
    EXPECT_SAME(a * inverse, identity<double>(n));
}

TEST(LapackLinear, DsytrfAndDsytrsSolve)
{
    const int nrhs = 2;
    const real_matrix a = symmetric(random_matrix<double>(n, n, 16)), b = random_matrix<double>(n, nrhs, 17);
    real_matrix factor = a, x = b, work(lwork, 1);
    int ipiv[n], info = 99;
    blac_dsytrf_("U", &n, factor, &n, ipiv, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    info = 99;
    blac_dsytrs_("U", &n, &nrhs, factor, &n, ipiv, x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * x, b);
}

template <class T>
Matrix<T> well_conditioned_lower(std::uint64_t number)
{
    Matrix<T> a = lower(random_matrix<T>(n, n, number));
    for (int i = 0; i < n; ++i)
        a(i, i) = 4.0 + i;
    return a;
}

TEST(LapackLinear, TriangularMatricesAreInverted)
{
    const real_matrix a = well_conditioned_lower<double>(18);
    real_matrix inverse = a;
    int info = 99;
    blac_dtrtri_("L", "N", &n, inverse, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * inverse, identity<double>(n));
    inverse = a;
    info = 99;
    blac_dtrti2_("L", "N", &n, inverse, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * inverse, identity<double>(n));
    std::vector<double> ap = pack_lower(a);
    info = 99;
    blac_dtptri_("L", "N", &n, ap.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * unpack_lower(ap, n), identity<double>(n));
}

TEST(LapackLinear, Dlaln2SolvesASmallSystem)
{
    // (ca·Aᵀ - w·D)·x = b with a complex w: columns hold the real and the imaginary part.
    const int transposed = 1, two = 2;
    const double smin = 1e-300, ca = 2, d1 = 3, d2 = 5, wr = 0.25, wi = -0.75;
    const real_matrix a = random_matrix<double>(2, 2, 19), b = random_matrix<double>(2, 2, 20);
    real_matrix x(2, 2);
    double scale = 99, xnorm = 99;
    int info = 99;
    blac_dlaln2_(&transposed, &two, &two, &smin, &ca, a, &two, &d1, &d2, b, &two, &wr, &wi, x, &two, &scale,
                 &xnorm, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(scale, 1);
    complex_matrix m(2, 2), u(2, 1), f(2, 1);
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 2; ++j)
            m(i, j) = ca * a(j, i) - (i == j ? complex(wr, wi) * (i == 0 ? d1 : d2) : 0.0);
        u(i, 0) = complex(x(i, 0), x(i, 1));
        f(i, 0) = complex(b(i, 0), b(i, 1));
    }
    EXPECT_SAME(m * u, f);
    EXPECT_NEAR(xnorm, std::max(std::abs(x(0, 0)) + std::abs(x(0, 1)), std::abs(x(1, 0)) + std::abs(x(1, 1))),
                Rounding);
}

TEST(LapackLinear, ComplexTriangularSystemsAreSolved)
{
    const int nrhs = 2, one = 1;
    const complex_matrix a = well_conditioned_lower<complex>(21), b = random_matrix<complex>(n, nrhs, 22);
    complex_matrix x = b;
    int info = 99;
    blac_ztrtrs_("L", "C", "N", &n, &nrhs, a, &n, x, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(adjoint(a) * x, b);

    x = corner(b, n, one);
    double scale = 99, cnorm[n];
    info = 99;
    blac_zlatrs_("L", "T", "N", "N", &n, a, &n, x, &scale, cnorm, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(scale, 1);
    EXPECT_SAME(transpose(a) * x, corner(b, n, one));
}

// ---------------------------------------------------------------------------------------------------------------------
// Least squares and singular values

TEST(LapackSingular, GesvdAndGesddDecompose)
{
    const int m = 15;
    const real_matrix a = random_matrix<double>(m, n, 30);
    real_matrix u(m, n), vt(n, n), work(lwork, 1);
    std::vector<double> s(n);
    int iwork[8 * n];

    real_matrix copy = a;
    int info = 99;
    blac_dgesvd_("S", "A", &m, &n, copy, &m, s.data(), u, &m, vt, &n, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(u);
    EXPECT_SAME(u * diagonal(s) * vt, a);

    copy = a;
    info = 99;
    blac_dgesdd_("S", &m, &n, copy, &m, s.data(), u, &m, vt, &n, work, &lwork, iwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(u);
    EXPECT_SAME(u * diagonal(s) * vt, a);
    EXPECT_TRUE(std::is_sorted(s.rbegin(), s.rend()));
}

TEST(LapackSingular, DgelssMinimisesTheResidual)
{
    const int m = 15, nrhs = 2;
    const double rcond = -1;
    const real_matrix a = random_matrix<double>(m, n, 31), b = random_matrix<double>(m, nrhs, 32);
    real_matrix copy = a, x = b, work(lwork, 1);
    double s[n];
    int rank = 99, info = 99;
    blac_dgelss_(&m, &n, &nrhs, copy, &m, x, &m, s, &rcond, &rank, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(rank, n);
    EXPECT_ZERO(transpose(a) * (a * corner(x, n, nrhs) - b));
}

// ---------------------------------------------------------------------------------------------------------------------
// Orthogonal factors

TEST(LapackOrthogonal, RealQrAndItsBlockReflector)
{
    const int m = 15;
    const real_matrix a = random_matrix<double>(m, n, 40);
    real_matrix qr = a, work(lwork, 1), tau(n, 1);
    int info = 99;
    blac_dgeqrf_(&m, &n, qr, &m, tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    const real_matrix r = upper(corner(qr, n, n));

    real_matrix q = qr;
    info = 99;
    blac_dorgqr_(&m, &n, &n, q, &m, tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(q);
    EXPECT_SAME(q * r, a);

    real_matrix t(n, n), qt_a = a, block_work(n, n);
    blac_dlarft_("F", "C", &m, &n, qr, &m, tau, t, &n);
    blac_dlarfb_("L", "T", "F", "C", &m, &n, &n, qr, &m, t, &n, qt_a, &m, block_work, &n);
    EXPECT_SAME(corner(qt_a, n, n), r);
    EXPECT_ZERO(part(qt_a, [](int i, int) { return i >= n; }));
}

// QR of a complex matrix, one reflector at a time: R and the reflectors are left in a.
void reflect_columns(complex_matrix& a, complex_matrix& tau)
{
    complex_matrix work(a.columns, 1);
    for (int j = 0; j < a.columns; ++j) {
        const int length = a.rows - j, rest = a.columns - j - 1;
        complex beta = a(j, j);
        blac_zlarfg_(&length, &beta, &a(std::min(j + 1, a.rows - 1), j), &step, &tau(j, 0));
        a(j, j) = 1;
        const complex conjugated = std::conj(tau(j, 0));
        if (rest > 0)
            blac_zlarf_("L", &length, &rest, &a(j, j), &step, &conjugated, &a(j, j + 1), &a.rows, work);
        a(j, j) = beta;
    }
}

TEST(LapackOrthogonal, ComplexReflectorsFormAndApplyQ)
{
    const int m = 15;
    const complex_matrix a = random_matrix<complex>(m, n, 41);
    complex_matrix qr = a, tau(n, 1), work(lwork, 1);
    reflect_columns(qr, tau);
    const complex_matrix r = upper(corner(qr, n, n));

    int info = 99;
    complex_matrix q = qr;
    blac_zung2r_(&m, &n, &n, q, &m, tau, work, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(q);
    EXPECT_SAME(q * r, a);
    info = 99;
    q = qr;
    blac_zungqr_(&m, &n, &n, q, &m, tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(q * r, a);

    complex_matrix c = a;
    info = 99;
    blac_zunm2r_("L", "C", &m, &n, &n, qr, &m, tau, c, &m, work, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(corner(c, n, n), r);
    c = a;
    info = 99;
    blac_zunmqr_("L", "C", &m, &n, &n, qr, &m, tau, c, &m, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(corner(c, n, n), r);

    complex_matrix t(n, n), block_work(n, n);
    c = a;
    blac_zlarft_("F", "C", &m, &n, qr, &m, tau, t, &n);
    blac_zlarfb_("L", "C", "F", "C", &m, &n, &n, qr, &m, t, &n, c, &m, block_work, &n);
    EXPECT_SAME(corner(c, n, n), r);
}

TEST(LapackOrthogonal, Zungr2FormsTheRowsOfAnRqFactorisation)
{
    const int m = 4, columns = 7;
    const complex_matrix a = random_matrix<complex>(m, columns, 42);
    complex_matrix rq = a, tau(m, 1), work(lwork, 1);
    for (int i = m - 1; i >= 0; --i) {
        const int length = columns - m + i + 1, above = i, rest = length - 1;
        blac_zlacgv_(&length, &rq(i, 0), &m);
        complex beta = rq(i, length - 1);
        blac_zlarfg_(&length, &beta, &rq(i, 0), &m, &tau(i, 0));
        rq(i, length - 1) = 1;
        if (above > 0)
            blac_zlarf_("R", &above, &length, &rq(i, 0), &m, &tau(i, 0), rq, &m, work);
        rq(i, length - 1) = beta;
        blac_zlacgv_(&rest, &rq(i, 0), &m);
    }
    complex_matrix r(m, m), q = rq;
    for (int j = 0; j < m; ++j)
        for (int i = 0; i <= j; ++i)
            r(i, j) = rq(i, columns - m + j);
    int info = 99;
    blac_zungr2_(&m, &columns, &m, q, &m, tau, work, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(q * adjoint(q), identity<complex>(m));
    EXPECT_SAME(r * q, a);
}

// ---------------------------------------------------------------------------------------------------------------------
// Symmetric eigenvalues

void expect_eigenvectors(const real_matrix& a, const std::vector<double>& w, const real_matrix& z)
{
    EXPECT_UNITARY(z);
    EXPECT_SAME(a * z, z * diagonal(w));
    EXPECT_TRUE(std::is_sorted(w.begin(), w.end()));
}

TEST(LapackSymmetric, DsyevFindsAllEigenvectors)
{
    const real_matrix a = symmetric(random_matrix<double>(n, n, 50));
    real_matrix z = a, work(lwork, 1);
    std::vector<double> w(n);
    int info = 99;
    blac_dsyev_("V", "L", &n, z, &n, w.data(), work, &lwork, &info);
    EXPECT_EQ(info, 0);
    expect_eigenvectors(a, w, z);
}

TEST(LapackSymmetric, DsyevxAndDspevxFindSelectedEigenvectors)
{
    const real_matrix a = symmetric(random_matrix<double>(n, n, 51));
    const double vl = 0, vu = 0, abstol = 0;
    const int il = 3, iu = 7;
    real_matrix work(lwork, 1), all = a;
    std::vector<double> w(n), expected(n);
    int iwork[5 * n], ifail[n], m = 99, info = 99;
    blac_dsyev_("N", "U", &n, all, &n, expected.data(), work, &lwork, &info);

    real_matrix copy = a, z(n, 5);
    info = 99;
    blac_dsyevx_("V", "I", "U", &n, copy, &n, &vl, &vu, &il, &iu, &abstol, &m, w.data(), z, &n, work, &lwork,
                 iwork, ifail, &info);
    EXPECT_EQ(info, 0);
    ASSERT_EQ(m, 5);
    expect_eigenvectors(a, std::vector<double>(w.begin(), w.begin() + 5), z);
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(w[i], expected[il - 1 + i], Rounding);

    std::vector<double> ap = pack_lower(a);
    m = info = 99;
    blac_dspevx_("V", "I", "L", &n, ap.data(), &vl, &vu, &il, &iu, &abstol, &m, w.data(), z, &n, work, iwork,
                 ifail, &info);
    EXPECT_EQ(info, 0);
    ASSERT_EQ(m, 5);
    expect_eigenvectors(a, std::vector<double>(w.begin(), w.begin() + 5), z);
}

TEST(LapackSymmetric, DsygvSolvesTheGeneralProblem)
{
    const int itype = 1;
    const real_matrix a = symmetric(random_matrix<double>(n, n, 52));
    const real_matrix b = positive_definite(random_matrix<double>(n, n, 53));
    real_matrix z = a, factor = b, work(lwork, 1);
    std::vector<double> w(n);
    int info = 99;
    blac_dsygv_(&itype, "V", "L", &n, z, &n, factor, &n, w.data(), work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * z, b * z * diagonal(w));
}

TEST(LapackSymmetric, DsygstReducesToStandardForm)
{
    const int itype = 1;
    const real_matrix a = symmetric(random_matrix<double>(n, n, 54));
    real_matrix c = a, l = positive_definite(random_matrix<double>(n, n, 55));
    int info = 99;
    blac_dpotrf_("L", &n, l, &n, &info);
    l = lower(l);
    info = 99;
    blac_dsygst_(&itype, "L", &n, c, &n, l, &n, &info);
    EXPECT_EQ(info, 0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < j; ++i)
            c(i, j) = c(j, i);
    EXPECT_SAME(l * c * transpose(l), a);
}

TEST(LapackSymmetric, DsytrdAndDormtrReduceToTridiagonalForm)
{
    const real_matrix a = symmetric(random_matrix<double>(n, n, 56));
    real_matrix factor = a, q = identity<double>(n), tau(n, 1), work(lwork, 1);
    std::vector<double> d(n), e(n);
    int info = 99;
    blac_dsytrd_("L", &n, factor, &n, d.data(), e.data(), tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    info = 99;
    blac_dormtr_("L", "L", "N", &n, &n, factor, &n, tau, q, &n, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(q);
    EXPECT_SAME(a * q, q * tridiagonal(d, e));

    // Its panels: the same first steps.
    const int nb = 4;
    real_matrix panel = a, w(n, nb), panel_tau(n, 1);
    std::vector<double> panel_e(n);
    blac_dlatrd_("L", &n, &nb, panel, &n, panel_e.data(), panel_tau, w, &n);
    for (int i = 0; i < nb; ++i) {
        EXPECT_NEAR(panel_e[i], e[i], Rounding);
        EXPECT_NEAR(panel_tau(i, 0), tau(i, 0), Rounding);
    }
}

TEST(LapackSymmetric, TridiagonalEigenvectors)
{
    const real_matrix numbers = random_matrix<double>(n, 2, 57);
    const std::vector<double> d(numbers.data.begin(), numbers.data.begin() + n);
    const std::vector<double> e(numbers.data.begin() + n, numbers.data.end());
    const real_matrix a = tridiagonal(d, e);
    real_matrix z(n, n), work(lwork, 1);
    std::vector<double> w = d, off = e;
    int info = 99;
    blac_dsteqr_("I", &n, w.data(), off.data(), z, &n, work, &info);
    EXPECT_EQ(info, 0);
    expect_eigenvectors(a, w, z);

    const double vl = 0, vu = 0, abstol = 0;
    const int il = 0, iu = 0, nzc = n, liwork = 500;
    std::vector<double> diagonal_copy = d;
    off = e;
    int isuppz[2 * n], iwork[500], m = 99, tryrac = 1;
    info = 99;
    blac_dstemr_("V", "A", &n, diagonal_copy.data(), off.data(), &vl, &vu, &il, &iu, &m, w.data(), z, &n,
                 &nzc, isuppz, &tryrac, work, &lwork, iwork, &liwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(m, n);
    expect_eigenvectors(a, w, z);

    diagonal_copy = d;
    off = e;
    m = info = 99;
    blac_dstevr_("V", "A", &n, diagonal_copy.data(), off.data(), &vl, &vu, &il, &iu, &abstol, &m, w.data(), z,
                 &n, isuppz, work, &lwork, iwork, &liwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(m, n);
    expect_eigenvectors(a, w, z);
}

// ---------------------------------------------------------------------------------------------------------------------
// Unsymmetric eigenvalues

complex_matrix to_complex(const real_matrix& a)
{
    complex_matrix b(a.rows, a.columns);
    std::copy(a.data.begin(), a.data.end(), b.data.begin());
    return b;
}

TEST(LapackUnsymmetric, DgeevFindsEigenvectorsOnBothSides)
{
    const real_matrix a = random_matrix<double>(n, n, 60);
    real_matrix copy = a, left(n, n), right(n, n), work(lwork, 1);
    double wr[n], wi[n];
    int info = 99;
    blac_dgeev_("V", "V", &n, copy, &n, wr, wi, left, &n, right, &n, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    // A pair of columns holds the real and the imaginary part of a conjugate pair.
    std::vector<complex> w(n);
    complex_matrix u(n, n), v(n, n);
    for (int j = 0; j < n; ++j) {
        w[j] = complex(wr[j], wi[j]);
        const int re = wi[j] < 0 ? j - 1 : j, im = wi[j] < 0 ? j : j + 1;
        for (int i = 0; i < n; ++i) {
            u(i, j) = wi[j] == 0 ? left(i, j) : complex(left(i, re), wi[j] < 0 ? -left(i, im) : left(i, im));
            v(i, j) =
                wi[j] == 0 ? right(i, j) : complex(right(i, re), wi[j] < 0 ? -right(i, im) : right(i, im));
        }
    }
    EXPECT_SAME(to_complex(a) * v, v * diagonal(w));
    EXPECT_SAME(adjoint(u) * to_complex(a), diagonal(w) * adjoint(u));
}

TEST(LapackUnsymmetric, ZgeevFindsEigenvectorsOnBothSides)
{
    const complex_matrix a = random_matrix<complex>(n, n, 61);
    complex_matrix copy = a, u(n, n), v(n, n), work(lwork, 1);
    std::vector<complex> w(n);
    double rwork[2 * n];
    int info = 99;
    blac_zgeev_("V", "V", &n, copy, &n, w.data(), u, &n, v, &n, work, &lwork, rwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(a * v, v * diagonal(w));
    EXPECT_SAME(adjoint(u) * a, diagonal(w) * adjoint(u));
}

template <class T>
Matrix<T> triangular_with_distinct_eigenvalues(std::uint64_t number)
{
    return transpose(well_conditioned_lower<T>(number));
}

TEST(LapackUnsymmetric, TrevcFindsEigenvectorsOfATriangle)
{
    const int none[1] = {0};
    int select[n] = {}, m = 99, info = 99;
    const real_matrix a = triangular_with_distinct_eigenvalues<double>(62);
    real_matrix vl(n, n), vr(n, n), work(lwork, 1);
    std::vector<double> w(n);
    for (int i = 0; i < n; ++i)
        w[i] = a(i, i);
    blac_dtrevc_("B", "A", select, &n, a, &n, vl, &n, vr, &n, &n, &m, work, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(m, n);
    EXPECT_SAME(a * vr, vr * diagonal(w));
    EXPECT_SAME(transpose(vl) * a, diagonal(w) * transpose(vl));

    complex_matrix t = triangular_with_distinct_eigenvalues<complex>(63), zl(n, n), zr(n, n), zwork(lwork, 1);
    std::vector<complex> zw(n);
    for (int i = 0; i < n; ++i)
        zw[i] = t(i, i);
    const complex_matrix before = t;
    double rwork[n];
    m = info = 99;
    blac_ztrevc_("B", "A", none, &n, t, &n, zl, &n, zr, &n, &n, &m, zwork, rwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(m, n);
    EXPECT_EQ(t.data, before.data);
    EXPECT_SAME(t * zr, zr * diagonal(zw));
    EXPECT_SAME(adjoint(zl) * t, diagonal(zw) * adjoint(zl));
}

TEST(LapackUnsymmetric, ZgebalAndZgebakScaleBackAndForth)
{
    complex_matrix a = random_matrix<complex>(n, n, 64);
    for (int i = 0; i < n; ++i) {
        a(i, 0) *= 1e6;
        a(0, i) *= 1e-6;
    }
    complex_matrix balanced = a, v = random_matrix<complex>(n, 3, 65);
    const complex_matrix before = v;
    std::vector<double> scale(n);
    const int columns = 3;
    int ilo = 99, ihi = 99, info = 99;
    blac_zgebal_("S", &n, balanced, &n, &ilo, &ihi, scale.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(ilo, 1);
    EXPECT_EQ(ihi, n);
    EXPECT_NE(scale, std::vector<double>(n, 1.0));
    info = 99;
    blac_zgebak_("S", "R", &n, &ilo, &ihi, scale.data(), &columns, v, &n, &info);
    EXPECT_EQ(info, 0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            EXPECT_LT(std::abs(balanced(i, j) - a(i, j) * scale[j] / scale[i]), Rounding);
            if (j < columns) {
                EXPECT_LT(std::abs(v(i, j) - before(i, j) * scale[i]), Rounding * scale[i]);
            }
        }
}

TEST(LapackUnsymmetric, ComplexHessenbergReductionInOnePieceAndInPanels)
{
    const int ilo = 1, ihi = n, first = 1, nb = 4;
    const complex_matrix a = random_matrix<complex>(n, n, 66);
    complex_matrix h = a, tau(n, 1), work(lwork, 1);
    int info = 99;
    blac_zgehd2_(&n, &ilo, &ihi, h, &n, tau, work, &info);
    EXPECT_EQ(info, 0);
    complex_matrix q = h;
    info = 99;
    blac_zunghr_(&n, &ilo, &ihi, q, &n, tau, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    EXPECT_UNITARY(q);
    EXPECT_SAME(a * q, q * hessenberg(h));

    complex_matrix panel = a, panel_tau(nb, 1), t(nb, nb), y(n, nb);
    blac_zlahr2_(&n, &first, &nb, panel, &n, panel_tau, t, &nb, y, &n);
    for (int j = 0; j < nb; ++j) {
        EXPECT_LT(std::abs(panel_tau(j, 0) - tau(j, 0)), Rounding);
        for (int i = 1; i < n; ++i)
            EXPECT_LT(std::abs(panel(i, j) - h(i, j)), Rounding) << i << ", " << j;
    }
}

constexpr int large = 30; // above the order at which the QR routines hand small matrices to each other

void expect_schur(const complex_matrix& h, const complex_matrix& t, const complex_matrix& z,
                  const std::vector<complex>& w)
{
    EXPECT_UNITARY(z);
    EXPECT_SAME(z * upper(t) * adjoint(z), h);
    for (int i = 0; i < large; ++i)
        EXPECT_LT(std::abs(w[i] - t(i, i)), Rounding);
}

TEST(LapackUnsymmetric, SchurFormsOfAComplexHessenbergMatrix)
{
    const int order = large, ilo = 1, ihi = large, yes = 1;
    const complex_matrix h = hessenberg(random_matrix<complex>(large, large, 67));
    complex_matrix work(lwork, 1);
    std::vector<complex> w(large);
    int info = 99;

    complex_matrix t = h, z = identity<complex>(large);
    blac_zhseqr_("S", "V", &order, &ilo, &ihi, t, &order, w.data(), z, &order, work, &lwork, &info);
    EXPECT_EQ(info, 0);
    expect_schur(h, t, z, w);

    t = h, z = identity<complex>(large), info = 99;
    blac_zlahqr_(&yes, &yes, &order, &ilo, &ihi, t, &order, w.data(), &ilo, &ihi, z, &order, &info);
    EXPECT_EQ(info, 0);
    expect_schur(h, t, z, w);

    for (const auto zlaqr : {blac_zlaqr0_, blac_zlaqr4_}) {
        t = h, z = identity<complex>(large), info = 99;
        zlaqr(&yes, &yes, &order, &ilo, &ihi, t, &order, w.data(), &ilo, &ihi, z, &order, work, &lwork,
              &info);
        EXPECT_EQ(info, 0);
        expect_schur(h, t, z, w);
    }
}

TEST(LapackUnsymmetric, EarlyDeflationAndQrSweepAreSimilarities)
{
    const int order = large, ilo = 1, ihi = large, yes = 1, window = 8;
    const complex_matrix h = hessenberg(random_matrix<complex>(large, large, 68));
    complex_matrix work(lwork, 1), v(large, large), a(large, large), b(large, large), shifts(large, 1);

    for (const auto zlaqr : {blac_zlaqr2_, blac_zlaqr3_}) {
        complex_matrix t = h, z = identity<complex>(large);
        int ns = 99, nd = 99;
        zlaqr(&yes, &yes, &order, &ilo, &ihi, &window, t, &order, &ilo, &ihi, z, &order, &ns, &nd, shifts, v,
              &order, &order, a, &order, &order, b, &order, work, &lwork);
        EXPECT_EQ(ns + nd, window);
        EXPECT_UNITARY(z);
        EXPECT_SAME(z * hessenberg(t) * adjoint(z), h);
    }

    const int count = 4, plain = 0, lds = 3 * large;
    shifts = random_matrix<complex>(large, 1, 69);
    complex_matrix t = h, z = identity<complex>(large), u(lds, lds), wv(large, lds), wh(lds, large);
    blac_zlaqr5_(&yes, &yes, &plain, &order, &ilo, &ihi, &count, shifts, t, &order, &ilo, &ihi, z, &order, v,
                 &order, u, &lds, &order, wv, &order, &order, wh, &lds);
    EXPECT_UNITARY(z);
    EXPECT_SAME(z * hessenberg(t) * adjoint(z), h);
    EXPECT_GT(largest(t - h), 0.01);
}

TEST(LapackUnsymmetric, Zlaqr1IsAlongTheFirstColumnOfTheShiftedProduct)
{
    const int three = 3;
    const complex_matrix h = hessenberg(random_matrix<complex>(3, 3, 70)),
                         s = random_matrix<complex>(2, 1, 71);
    complex_matrix v(3, 1);
    blac_zlaqr1_(&three, h, &three, &s.data[0], &s.data[1], v);
    const complex_matrix one = identity<complex>(3);
    const complex_matrix product =
        combine(complex(1), h, -s(0, 0), one) * combine(complex(1), h, -s(1, 0), one);
    for (int i = 1; i < 3; ++i)
        EXPECT_LT(std::abs(v(i, 0) * product(0, 0) - v(0, 0) * product(i, 0)), Rounding);
    EXPECT_GT(largest(v), 0.01);
}

TEST(LapackUnsymmetric, ZtrexcMovesAnEigenvalue)
{
    const complex_matrix a = triangular_with_distinct_eigenvalues<complex>(72);
    complex_matrix t = a, q = identity<complex>(n);
    const int from = 9, to = 2;
    int info = 99;
    blac_ztrexc_("V", &n, t, &n, q, &n, &from, &to, &info);
    EXPECT_EQ(info, 0);
    EXPECT_LT(std::abs(t(to - 1, to - 1) - a(from - 1, from - 1)), Rounding);
    EXPECT_UNITARY(q);
    EXPECT_SAME(q * upper(t) * adjoint(q), a);
}

// ---------------------------------------------------------------------------------------------------------------------
// Auxiliary routines

TEST(LapackAuxiliary, DladivAndDlapy3)
{
    const double a = -5, b = 10, c = 1, d = 2, x = 3, y = -4, z = 12;
    double p = 99, q = 99;
    blac_dladiv_(&a, &b, &c, &d, &p, &q);
    EXPECT_EQ(p, 3);
    EXPECT_EQ(q, 4);
    EXPECT_NEAR(blac_dlapy3_(&x, &y, &z), 13, Rounding);
}

TEST(LapackAuxiliary, DlamchKnowsTheFormat)
{
    EXPECT_EQ(blac_dlamch_("E"), DBL_EPSILON / 2);
    EXPECT_EQ(blac_dlamch_("B"), 2);
    EXPECT_EQ(blac_dlamch_("N"), 53);
    EXPECT_EQ(blac_dlamch_("O"), DBL_MAX);
}

TEST(LapackAuxiliary, IeeeckTrustsInfinitiesAndNaNs)
{
    const float zero = 0, one = 1;
    for (const int ispec : {0, 1})
        EXPECT_EQ(blac_ieeeck_(&ispec, &zero, &one), 1);
}

TEST(LapackAuxiliary, IlazlcAndIlazlrFindTheLastThatIsNotZero)
{
    complex_matrix a(n, n);
    a(4, 7) = complex(0, 1);
    a(6, 2) = 1;
    EXPECT_EQ(blac_ilazlc_(&n, &n, a, &n), 8);
    EXPECT_EQ(blac_ilazlr_(&n, &n, a, &n), 7);
}

TEST(LapackAuxiliary, ZlacgvConjugates)
{
    const int two = 2, count = 3;
    complex x[5] = {{1, 2}, {3, 4}, {5, -6}, {7, 8}, {9, 10}};
    blac_zlacgv_(&count, x, &two);
    EXPECT_EQ(x[0], complex(1, -2));
    EXPECT_EQ(x[1], complex(3, 4));
    EXPECT_EQ(x[2], complex(5, 6));
    EXPECT_EQ(x[4], complex(9, -10));
}

TEST(LapackAuxiliary, ZlangeNorms)
{
    const int two = 2;
    complex_matrix a(2, 2);
    a(0, 0) = complex(3, 4);
    a(1, 0) = complex(0, -12);
    a(0, 1) = 2;
    double work[2];
    EXPECT_NEAR(blac_zlange_("M", &two, &two, a, &two, work), 12, Rounding);
    EXPECT_NEAR(blac_zlange_("1", &two, &two, a, &two, work), 17, Rounding);
    EXPECT_NEAR(blac_zlange_("I", &two, &two, a, &two, work), 12, Rounding);
    EXPECT_NEAR(blac_zlange_("F", &two, &two, a, &two, work), std::sqrt(173.0), Rounding);
}

TEST(LapackAuxiliary, ZlartgAndZrotRotate)
{
    const complex f(3, -1), g(0.5, 2);
    complex s = 99, r = 99;
    double c = 99;
    blac_zlartg_(&f, &g, &c, &s, &r);
    EXPECT_LT(std::abs(c * f + s * g - r), Rounding);
    EXPECT_LT(std::abs(-std::conj(s) * f + c * g), Rounding);

    const int one = 1;
    complex x = f, y = g;
    blac_zrot_(&one, &x, &step, &y, &step, &c, &s);
    EXPECT_LT(std::abs(x - r), Rounding);
    EXPECT_LT(std::abs(y), Rounding);
}

TEST(LapackAuxiliary, ZlasclScales)
{
    const int unused = 0;
    const double from = 4, to = 2;
    const complex_matrix a = random_matrix<complex>(n, n, 80);
    complex_matrix b = a;
    int info = 99;
    blac_zlascl_("L", &unused, &unused, &from, &to, &n, &n, b, &n, &info);
    EXPECT_EQ(info, 0);
    EXPECT_SAME(lower(b), combine(complex(0.5), lower(a), complex(0), a));
    EXPECT_EQ(b(0, 1), a(0, 1));
}

TEST(LapackAuxiliary, ZlassqAddsSquares)
{
    const int two = 2;
    const complex x[2] = {{1, 2}, {3, -4}};
    double scale = 2, sumsq = 5;
    blac_zlassq_(&two, x, &step, &scale, &sumsq);
    EXPECT_NEAR(scale * scale * sumsq, 20 + 30, Rounding);
}

} // namespace
