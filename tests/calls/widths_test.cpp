// SPDX-License-Identifier: BSD-3-Clause
// How matrices are cut into blocks, for every width that an int can hold. This source is compiled to stop
// where an addition of two ints overflows.
#include "lower_trapezoid.h"
#include "panels.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

struct Block
{
    std::int64_t first;
    int rows, width;
    bool operator==(const Block&) const = default;
};

std::vector<Block> blocks(int n, int nb)
{
    std::vector<Block> found;
    for_lower_trapezoid(&n, &nb, [&](std::int64_t j, const int* rows, const int* width) {
        found.push_back({j, *rows, *width});
    });
    return found;
}

TEST(Widths, OfALowerTrapezoidMayBeAnyNumberButZero)
{
    for (int n : {1, 2, 7, 1000, INT_MAX - 1, INT_MAX})
        for (int nb : {INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1, -1}) {
            if (n == INT_MAX && nb == INT_MAX - 1)
                EXPECT_EQ(blocks(n, nb), (std::vector<Block>{{0, n, nb}, {nb, 1, 1}}));
            else
                EXPECT_EQ(blocks(n, nb), (std::vector<Block>{{0, n, n}})) << "n " << n << ", nb " << nb;
        }
    EXPECT_EQ(
        blocks(INT_MAX, 1 << 30),
        (std::vector<Block>{{0, INT_MAX, 1 << 30}, {1 << 30, INT_MAX - (1 << 30), INT_MAX - (1 << 30)}}));
    EXPECT_EQ(blocks(7, 3), (std::vector<Block>{{0, 7, 3}, {3, 4, 3}, {6, 1, 1}}));
    EXPECT_EQ(blocks(0, INT_MAX), (std::vector<Block>{{0, 0, 0}}));
    EXPECT_EQ(blocks(-5, INT_MAX), (std::vector<Block>{{0, -5, -5}}));
}

TEST(Widths, OfPanelsMayBeAnyNumberButZero)
{
    for (int n : {1, 2, 7, 1000, INT_MAX}) {
        const Panels panels(n, INT_MAX);
        EXPECT_EQ(panels.full, 0);
        EXPECT_EQ(panels.last, n);
    }
    const Panels two(INT_MAX, INT_MAX - 1);
    EXPECT_EQ(two.full, 1);
    EXPECT_EQ(two.last, 1);
}

} // namespace
