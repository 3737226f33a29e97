// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

namespace orvane
{

/// Carries up to kCapacity items of a trivial type from one thread to another, in their order.
/// Neither side waits. The threads may change as long as one thread at a time is on each side.
template <typename Item, std::uint32_t kCapacity>
class ZSpscQueue
{
public:
    /// Appends an item; false when the queue is full. [sender]
    [[nodiscard]] bool Push(const Item& item) noexcept
    {
        const std::uint32_t end = mEnd.load(std::memory_order_relaxed);
        if (end - mBegin.load(std::memory_order_acquire) >= kCapacity)
            return false;
        mItems[end % kCapacity] = item;
        mEnd.store(end + 1, std::memory_order_release);
        return true;
    }
    /// Returns the oldest item and leaves it in; null when the queue is empty. [receiver]
    [[nodiscard]] const Item* Front() const noexcept
    {
        const std::uint32_t begin = mBegin.load(std::memory_order_relaxed);
        return begin == mEnd.load(std::memory_order_acquire) ? nullptr : &mItems[begin % kCapacity];
    }
    /// Takes the oldest item out; none when the queue is empty. [receiver]
    std::optional<Item> Pop() noexcept
    {
        const Item* const front = Front();
        if (front == nullptr)
            return std::nullopt;
        const Item item = *front;
        mBegin.store(mBegin.load(std::memory_order_relaxed) + 1, std::memory_order_release);
        return item;
    }

private:
    static_assert((kCapacity & (kCapacity - 1)) == 0, "positions run over the end of the number");

    std::array<Item, kCapacity> mItems{};
    std::atomic<std::uint32_t> mBegin{0};  // written by the receiver
    std::atomic<std::uint32_t> mEnd{0};    // written by the sender
};

}  // namespace orvane
