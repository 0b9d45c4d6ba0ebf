// SPDX-License-Identifier: BSD-3-Clause
// Every test leaves the counters as it found them, so that the tests may run in one process or in several.
#include "TOVBlaModule.h"

#include <gtest/gtest.h>

namespace {

TEST(Lifecycle, InitialiseAddsThreeAndFinaliseTakesThemAway)
{
    int tally = 0;
    TOVBlaModule_initialize(tally);
    EXPECT_EQ(tally, 3);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 0);
}

TEST(Lifecycle, ACoreInUseIsNotCountedAgainAndOutlivesTheModule)
{
    int tally = 0;
    TOVBlaCore_initialize(tally);
    EXPECT_EQ(tally, 1);
    TOVBlaModule_initialize(tally);
    EXPECT_EQ(tally, 3);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 1);
    TOVBlaCore_finalize(tally);
    EXPECT_EQ(tally, 0);
}

TEST(Lifecycle, OnlyTheFirstInitialisationAndTheLastFinalisationMoveTheTally)
{
    int tally = 10;
    TOVBlaModule_initialize(tally);
    TOVBlaModule_initialize(tally);
    EXPECT_EQ(tally, 13);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 13);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 10);
}

TEST(Lifecycle, ASurplusFinalisationSwallowsTheNextInitialisation)
{
    int tally = 0;
    TOVBlaModule_finalize(tally); // count -1
    EXPECT_EQ(tally, 0);
    TOVBlaModule_initialize(tally); // count 0
    EXPECT_EQ(tally, 0);
    TOVBlaModule_initialize(tally); // count 1: the full work
    EXPECT_EQ(tally, 3);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 0);
}

TEST(Lifecycle, ASurplusFinalisationOfTheCoreSwallowsItsNextInitialisation)
{
    int tally = 0;
    TOVBlaCore_finalize(tally);
    EXPECT_EQ(tally, 0);
    TOVBlaModule_initialize(tally); // the core's count goes from -1 to 0: the module and the third only
    EXPECT_EQ(tally, 2);
    TOVBlaModule_finalize(tally); // the core's count goes back to -1
    EXPECT_EQ(tally, 0);
    TOVBlaCore_initialize(tally);
    EXPECT_EQ(tally, 0);
}

TEST(Lifecycle, TheTwoKindsOfEntryPointShareTheModuleCount)
{
    int tally = 0;
    TOVBlaModule_initializeC();
    TOVBlaModule_initialize(tally);
    EXPECT_EQ(tally, 0);
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 0);
    TOVBlaModule_finalizeC();

    TOVBlaModule_initialize(tally);
    EXPECT_EQ(tally, 3);
    TOVBlaModule_initializeC();
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 3) << "still in use by the caller without a tally";
    TOVBlaModule_finalizeC(); // the last one: its own tally pays
    EXPECT_EQ(tally, 3);
    TOVBlaModule_initializeC(); // balances that tally for the tests that follow
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 0);
}

TEST(Lifecycle, SeparateTalliesAreMovedByWhoeverComesFirstAndLeavesLast)
{
    int first = 0, second = 0;
    TOVBlaModule_initialize(first);
    TOVBlaModule_initialize(second);
    TOVBlaModule_finalize(first);
    TOVBlaModule_finalize(second);
    EXPECT_EQ(first, 3);
    EXPECT_EQ(second, -3);
}

TEST(Formalize, DoesNothing)
{
    int tally = 0;
    TOVBlaModule_initialize(tally);
    blaC_formalize();
    TOVBlaModule_finalize(tally);
    EXPECT_EQ(tally, 0);
}

} // namespace
