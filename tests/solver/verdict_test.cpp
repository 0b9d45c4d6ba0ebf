// SPDX-License-Identifier: BSD-3-Clause
#include "verdict.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

Evidence evidence(double residual, double error)
{
    Evidence e;
    e.n = e.structuralRank = 10;
    e.residual = residual;
    e.error = error;
    return e;
}

} // namespace

TEST(Verdict, FollowsFromTheBound)
{
    EXPECT_EQ(verdict(evidence(1e-16, 0.0)), "solved");
    EXPECT_EQ(verdict(evidence(1e-16, 9e-7)), "solved");
    EXPECT_EQ(verdict(evidence(1e-16, 1.1e-4)), "solved; ill-conditioned: about 4 digits can be expected");
    EXPECT_EQ(verdict(evidence(1e-16, 0.09)), "solved; ill-conditioned: about 1 digits can be expected");
    for (double error : {0.11, 1.0, HUGE_VAL, std::nan("")})
        EXPECT_EQ(verdict(evidence(1e-16, error)),
                  "NOT TO BE TRUSTED: so ill-conditioned that no digit is certain");
    for (double residual : {1e-11, HUGE_VAL, std::nan("")})
        EXPECT_EQ(judge(evidence(residual, 1e-10)), Quality::unsolved);
}

TEST(Verdict, NamesWhatIsUnheld)
{
    Evidence e = evidence(1e-16, HUGE_VAL);
    e.treated = 7;
    EXPECT_NE(verdict(e).find("7 tiny pivots"), std::string::npos);
    e.motions = 6;
    e.unknowns = {11, 12, 46, 47, 48, 49};
    EXPECT_EQ(verdict(e),
              "NOT TO BE TRUSTED: the matrix is singular to working precision (6 unheld motions, unknowns "
              "12, 13, 47, 48, 49, 50): this is one of many answers; a structure is not supported");
    e.motions = 7;
    e.unknowns = {0, 11, 12, 46, 47, 48, 49};
    EXPECT_NE(verdict(e).find("(7 unheld motions, e.g. unknowns 1, 12, 13, 47, 48, 49)"), std::string::npos);
    e.unreachable = 1e-3;
    EXPECT_EQ(judge(e), Quality::unsolved);
    EXPECT_NE(verdict(e).find("NOT SOLVED"), std::string::npos);
    EXPECT_NE(verdict(e).find("out of its reach"), std::string::npos);
    e.structuralRank = 9;
    EXPECT_NE(verdict(e).find("structurally singular (rank at most 9 of 10)"), std::string::npos);
}
