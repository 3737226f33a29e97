// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <optional>

namespace orvane
{

class ZElement;

/// A control port and the element behind it. The port is an input of the host's, so the window
/// cannot set it: it changes the element, and the host is asked to set the port to the same value.
/// Until the host has done so, what the port held before must not come back as a change.
class ZLV2Parameter
{
public:
    explicit ZLV2Parameter(boost::shared_ptr<ZElement> element);

    /// Takes the port's value when it differs from the one before, when the time for answers to
    /// TakeNews ends, or always with force. Returns whether the element held another value. frames:
    /// length of the block. [audio thread]
    bool ReadPort(float value, bool force, std::uint32_t frames) noexcept;

    /// Marks the begin and the end of a gesture in the window, during which the port is not read.
    /// [interface thread]
    void SetHeld(bool isHeld) noexcept { mIsHeld.store(isHeld, std::memory_order_relaxed); }
    /// Returns the value that the host does not know yet, none when it knows it; from now on it
    /// counts as known, and the port is not read for graceFrames, in which the host's answers to
    /// earlier values may come. [host thread]
    [[nodiscard]] std::optional<float> TakeNews(std::uint32_t graceFrames) noexcept;

private:
    boost::shared_ptr<ZElement> mElement;
    float mPort;                              // the last value read; used by the audio thread only
    std::atomic<float> mKnown;                // the last value that the host set or was told
    std::atomic<bool> mIsHeld{false};         // written by the interface thread
    std::atomic<std::uint32_t> mGraceFrames;  // counted down by the audio thread
};

}  // namespace orvane
