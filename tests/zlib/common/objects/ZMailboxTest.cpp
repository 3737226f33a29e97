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

TEST(ZMailboxTest, GivesTheNewestOnce)
{
    ZMailbox<int> box;
    EXPECT_EQ(box.TakeNewest(), nullptr);
    for (int turn = 0; turn < 7; ++turn) {
        for (int letter = 0; letter <= turn; ++letter)
            box.Post(10 * turn + letter);
        const int* const taken = box.TakeNewest();
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(box.TakeNewest(), nullptr);
        EXPECT_EQ(*taken, 11 * turn);
    }
}

TEST(ZMailboxTest, LettersArriveWholeAndInOrderOnAThreadThatNeverWaits)
{
    using Letter = std::array<std::uint32_t, 40>;  // all words the same
    constexpr std::uint32_t kLetters = 100000;
    ZMailbox<Letter> box;
    std::thread writer([&] {
        Letter letter;
        for (std::uint32_t number = 1; number <= kLetters; ++number) {
            letter.fill(number);
            box.Post(letter);
        }
    });
    std::uint32_t last = 0;
    std::int64_t faults = 0;
    {
        const RealtimeGuard guard;
        while (last < kLetters) {
            const Letter* const letter = box.TakeNewest();
            if (!letter)
                continue;
            faults += std::count(letter->begin(), letter->end(), letter->front()) != 40;
            faults += letter->front() <= last;
            last = letter->front();
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    writer.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace orvane
