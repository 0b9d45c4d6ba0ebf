// SPDX-License-Identifier: BSD-3-Clause
// The solver over one BLAS/LAPACK library, whichever the process was started with: the same bits for any
// number of threads, and the library's own number of threads as it was.
#include "learned.h"

#include <TOVBlaModule.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

// Cut as for callers: the fronts above are of several tiles, in pivots and in what stays.
constexpr int points = 11;

void expectTheBitsOfOneThread(bool symmetric)
{
    for (const Treatment& treatment : treatments) {
        SCOPED_TRACE(treatment.name);
        const Cube a(points, symmetric, 3.0);
        blaC_set_num_threads(2);
        const int before = blaC_get_num_threads();
        const std::vector<double> expected = learned(a, symmetric, 1, treatment);
        EXPECT_EQ(blaC_get_num_threads(), before);
        const double treated = expected[2] + expected[3]; // pivots
        EXPECT_EQ(treated > 0.0, treatment.tolerance > 1e-14) << treated;
        for (int threads : {2, 3, 8}) {
            EXPECT_TRUE(sameBits(expected, learned(a, symmetric, threads, treatment)))
                << threads << " threads";
            EXPECT_EQ(blaC_get_num_threads(), before);
        }
    }
}

TEST(Bits, OfASymmetricMatrixAreThoseOfOneThread)
{
    expectTheBitsOfOneThread(true);
}

TEST(Threads, AreUsedWhereTheBlasTakesSeveralCallers)
{
    const char* const blas = std::getenv("EXPECT_BLAS");
    ASSERT_NE(blas, nullptr);
    const Cube a(3, true, 3.0);
    bla_solver* made = nullptr;
    ASSERT_EQ(bla_solver_create(&made), BLA_SOLVER_OK);
    const Handle owner(made);
    ASSERT_EQ(bla_solver_set(made, "threads", 2.0), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_analyse(made, BLA_SOLVER_SYMMETRIC_LOWER, a.n, a.start.data(), a.column.data()),
              BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(made, a.value.data()), BLA_SOLVER_OK);
    double used = 0.0;
    ASSERT_EQ(bla_solver_get(made, "threads_used", &used), BLA_SOLVER_OK);
    EXPECT_EQ(used,
              std::strstr(blas, "openblas-serial") ? 1.0 : std::min(std::thread::hardware_concurrency(), 2u));
    ASSERT_EQ(bla_solver_set(made, "threads", 4096.0), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_factorise(made, a.value.data()), BLA_SOLVER_OK);
    ASSERT_EQ(bla_solver_get(made, "threads_used", &used), BLA_SOLVER_OK);
    EXPECT_LE(used, std::thread::hardware_concurrency());
}

TEST(Bits, OfAGeneralMatrixAreThoseOfOneThread)
{
    expectTheBitsOfOneThread(false);
}

} // namespace
