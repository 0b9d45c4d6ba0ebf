// SPDX-License-Identifier: BSD-3-Clause
// blaC_selimC against the unblocked factorisation and against dense algebra.
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"

#include <algorithm>
#include <vector>

extern "C" void selimC_by_its_plain_name(int, int, double, double*) __asm__("blaC_selimC");

using namespace support;
using std::int64_t;

namespace {

/// Where the block columns, d, dinv and the work area stand.
struct Packed
{
    int n, nb, p, r;
    int64_t front; // doubles of the block columns

    Packed(int n_, int nb_) : n(n_), nb(nb_), p((n_ + nb_ - 1) / nb_ - 1), r(n_ - p * nb_)
    {
        front = int64_t{n} * n - int64_t{p - 1} * p / 2 * nb * nb - int64_t{p} * nb * r;
    }
    int64_t total() const { return front + 2 * n + int64_t{nb} * nb; }

    /// Offset of element (i,j), from 0, i not above the block of j.
    int64_t at(int i, int j) const
    {
        const int q = std::min(j / nb, p);
        int64_t offset = 0;
        for (int s = 0; s < q; ++s)
            offset += int64_t{nb} * (n - s * nb);
        return offset + (i - q * nb) + int64_t{j - q * nb} * (n - q * nb);
    }
    bool same_block(int i, int j) const { return std::min(i / nb, p) == std::min(j / nb, p); }
};

using Dense = std::vector<double>; // n×n, column-major

Dense symmetric_indefinite(int n, std::mt19937_64& random)
{
    Dense a(static_cast<std::size_t>(n * n));
    for (int j = 0; j < n; ++j)
        for (int i = j; i < n; ++i) {
            double x = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
            if (i == j)
                x = (random() % 2 ? 1.0 : -1.0) * (n + std::fabs(x)); // dominant: stable without pivoting
            a[static_cast<std::size_t>(i + j * n)] = a[static_cast<std::size_t>(j + i * n)] = x;
        }
    return a;
}

/// The packed front of a, with garbage wherever the routine must not care.
struct Front
{
    Packed shape;
    Guarded<double> memory;

    Front(const Dense& a, int n, int nb) : shape(n, nb), memory(shape.total())
    {
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i)
                memory.set(shape.at(i, j), a[static_cast<std::size_t>(i + j * n)]);
    }
    double operator()(int i, int j) const { return memory.get(shape.at(i, j)); }
    double d(int k) const { return memory.get(shape.front + k); }
    double dinv(int k) const { return memory.get(shape.front + shape.n + k); }
};

/// N = (L·D)⁻¹ of the unblocked factorisation, lower triangular; d and dinv of it.
struct Unblocked
{
    Dense factor, inverse;
    std::vector<double> d, dinv;

    Unblocked(const Dense& a, int n, double tol)
        : factor(a), inverse(a.size()), d(static_cast<std::size_t>(n)), dinv(static_cast<std::size_t>(n))
    {
        blac_selim_small_(&n, factor.data(), &n, d.data(), dinv.data(), &tol);
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i) {
                double sum = i == j;
                for (int k = j; k < i; ++k)
                    sum -= factor[static_cast<std::size_t>(i + k * n)] *
                           inverse[static_cast<std::size_t>(k + j * n)];
                inverse[static_cast<std::size_t>(i + j * n)] = sum / d[static_cast<std::size_t>(i)];
            }
    }
};

const int Orders[][2] = {{2, 1},  {5, 2},  {6, 3},  {7, 3},   {8, 8},   {9, 8},
                         {17, 4}, {40, 8}, {41, 8}, {64, 16}, {100, 33}};

TEST(SelimC, LeavesTheFactorOnTheDiagonalAndTheNegatedInverseBelow)
{
    for (auto [n, nb] : Orders)
        for (std::uint64_t round = 0; round < 5; ++round) {
            auto random = generator(static_cast<std::uint64_t>(n * 1000 + nb) + round * 1000000);
            const Dense a = symmetric_indefinite(n, random);
            const Unblocked u(a, n, 0.0);
            Front f(a, n, nb);
            blaC_selimC(n, nb, 0.0, f.memory);
            for (int j = 0; j < n; ++j) {
                EXPECT_NEAR(f.d(j) / u.d[static_cast<std::size_t>(j)], 1.0, 1e-13 * n) << "pivot " << j;
                EXPECT_EQ(f.dinv(j), 1.0 / f.d(j));
                EXPECT_EQ(f(j, j), f.d(j)) << "the pivots stand on the diagonal again";
                for (int i = 0; i < n; ++i) {
                    const std::size_t ij = static_cast<std::size_t>(i + j * n);
                    if (f.shape.same_block(i, j))
                        EXPECT_NEAR(f(i, j), u.factor[ij], 1e-13 * n * n) << i << ' ' << j;
                    else if (i > j)
                        EXPECT_NEAR(f(i, j), -u.inverse[ij], 1e-15 * n) << i << ' ' << j;
                }
            }
            if (HasFailure())
                FAIL() << "n " << n << ", nb " << nb;
        }
}

/// v := N·v or Nᵀ·v as a caller applies it: solves with the diagonal blocks, products with the stored -N.
std::vector<double> apply(const Front& f, const std::vector<double>& v, bool transposed)
{
    const int n = f.shape.n;
    std::vector<double> result(v.size());
    std::vector<double> within(v); // solved in place, block by block
    const auto at = [](std::vector<double>& x, int i) -> double& { return x[static_cast<std::size_t>(i)]; };
    for (int step = 0; step < n; ++step) {
        const int j = transposed ? n - 1 - step : step;
        if (!transposed) {
            at(within, j) /= f(j, j);
            for (int i = j + 1; i < n && f.shape.same_block(i, j); ++i)
                at(within, i) -= f(i, j) * at(within, j);
        } else {
            for (int i = j + 1; i < n && f.shape.same_block(i, j); ++i)
                at(within, j) -= f(i, j) * at(within, i);
            at(within, j) /= f(j, j);
        }
    }
    std::vector<double> input(v);
    for (int j = 0; j < n; ++j)
        at(result, j) = at(within, j);
    for (int j = 0; j < n; ++j)
        for (int i = j + 1; i < n; ++i)
            if (!f.shape.same_block(i, j)) {
                if (transposed)
                    at(result, j) -= f(i, j) * at(input, i);
                else
                    at(result, i) -= f(i, j) * at(input, j);
            }
    return result;
}

TEST(SelimC, NTransposedTimesDTimesNIsTheInverse)
{
    for (auto [n, nb] : Orders) {
        auto random = generator(static_cast<std::uint64_t>(n + nb));
        const Dense a = symmetric_indefinite(n, random);
        Front f(a, n, nb);
        blaC_selimC(n, nb, 0.0, f.memory);

        std::vector<double> x(static_cast<std::size_t>(n)), b(x);
        for (double& value : x)
            value = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
        for (std::size_t j = 0; j < x.size(); ++j)
            for (std::size_t i = 0; i < x.size(); ++i)
                b[i] += a[i + j * x.size()] * x[j];
        std::vector<double> y = apply(f, b, false);
        for (int i = 0; i < n; ++i)
            y[static_cast<std::size_t>(i)] *= f.d(i);
        const std::vector<double> solved = apply(f, y, true);
        for (std::size_t i = 0; i < x.size(); ++i)
            EXPECT_NEAR(solved[i], x[i], 1e-13 * n) << "n " << n << ", nb " << nb;
    }
}

TEST(SelimC, TheWorkAreasContentDoesNotMatterAndNothingBehindItIsTouched)
{
    for (auto [n, nb] : Orders) {
        auto random = generator(7);
        const Dense a = symmetric_indefinite(n, random);
        Front canaries(a, n, nb), zeros(a, n, nb); // the memory ends at a guard page behind the nb² doubles
        for (int64_t i = canaries.shape.front + 2 * n; i < canaries.shape.total(); ++i)
            zeros.memory.set(i, 0.0);
        blaC_selimC(n, nb, 0.0, canaries.memory);
        blaC_selimC(n, nb, 0.0, zeros.memory);
        for (int64_t i = 0; i < canaries.shape.front + 2 * n; ++i)
            ASSERT_EQ(bits(canaries.memory.get(i)), bits(zeros.memory.get(i))) << "n " << n << ", nb " << nb;
    }
}

TEST(SelimC, UpToOnePanelIsTheSmallKernelWithTheOutputsBehindTheSquare)
{
    for (auto [n, nb] : {std::pair{1, 1}, {3, 3}, {3, 5}, {8, 8}, {7, 100}}) {
        auto random = generator(3);
        const Dense a = symmetric_indefinite(n, random);
        const double tol = 1e-3;
        Front f(a, n, nb);
        Guarded<double> expected(n * n + 2 * n);
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i)
                expected.set(i + j * n, a[static_cast<std::size_t>(i + j * n)]);
        blac_selim_small_(&n, expected, &n, expected + n * n, expected + n * n + n, &tol);
        blaC_selimC(n, nb, tol, f.memory);
        for (int i = 0; i < n * n + 2 * n; ++i)
            EXPECT_EQ(bits(f.memory.get(i)), bits(expected.get(i))) << "n " << n << ", element " << i;
    }
}

TEST(SelimC, ATinyPivotIsReplacedInAnyPanel)
{
    const int n = 11, nb = 4;
    for (int tiny = 0; tiny < n; ++tiny) {
        Dense a(static_cast<std::size_t>(n * n));
        for (int j = 0; j < n; ++j) {
            a[static_cast<std::size_t>(j + j * n)] = j == tiny ? 1e-12 : 2.0 + j;
            for (int i = j + 1; i < n; ++i)
                if (i != tiny && j != tiny)
                    a[static_cast<std::size_t>(i + j * n)] = 0.125;
        }
        Front f(a, n, nb);
        blaC_selimC(n, nb, 1e-12, f.memory); // equal to tol: replaced
        for (int k = 0; k < n; ++k) {
            EXPECT_EQ(f.d(k) == 1e36, k == tiny) << "tiny " << tiny << ", pivot " << k;
            EXPECT_EQ(f.dinv(k) == 1e-36, k == tiny) << "tiny " << tiny << ", pivot " << k;
        }
    }
}

TEST(SelimC, ThePlainNameIsTheSameRoutine)
{
    // volatile: clang takes two declared functions for different ones without looking
    void (*const volatile plain)(int, int, double, double*) = &selimC_by_its_plain_name;
    void (*const volatile mangled)(int, int, double, double*) = &blaC_selimC;
    EXPECT_EQ(reinterpret_cast<void*>(plain), reinterpret_cast<void*>(mangled));
}

} // namespace
