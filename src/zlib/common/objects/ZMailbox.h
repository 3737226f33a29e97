// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace orvane
{

/// Hands the newest value from one writer to one reader, without a lock or a wait on either side.
/// What the reader has not taken when the next value comes is lost. Of three slots the writer owns
/// one, the reader another, and the third lies between them: each side trades its own for that one
/// in a single exchange, so that a value is never read half.
template <class T>
class ZMailbox
{
    static_assert(std::is_trivially_copyable_v<T>, "the audio thread may take a copy");

public:
    ZMailbox() = default;
    ZMailbox(const ZMailbox&) = delete;
    ZMailbox& operator=(const ZMailbox&) = delete;

    /// [writer]
    void Post(const T& value) noexcept
    {
        mSlots[mWriterSlot].value = value;
        const std::uint32_t letter = mWriterSlot | kFresh;
        mWriterSlot = mBetween.exchange(letter, std::memory_order_acq_rel) & kSlotMask;
    }

    /// The newest value, which stays as it is until the next call; null when there is none since
    /// the last one. [reader, audio thread included]
    [[nodiscard]] const T* TakeNewest() noexcept
    {
        if ((mBetween.load(std::memory_order_relaxed) & kFresh) == 0)
            return nullptr;
        mReaderSlot = mBetween.exchange(mReaderSlot, std::memory_order_acq_rel) & kSlotMask;
        return &mSlots[mReaderSlot].value;
    }

private:
    static constexpr std::size_t kCacheLine = 64;
    static constexpr std::uint32_t kSlotMask = 3;
    static constexpr std::uint32_t kFresh = 4;  // not taken yet

    struct alignas(kCacheLine) Slot
    {
        T value{};
    };

    std::array<Slot, 3> mSlots;
    std::uint32_t mWriterSlot = 0;  // writer's own
    alignas(kCacheLine) std::atomic<std::uint32_t> mBetween{1};
    alignas(kCacheLine) std::uint32_t mReaderSlot = 2;  // reader's own
};

}  // namespace orvane
