// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace orvane
{

/// Passes the newest value from one writer thread to one reader thread; neither locks or waits. A
/// value that the reader has not taken is lost when the next one is posted. There are three slots:
/// one belongs to the writer, one to the reader, and each side swaps its own with the third by one
/// atomic exchange, so that the reader never sees half a value.
template <class T>
class ZMailbox
{
    static_assert(std::is_trivially_copyable_v<T>, "the audio thread copies it");

public:
    ZMailbox() = default;
    ZMailbox(const ZMailbox&) = delete;
    ZMailbox& operator=(const ZMailbox&) = delete;

    /// Makes a copy the newest value. [writer's thread]
    void Post(const T& value) noexcept
    {
        mSlots[mWriterSlot].value = value;
        const std::uint32_t posted = mWriterSlot | kFresh;
        mWriterSlot = mBetween.exchange(posted, std::memory_order_acq_rel) & kSlotMask;
        assert(mWriterSlot < mSlots.size());
    }

    /// The newest value; null when none has been posted since the last call. It stays unchanged
    /// until the next call. [reader's thread, which may be the audio thread]
    [[nodiscard]] const T* TakeNewest() noexcept
    {
        if ((mBetween.load(std::memory_order_relaxed) & kFresh) == 0)
            return nullptr;
        mReaderSlot = mBetween.exchange(mReaderSlot, std::memory_order_acq_rel) & kSlotMask;
        assert(mReaderSlot < mSlots.size());
        return &mSlots[mReaderSlot].value;
    }

private:
    static constexpr std::size_t kCacheLine = 64;
    static constexpr std::uint32_t kSlotMask = 3;
    static constexpr std::uint32_t kFresh = 4;  // set while the reader has not taken the slot

    struct alignas(kCacheLine) Slot
    {
        T value{};
    };

    std::array<Slot, 3> mSlots;
    std::uint32_t mWriterSlot = 0;  // used by the writer only
    alignas(kCacheLine) std::atomic<std::uint32_t> mBetween{1};
    alignas(kCacheLine) std::uint32_t mReaderSlot = 2;  // used by the reader only
};

}  // namespace orvane
