// SPDX-License-Identifier: BSD-3-Clause
// What the Cholesky modifications are for: the factor they leave belongs to the modified matrix. Errors are
// measured in the Frobenius norm, in units of 2⁻⁵³ times |L|² + |x|²; four was the most ever seen, whatever
// the order.
#include "TOVBlaModule.h"
#include "matrix_market.h"
#include "random.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace support;

namespace {

using Vector = std::vector<double>;

// A lower triangle of order n, packed as a full square; zero above the diagonal.
struct Factor
{
    int n;
    Vector l;

    double& at(int i, int j)
    {
        return l[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(n)];
    }
};

double norm_squared(const Vector& v)
{
    double sum = 0.0;
    for (double x : v)
        sum += x * x;
    return sum;
}

// The lower triangle of L·S·Lᵀ + sign·z·zᵀ; the first nlead elements of the diagonal S are 1, the others -1.
Vector product(const Factor& f, int nlead, double sign, const Vector& z)
{
    Vector scaled = f.l, result(f.l.size(), 0.0);
    for (std::size_t p = static_cast<std::size_t>(nlead) * static_cast<std::size_t>(f.n); p < scaled.size();
         ++p)
        scaled[p] = -scaled[p];
    const double one = 1.0, zero = 0.0;
    const int ld = f.n, inc = 1;
    blac_dgemm_("N", "T", &f.n, &f.n, &f.n, &one, scaled.data(), &ld, f.l.data(), &ld, &zero, result.data(),
                &ld);
    blac_dger_(&f.n, &f.n, &sign, z.data(), &inc, z.data(), &inc, result.data(), &ld);
    return result;
}

// |a - b| in units of 2⁻⁵³·size
double error(const Vector& a, const Vector& b, double size)
{
    Vector difference(a.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        difference[i] = a[i] - b[i];
    return std::sqrt(norm_squared(difference)) / (0x1p-53 * size);
}

// A factor whose columns have diagonals from 1 to 2, of moderate condition.
Factor random_factor(int n, std::mt19937_64& random)
{
    Factor f{n, Vector(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), 0.0)};
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int j = 0; j < n; ++j) {
        f.at(j, j) = 1.5 + 0.5 * uniform(random);
        for (int i = j + 1; i < n; ++i)
            f.at(i, j) = uniform(random) / std::sqrt(n);
    }
    return f;
}

Vector random_vector(int n, double size, std::mt19937_64& random)
{
    std::uniform_real_distribution<double> uniform(-size, size);
    Vector x(static_cast<std::size_t>(n));
    for (double& value : x)
        value = uniform(random);
    return x;
}

// From 2⁻¹⁰ to 2².
double random_size(std::mt19937_64& random)
{
    return std::exp2(std::uniform_real_distribution<double>(-10.0, 2.0)(random));
}

int cholupd(char job, Factor& f, int nlead, int ncol, Vector& x, double tol = 0.0)
{
    int info = -1;
    blac_cholupd_(&job, &f.n, &nlead, &ncol, f.l.data(), &f.n, x.data(), &tol, &info);
    return info;
}

struct Rotations
{
    Vector c, s;
    explicit Rotations(int n) : c(static_cast<std::size_t>(n)), s(static_cast<std::size_t>(n)) {}
};

void dchud(Factor& f, const Vector& x)
{
    Rotations r(f.n);
    blac_dchud_(f.l.data(), &f.n, &f.n, x.data(), r.c.data(), r.s.data());
}

int dchdd(Factor& f, const Vector& x)
{
    Rotations r(f.n);
    int info = 7;
    blac_dchdd_(f.l.data(), &f.n, &f.n, x.data(), r.c.data(), r.s.data(), &info);
    return info;
}

// Updates, checks L·Lᵀ + x·xᵀ, downdates, checks that L·Lᵀ is back.
void expect_round_trip(const Factor& start, const Vector& x, bool classic)
{
    const int n = start.n;
    const Vector none(static_cast<std::size_t>(n), 0.0);
    const double size = norm_squared(start.l) + norm_squared(x);
    Factor f = start;
    Vector y = x;
    if (classic)
        dchud(f, x);
    else
        ASSERT_EQ(cholupd('P', f, n, n, y), 0);
    EXPECT_LT(error(product(f, n, 0.0, none), product(start, n, 1.0, x), size), 8.0);
    y = x;
    ASSERT_EQ(classic ? dchdd(f, x) : cholupd('N', f, n, n, y), 0);
    EXPECT_LT(error(product(f, n, 0.0, none), product(start, n, 0.0, none), size), 8.0);
}

TEST(CholeskyProperties, AnUpdateFollowedByItsDowndateRestoresTheMatrixOverAThousandRounds)
{
    auto random = generator();
    for (int round = 0; round < 1000; ++round) {
        const int n = 1 + static_cast<int>(random() % (round % 10 ? 60 : 300));
        SCOPED_TRACE(::testing::Message() << "round " << round << ", n " << n);
        const Factor f = random_factor(n, random);
        const Vector x = random_vector(n, random_size(random), random);
        expect_round_trip(f, x, round % 2 == 0);
        if (HasFailure())
            return;
    }
}

TEST(CholeskyProperties, AnUpdateFollowedByItsDowndateRestoresRealStiffnessMatrices)
{
    int count = 0;
    for (const auto& file : matrix_files()) {
        SCOPED_TRACE(file.filename());
        const Rows a = read_matrix(file);
        if (a.m > 300 || a.m != a.n)
            continue;
        Factor f{a.n, Vector(static_cast<std::size_t>(a.n) * static_cast<std::size_t>(a.n), 0.0)};
        for (int i = 0; i < a.m; ++i)
            for (int p = a.ia[static_cast<std::size_t>(i)]; p < a.ia[static_cast<std::size_t>(i) + 1]; ++p)
                if (a.ja[static_cast<std::size_t>(p)] <= i)
                    f.at(i, a.ja[static_cast<std::size_t>(p)]) = a.a[static_cast<std::size_t>(p)];
        int info = 0;
        blac_dpotrf_("L", &f.n, f.l.data(), &f.n, &info);
        if (info != 0)
            continue; // not positive definite
        ++count;
        auto random = generator(static_cast<std::uint64_t>(a.n));
        // A change of one node's stiffness, small beside the smallest pivot, that involves all unknowns
        // behind it.
        Vector x(static_cast<std::size_t>(a.n), 0.0);
        double smallest = INFINITY;
        for (int j = 0; j < a.n; ++j)
            smallest = std::fmin(smallest, f.at(j, j));
        for (int j = a.n / 3; j < a.n; ++j)
            x[static_cast<std::size_t>(j)] = 0.01 * smallest * ordinary(random);
        expect_round_trip(f, x, true);
        expect_round_trip(f, x, false);
    }
    EXPECT_GE(count, 5);
}

// L'·S·L'ᵀ ± z·zᵀ = L·S·Lᵀ ± x·xᵀ, z the tail of x that the columns taken so far have not absorbed.
TEST(CholeskyProperties, TheSignSplitHoldsOverAThousandRoundsAsFarAsTheColumnsGo)
{
    auto random = generator(1);
    int complete = 0, limited = 0, refused = 0;
    for (int round = 0; round < 1000; ++round) {
        const int n = 1 + static_cast<int>(random() % (round % 10 ? 60 : 300));
        const int nlead = static_cast<int>(random() % static_cast<unsigned>(n + 1));
        const int ncol = round % 3 ? n : static_cast<int>(random() % static_cast<unsigned>(n + 1));
        const char job = random() % 2 ? 'P' : 'N';
        const double sign = job == 'P' ? 1.0 : -1.0;
        SCOPED_TRACE(::testing::Message() << "round " << round << ", job " << job << ", n " << n << ", nlead "
                                          << nlead << ", ncol " << ncol);
        const Factor start = random_factor(n, random);
        const Vector x = random_vector(n, random_size(random), random);
        Factor f = start;
        Vector z = x;
        const int info = cholupd(job, f, nlead, ncol, z, 0.05);
        const int taken = info == 0 ? ncol : info - 1;
        ++(info != 0 ? refused : ncol < n ? limited : complete);
        std::fill(z.begin(), z.begin() + taken, 0.0);
        const double size = norm_squared(start.l) + norm_squared(f.l) + norm_squared(x) + norm_squared(z);
        EXPECT_LT(error(product(f, nlead, sign, z), product(start, nlead, sign, x), size), 8.0);
        for (std::size_t p = static_cast<std::size_t>(taken) * static_cast<std::size_t>(n); p < f.l.size();
             ++p)
            ASSERT_EQ(f.l[p], start.l[p]) << "the other columns stay";
        if (HasFailure())
            return;
    }
    EXPECT_GT(complete, 50);
    EXPECT_GT(limited, 50);
    EXPECT_GT(refused, 50);
}

} // namespace
