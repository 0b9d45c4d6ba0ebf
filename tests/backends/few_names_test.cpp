// SPDX-License-Identifier: BSD-3-Clause
// The module over a BLAS and a LAPACK that lack almost every routine: whoever does not call one is served,
// and whoever does is told its name.
#include "TOVBlaModule.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

const int n = 3, step = 1;
const double x[3] = {1, 2, 3};

TEST(FewNames, AreAllThatThereIs)
{
    EXPECT_NE(dlsym(RTLD_DEFAULT, "ddot_"), nullptr);
    for (const char* name : {"daxpy_", "daxpby_", "dgemm_", "dpotrf_", "zladiv_"})
        EXPECT_EQ(dlsym(RTLD_DEFAULT, name), nullptr) << name;
}

TEST(FewNames, TheRoutineThatIsThereCanBeCalled)
{
    EXPECT_EQ(blac_ddot_(&n, x, &step, x, &step), 14);
}

TEST(FewNames, KernelsNeedNone)
{
    double a[9] = {4, 1, 2, 0, 5, 1, 0, 0, 6}, d[3], dinv[3];
    const double tolerance = 1e-14;
    blac_selim_small_(&n, a, &n, d, dinv, &tolerance);
    EXPECT_EQ(d[0], 4);
    EXPECT_EQ(dinv[0], 0.25);
}

TEST(FewNames, DaxpbyNeedsNone)
{
    const double a = 2, b = -1;
    double y[3] = {1, 1, 1};
    blac_daxpby_(&n, &a, x, &step, &b, y, &step);
    EXPECT_EQ(y[2], 5);
}

TEST(FewNames, TheThreadCountIsOne)
{
    blaC_set_num_threads(2);
    EXPECT_EQ(blaC_get_num_threads(), 1);
}

TEST(FewNamesDeathTest, CallingOneThatIsMissingEndsTheProcessWithItsName)
{
    double y[3] = {};
    const double a = 1;
    int info;
    EXPECT_EXIT(blac_daxpy_(&n, &a, x, &step, y, &step), testing::ExitedWithCode(127),
                "libZEFTOVBlaModule.*undefined symbol: daxpy_");
    EXPECT_EXIT(blac_dpotrf_("L", &n, y, &n, &info), testing::ExitedWithCode(127),
                "undefined symbol: dpotrf_");
}

} // namespace
