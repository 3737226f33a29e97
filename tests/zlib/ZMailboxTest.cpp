#include "zlib/common/ZMailbox.h"

#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <thread>

namespace orvane
{

namespace
{

/// A value that shows when it was put together of two.
struct Letter
{
    std::array<std::uint32_t, 40> words{};

    static Letter Of(std::uint32_t number)
    {
        Letter letter;
        letter.words.fill(number);
        return letter;
    }
    [[nodiscard]] bool IsWhole() const
    {
        return std::all_of(words.begin(), words.end(),
                           [this](std::uint32_t word) { return word == words[0]; });
    }
};

}  // namespace

TEST(ZMailboxTest, GivesTheNewestOnce)
{
    ZMailbox<int> box;
    EXPECT_EQ(box.TakeNewest(), nullptr);
    for (int turn = 0; turn < 7; ++turn) {
        for (int letter = 0; letter <= turn; ++letter)
            box.Post(10 * turn + letter);
        const int* const taken = box.TakeNewest();
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(*taken, 11 * turn);
        EXPECT_EQ(box.TakeNewest(), nullptr);
        EXPECT_EQ(*taken, 11 * turn);
    }
}

TEST(ZMailboxTest, LettersArriveWholeAndInOrderOnAThreadThatNeverWaits)
{
    constexpr std::uint32_t kLetters = 100000;
    ZMailbox<Letter> box;
    std::thread writer([&] {
        for (std::uint32_t number = 1; number <= kLetters; ++number)
            box.Post(Letter::Of(number));
    });
    std::uint32_t last = 0;
    std::uint32_t faults = 0;
    {
        const RealtimeGuard guard;
        while (last < kLetters) {
            const Letter* const letter = box.TakeNewest();
            if (!letter)
                continue;
            faults += !letter->IsWhole() || letter->words[0] <= last;
            last = letter->words[0];
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    writer.join();
    EXPECT_EQ(faults, 0u);
}

}  // namespace orvane
