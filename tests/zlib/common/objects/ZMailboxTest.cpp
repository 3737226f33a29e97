// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZMailbox.h"

#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <thread>

namespace orvane
{

TEST(ZMailboxTest, GivesTheNewestValueOnce)
{
    ZMailbox<int> box;
    EXPECT_EQ(box.TakeNewest(), nullptr);
    for (int turn = 0; turn < 7; ++turn) {
        for (int value = 0; value <= turn; ++value)
            box.Post(10 * turn + value);
        const int* const taken = box.TakeNewest();
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(box.TakeNewest(), nullptr);
        EXPECT_EQ(*taken, 11 * turn);
    }
}

TEST(ZMailboxTest, ValuesArriveWholeAndInOrderWithoutALock)
{
    using Values = std::array<std::uint32_t, 40>;  // all of them equal
    constexpr std::uint32_t kTurns = 100000;
    ZMailbox<Values> box;
    std::thread writer([&] {
        Values values;
        for (std::uint32_t number = 1; number <= kTurns; ++number) {
            values.fill(number);
            box.Post(values);
        }
    });
    std::uint32_t last = 0;
    std::int64_t faults = 0;
    {
        const RealtimeGuard guard;
        while (last < kTurns) {
            const Values* const values = box.TakeNewest();
            if (!values)
                continue;
            faults += std::count(values->begin(), values->end(), values->front()) != 40;
            faults += values->front() <= last;
            last = values->front();
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    writer.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace orvane
