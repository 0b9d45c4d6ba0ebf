// SPDX-License-Identifier: BSD-3-Clause
// A caller's own error handler, which the library beneath calls, throws through our routines, and sees its
// callers behind them.
#include "TOVBlaModule.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <dlfcn.h>
#include <execinfo.h>
#include <string>
#include <vector>

namespace {

struct BadArgument
{
    int number;
    bool main_is_seen;
};

bool main_is_among_the_callers()
{
    void* frames[100];
    const int count = backtrace(frames, 100);
    for (int i = 0; i < count; ++i) {
        Dl_info info;
        if (dladdr(frames[i], &info) && info.dli_sname && std::string(info.dli_sname) == "main")
            return true;
    }
    return false;
}

} // namespace

extern "C" void xerbla_(const char*, const int* info, std::size_t)
{
    throw BadArgument{*info, main_is_among_the_callers()};
}

namespace {

const double One = 1.0;
double a[64], d[8], dinv[8];

/// The argument that a call is refused for.
template <class Refused>
void expect_refusal(int argument, Refused call)
{
    try {
        call();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const BadArgument& caught) {
        EXPECT_EQ(caught.number, argument);
        EXPECT_TRUE(caught.main_is_seen) << "the list of callers ends on the way";
    }
}

TEST(AnErrorHandlersException, PassesThroughTheFacade)
{
    const int minus = -1, two = 2;
    expect_refusal(3,
                   [&] { blac_dgemm_("N", "N", &minus, &two, &two, &One, a, &two, a, &two, &One, a, &two); });
    expect_refusal(5, [&] { blac_dtrsm_("L", "L", "N", "N", &minus, &two, &One, a, &two, a, &two); });
    int info = 0;
    expect_refusal(2, [&] { blac_dpotrf_("L", &minus, a, &two, &info); });
}

TEST(AnErrorHandlersException, PassesThroughTheKernels)
{
    const int minus = -1, zero = 0, one = 1, two = 2, four = 4;
    expect_refusal(3, [&] {
        blac_dgemm_scaled_("N", "T", &minus, &two, &two, &One, a, &two, a, &two, &One, a, &two, d, &zero);
    });
    expect_refusal(
        8, [&] { blac_dsyrk_scaled_(&two, &four, &two, &One, a, &one, a, &four, &One, a, &four, d); });
    expect_refusal(8, [&] { blac_dhamm_(&two, &four, &two, &One, a, &one, a, &four, &One, a, &four); });
    const double tol = 0.0;
    expect_refusal(9, [&] { blac_selim_(&four, &two, &tol, a, &one, d, dinv); });
    expect_refusal(9, [&] { blac_uelim_(&four, &two, &tol, a, &one, d, dinv); });
}

} // namespace
