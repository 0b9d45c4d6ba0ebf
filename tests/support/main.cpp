// SPDX-License-Identifier: BSD-3-Clause
#include "random.h"

#include <gtest/gtest.h>

#include <cstdio>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    std::printf("BLA_TEST_SEED=%llu\n", static_cast<unsigned long long>(support::seed()));
    return RUN_ALL_TESTS();
}
