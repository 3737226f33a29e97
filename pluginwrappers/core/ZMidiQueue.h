// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/core/ZMidiMessage.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

namespace orvane
{

/// Carries MIDI channel messages from the audio thread to the tick. Neither side waits.
class ZMidiQueue
{
public:
    /// Messages that one tick's time can hold; those beyond are dropped.
    static constexpr std::uint32_t kCapacity = 1024;

    /// Appends a message; false when the queue is full. [audio thread]
    [[nodiscard]] bool Push(const MidiBytes& midi) noexcept
    {
        const std::uint32_t end = mEnd.load(std::memory_order_relaxed);
        if (end - mBegin.load(std::memory_order_acquire) >= kCapacity)
            return false;
        mMessages[end % kCapacity] = midi;
        mEnd.store(end + 1, std::memory_order_release);
        return true;
    }
    /// Takes the oldest message out; none when the queue is empty. [one thread at a time]
    [[nodiscard]] std::optional<MidiBytes> Pop() noexcept
    {
        const std::uint32_t begin = mBegin.load(std::memory_order_relaxed);
        if (begin == mEnd.load(std::memory_order_acquire))
            return std::nullopt;
        const MidiBytes midi = mMessages[begin % kCapacity];
        mBegin.store(begin + 1, std::memory_order_release);
        return midi;
    }

private:
    std::array<MidiBytes, kCapacity> mMessages{};
    std::atomic<std::uint32_t> mBegin{0};  // written by the tick
    std::atomic<std::uint32_t> mEnd{0};    // written by the audio thread
};

}  // namespace orvane
