// SPDX-License-Identifier: BSD-3-Clause
// Which library's thread control the module uses: one program for each set of libraries in the process.
#include "TOVBlaModule.h"
#include "threads_stub.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

class Threads : public ::testing::Test
{
protected:
    Threads()
    {
        thread_calls = {};
        thread_calls.mkl.answer = 11;
        thread_calls.openblas.answer = 22;
        thread_calls.blis.answer = 33;
    }
    // The first of these that is there decides alone.
    ThreadControl* decides()
    {
        return HAS_MKL        ? &thread_calls.mkl
               : HAS_OPENBLAS ? &thread_calls.openblas
               : HAS_BLIS     ? &thread_calls.blis
                              : nullptr;
    }
    int calls_in_all()
    {
        int sum = 0;
        for (const ThreadControl* library : {&thread_calls.mkl, &thread_calls.openblas, &thread_calls.blis})
            sum += library->sets + library->gets;
        return sum;
    }
};

TEST_F(Threads, SettingPassesTheValueUnchangedZeroAndNegativeOnesToo)
{
    for (const int count : {4, 1, 0, -1, -7, INT_MAX, INT_MIN}) {
        thread_calls = {};
        blaC_set_num_threads(count);
        if (!decides()) {
            EXPECT_EQ(calls_in_all(), 0);
            continue;
        }
        EXPECT_EQ(decides()->sets, 1);
        EXPECT_EQ(decides()->count, count);
        EXPECT_EQ(calls_in_all(), 1);
    }
}

TEST_F(Threads, GettingReturnsWhatTheLibraryReports)
{
    if (!decides()) {
        EXPECT_EQ(blaC_get_num_threads(), 1);
        EXPECT_EQ(calls_in_all(), 0);
        return;
    }
    EXPECT_EQ(blaC_get_num_threads(), decides()->answer);
    EXPECT_EQ(decides()->gets, 1);
    EXPECT_EQ(calls_in_all(), 1);
}

TEST_F(Threads, BlisThatWasToldNoNumberUsesOneThread)
{
    if (decides() != &thread_calls.blis)
        return;
    for (const int answer : {-1, 0}) {
        thread_calls.blis.answer = answer;
        EXPECT_EQ(blaC_get_num_threads(), 1);
    }
}

TEST_F(Threads, GettingAfterSetting4ReturnsWhatTheLibraryReportsAndNot4)
{
    blaC_set_num_threads(4);
    EXPECT_EQ(blaC_get_num_threads(), decides() ? decides()->answer : 1);
}

TEST_F(Threads, LifecycleAndFormalizeNeverTouchTheThreadCount)
{
    TOVBlaModule_initializeC();
    int tally = 0;
    TOVBlaCore_initialize(tally);
    blaC_formalize();
    TOVBlaCore_finalize(tally);
    TOVBlaModule_finalizeC();
    EXPECT_EQ(calls_in_all(), 0);
}

} // namespace
