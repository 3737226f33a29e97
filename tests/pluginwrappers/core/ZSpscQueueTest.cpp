// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZSpscQueue.h"

#include "support/Test.h"

using namespace orvane;

TEST(ZSpscQueueTest, KeepsTheOldestItemsWhenItIsFullAndTakesNewOnesAfterwards)
{
    constexpr int kCapacity = 8;
    ZSpscQueue<int, kCapacity> queue;
    for (int i = 0; i < kCapacity; ++i)
        ASSERT_TRUE(queue.Push(i));
    EXPECT_FALSE(queue.Push(100));
    EXPECT_EQ(*queue.Front(), 0);
    EXPECT_EQ(queue.Pop(), 0);
    EXPECT_TRUE(queue.Push(200));
    int last = 0;
    while (const auto item = queue.Pop())
        last = *item;
    EXPECT_EQ(last, 200);
    EXPECT_EQ(queue.Front(), nullptr);
}
