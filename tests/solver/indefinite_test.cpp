// SPDX-License-Identifier: BSD-3-Clause
// Elimination without exchanges of rows on matrices that ask for them.
#include "problems.h"
#include "triplets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

// Whether it is called solved, which must be right; and what elimination with exchanges solves to six digits
// must be called so.
bool solved(int n, double smallest, double largest, std::uint64_t number)
{
    auto random = support::generator(number);
    const SparseMatrix a = problems::indefinite(n, smallest, largest, random);
    const Vectors x = problems::ones(a.n), b = problems::product(a, x);
    const problems::Outcome o = problems::solved(a, b);
    if (o.trusted)
        EXPECT_LT(problems::relativeError(o.x, x), 10.0 * o.bound);
    else
        EXPECT_GT(problems::relativeError(problems::exactSolution(n, problems::dense(a), b), x), 1e-6)
            << o.verdict << ", diagonal from " << smallest << ", number " << number;
    return o.trusted;
}

} // namespace

// Accepted, such pivots would multiply rounding errors by 1e13; they are judged against the shift instead.
TEST(Indefinite, DiagonalsNextToNothingAreShifted)
{
    int count = 0;
    for (int k = 0; k < 40; ++k)
        count += solved(200, 1e-13, 1e-12, 100 + k);
    EXPECT_GE(count, 38);
}

TEST(Indefinite, DiagonalsOfEverySmallSize)
{
    int systems = 0, count = 0;
    for (int k = 0; k < 40; ++k)
        for (double size = 1e-16; size < 1e-3; size *= 10.0, ++systems)
            count += solved(200, size, 10.0 * size, 1000 + k);
    EXPECT_GE(count, systems * 98 / 100);
}

// Cycles of four springs with strengths v, -v, v, -v: every row sums to nothing, and what moves freely is
// spread over all unknowns and all shifted pivots.
TEST(Indefinite, SingularSystemsAreNeverTrusted)
{
    auto random = support::generator(8);
    int treated = 0;
    for (int k = 0; k < 30; ++k) {
        const int n = 20 + static_cast<int>(random() % 80);
        std::vector<Triplet> entries;
        for (int cycle = 0; cycle < n; ++cycle) {
            const int first = static_cast<int>(random() % n), step = 1 + static_cast<int>(random() % (n / 4));
            const double value = std::ldexp(static_cast<double>(random() % 1024) + 1.0, -10);
            for (int t = 0; t < 4; ++t) {
                const int i = (first + t * step) % n, j = (first + (t + 1) % 4 * step) % n;
                entries.push_back({i, j, t % 2 ? value : -value});
                entries.push_back({j, i, t % 2 ? value : -value});
            }
        }
        SparseMatrix a = fromTriplets(n, entries);
        a.symmetric = true;
        Vectors x(n, 1);
        for (double& value : x.value)
            value = support::ordinary(random);
        for (const Vectors& b : {x, problems::product(a, x)})
            for (bool symmetric : {true, false}) {
                const problems::Outcome o = problems::solved(a, b, problems::How{symmetric});
                EXPECT_FALSE(o.trusted) << o.verdict;
                EXPECT_GE(o.bound, 0.1);
                treated += o.replaced + o.shifted > 0;
            }
    }
    EXPECT_GT(treated, 90); // of 120
}

// Constraints that nearly repeat each other, of any condition: what is called solved is, and what can be
// solved is.
TEST(Indefinite, SaddlePoints)
{
    auto random = support::generator(7);
    int solvable = 0, trusted = 0;
    for (int k = 0; k < 600; ++k) {
        const int n = 6 + static_cast<int>(random() % 25), free = n - n / 3;
        problems::Dense a = problems::conditioned(n, std::pow(10.0, k % 12), true, random);
        for (int i = free; i < n; ++i)
            std::fill_n(a.begin() + free + n * i, n - free, 0.0);
        const double distance = std::pow(10.0, -(k % 17));
        for (int j = 0; j < free; ++j)
            a[j + n * (n - 1)] = a[n - 1 + n * j] = a[n - 2 + n * j] + distance * support::ordinary(random);
        const SparseMatrix s = problems::sparse(n, a);
        const Vectors b = problems::product(s, problems::ones(n));
        const problems::Outcome o = problems::solved(s, b);
        const Vectors exact = problems::exactSolution(n, a, b);
        if (o.trusted)
            EXPECT_LT(problems::relativeError(o.x, exact), 10.0 * o.bound) << o.verdict;
        if (problems::relativeError(exact, problems::ones(n)) < 1e-6) {
            ++solvable;
            trusted += o.trusted;
        }
    }
    EXPECT_GT(solvable, 200);
    EXPECT_GE(trusted, solvable * 99 / 100);
}
