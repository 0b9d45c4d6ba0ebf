// SPDX-License-Identifier: BSD-3-Clause
// The solver's own loops, for narrow triangles and few right-hand sides, against plain ones: bit by bit where
// the sums are added in one order whatever the vectors, to rounding where they are not, and the same bits on
// processors with and without wide vectors.
#include "bits.h"
#include "columns.h"
#include "guarded.h"
#include "random.h"
#include "triangles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace support;

namespace {

using Triangle = void (*)(int m, int n, const double* u, int ldu, double* b, int ldb);

// An array between guards, filled with numbers of magnitude below `most`.
struct Filled : Guarded<double>
{
    Filled(std::int64_t count, double most, std::mt19937_64& random) : Guarded<double>(count)
    {
        std::uniform_real_distribution<double> uniform(-most, most);
        for (std::int64_t i = 0; i < count; ++i)
            set(i, uniform(random));
    }
    Filled(const Filled& other) : Guarded<double>(other.size())
    {
        for (std::int64_t i = 0; i < size(); ++i)
            set(i, other.get(i));
    }
};

TEST(NarrowTriangles, GiveTheBitsOfThePlainLoop)
{
    std::mt19937_64 random = generator(1);
    for (int m : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 40})
        for (int n = 0; n <= narrowTriangle; ++n) {
            const int ldu = n + 2, ldb = m + 3;
            Filled u(n == 0 ? 0 : ldu * (n - 1) + n - 1, 1.0, random), b(ldb * narrowTriangle, 1.0, random);
            for (int j = 0; j < n; ++j) // neither the diagonal nor what is below is read
                for (int i = j; i < ldu && i + ldu * j < u.size(); ++i)
                    u.set(i + ldu * j, std::nan(""));
            Filled expected = b;
            for (int j = 0; j < n; ++j)
                for (int k = 0; k < j; ++k)
                    for (int i = 0; i < m; ++i)
                        expected[i + ldb * j] -= expected[i + ldb * k] * u[k + ldu * j];
            for (Triangle solve : {solveByUpperUnit, solveByUpperUnitNarrow}) {
                Filled actual = b;
                solve(m, n, u, ldu, actual, ldb);
                ASSERT_TRUE(same_memory(expected, actual, NaNs::Exact)) << "m " << m << ", n " << n;
            }
        }
}

// A panel whose solutions stay about as large as the right-hand sides, nonsense above its diagonal.
struct Panel
{
    int order, pivots;
    Filled l, reciprocal;

    Panel(int rows, int columns, std::mt19937_64& random)
        : order(rows), pivots(columns), l(std::int64_t{rows} * columns, 1.0 / (rows + 1), random),
          reciprocal(columns, 1.0, random)
    {
        for (int j = 0; j < pivots; ++j) {
            for (int i = 0; i <= j; ++i)
                l.set(i + std::int64_t{order} * j, std::nan(""));
            reciprocal.set(j, 1.0 + 0.5 * reciprocal.get(j));
        }
    }
    double at(int i, int j) const { return l.get(i + std::int64_t{order} * j); }
};

void plainForward(const Panel& p, double* v, int width)
{
    for (int c = 0; c < width; ++c)
        for (int j = 0; j < p.pivots; ++j) {
            v[j * width + c] *= p.reciprocal.get(j);
            for (int i = j + 1; i < p.order; ++i)
                v[i * width + c] -= p.at(i, j) * v[j * width + c];
        }
}

void plainBackward(const Panel& p, double* v, int width)
{
    for (int c = 0; c < width; ++c)
        for (int j = p.pivots - 1; j >= 0; --j) {
            double sum = 0.0;
            for (int i = j + 1; i < p.order; ++i)
                sum += p.at(i, j) * v[i * width + c];
            v[j * width + c] = (v[j * width + c] - sum) * p.reciprocal.get(j);
        }
}

// What a solution makes of V: solved where the pivots are; of the other rows, forward, what is left of them.
using Solve = void (*)(const Panel&, double* v, int width);

using Loop = void (*)(const PanelPart&, int, const double*, const double*, double*, double*, int);

std::vector<PanelPart> whole(const Panel& p)
{
    return {{0, p.order, 0, p.pivots}};
}

// Some of the pivots, the others, and the rest of the rows.
std::vector<PanelPart> parts(const Panel& p)
{
    const int at[] = {0, (p.pivots + 1) / 2, p.pivots, p.order};
    std::vector<PanelPart> all;
    for (int k = 0; k < 2; ++k)
        for (int i = k; i < 3; ++i)
            if (at[i] < at[i + 1] && at[k] < at[k + 1])
                all.push_back({at[i], at[i + 1], at[k], at[k + 1]});
    return all;
}

template <Loop Loops, std::vector<PanelPart> (*Cut)(const Panel&) = whole>
void forward(const Panel& p, double* v, int width)
{
    const std::int64_t solved = std::int64_t{p.pivots} * width, all = std::int64_t{p.order} * width;
    const Guarded<double> w(all);
    for (std::int64_t i = 0; i < all; ++i)
        w[i] = 0.0;
    for (const PanelPart& part : Cut(p))
        Loops(part, p.order, p.l, p.reciprocal, v, w, width);
    for (std::int64_t i = solved; i < all; ++i)
        v[i] -= w[i];
}

template <Loop Loops>
void backward(const Panel& p, double* v, int width)
{
    Loops({0, p.order, 0, p.pivots}, p.order, p.l, p.reciprocal, v, nullptr, width);
}

template <Loop Loops>
void backwardInParts(const Panel& p, double* v, int width)
{
    const Guarded<double> s(std::int64_t{p.pivots} * width);
    for (std::int64_t i = 0; i < s.size(); ++i)
        s[i] = 0.0;
    const std::vector<PanelPart> all = parts(p);
    for (auto part = all.rbegin(); part != all.rend(); ++part)
        Loops(*part, p.order, p.l, p.reciprocal, v, s, width);
}

void expectLikePlain(Solve solve, Solve wide, Solve narrow, Solve plain)
{
    std::mt19937_64 random = generator(2);
    for (int pivots : {0, 1, 2, 3, 4, 5, 7, 8, 11, 16, 30})
        for (int rest : {0, 1, 2, 3, 4, 5, 8, 13, 33, 200})
            for (int width : {1, 4, 8, 12, 16}) {
                if (pivots + rest == 0)
                    continue;
                const Panel panel(pivots + rest, pivots, random);
                const Filled b(std::int64_t{panel.order} * width, 1.0, random);
                const Filled expected = b, actual = b;
                plain(panel, expected, width);
                solve(panel, actual, width);
                for (Solve another : {__builtin_cpu_supports("avx2") ? wide : narrow, narrow}) {
                    const Filled other = b;
                    another(panel, other, width);
                    ASSERT_TRUE(same_memory(actual, other, NaNs::Exact));
                }
                for (std::int64_t i = 0; i < b.size(); ++i)
                    ASSERT_NEAR(expected[i], actual[i], 1e-14)
                        << pivots << " pivots, " << rest << " rows more, width " << width << ", at " << i;
            }
}

TEST(FewColumns, GoForwardLikeThePlainLoop)
{
    expectLikePlain(forward<solveForward>, forward<solveForwardWide>, forward<solveForwardNarrow>,
                    plainForward);
}

TEST(FewColumns, GoBackwardLikeThePlainLoop)
{
    expectLikePlain(backward<solveBackward>, backward<solveBackwardWide>, backward<solveBackwardNarrow>,
                    plainBackward);
}

TEST(FewColumns, GoInPartsLikeThePlainLoop)
{
    expectLikePlain(forward<solveForward, parts>, forward<solveForwardWide, parts>,
                    forward<solveForwardNarrow, parts>, plainForward);
    expectLikePlain(backwardInParts<solveBackward>, backwardInParts<solveBackwardWide>,
                    backwardInParts<solveBackwardNarrow>, plainBackward);
}

// However many are solved at once.
TEST(FewColumns, DoNotDependOnEachOther)
{
    std::mt19937_64 random = generator(3);
    const Panel panel(43, 18, random);
    constexpr int width = 12;
    const Filled all(43 * width, 1.0, random), group(43 * columnGroup, 1.0, random);
    for (int c = 0; c < width; c += columnGroup) {
        const Filled together = all;
        for (int i = 0; i < panel.order; ++i)
            for (int k = 0; k < columnGroup; ++k)
                group[i * columnGroup + k] = all[i * width + c + k];
        for (Solve solve : {Solve{forward<solveForward>}, Solve{backward<solveBackward>}}) {
            solve(panel, together, width);
            solve(panel, group, columnGroup);
        }
        for (int i = 0; i < panel.order; ++i)
            for (int k = 0; k < columnGroup; ++k)
                ASSERT_EQ(bits(together[i * width + c + k]), bits(group[i * columnGroup + k]));
    }
}

// The mean error of long sums, in rounding units, is below what a single accumulator leaves.
TEST(FewColumns, SumLongColumnsWithCare)
{
    constexpr int order = 40001, draws = 20;
    std::mt19937_64 random = generator(4);
    std::uniform_real_distribution<double> uniform(1.0, 2.0);
    const Filled l(order, 1.0, random);
    const double reciprocal = 1.0;
    for (int width : {1, 4}) {
        double error = 0.0;
        for (int draw = 0; draw < draws; ++draw) {
            const Filled v(std::int64_t{order} * width, 1.0, random);
            long double sum = 0.0;
            for (int i = 1; i < order; ++i) {
                l.set(i, uniform(random));
                sum += l[i];
                for (int c = 0; c < width; ++c)
                    v.set(std::int64_t{i} * width + c, 1.0);
            }
            const double exact = static_cast<double>(v[0] - sum);
            solveBackward({0, order, 0, 1}, order, l, &reciprocal, v, nullptr, width);
            error += std::fabs(v[0] / exact - 1.0) * 0x1p53 / draws;
        }
        EXPECT_LT(error, width == 1 ? 4.0 : 14.0) << "width " << width;
    }
}

} // namespace
