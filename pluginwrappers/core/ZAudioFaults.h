// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>

namespace orvane
{

/// Carries exceptions from the audio thread to the interface thread, which reports them to the
/// user. Holds one exception; further ones are dropped until it has been taken, since a fault in
/// the audio usually repeats at each block.
class ZAudioFaults
{
public:
    /// Stores the exception that is being handled, unless one is stored already. Neither locks nor
    /// allocates. [audio thread]
    void Keep() noexcept;
    /// Takes the stored exception out and posts its report to the interface thread.
    /// [interface thread]
    void Report();

private:
    enum class Slot : std::uint8_t
    {
        kEmpty,  // mFault belongs to the audio thread
        kFull,   // mFault belongs to the interface thread
    };

    std::atomic<Slot> mSlot{Slot::kEmpty};
    std::exception_ptr mFault;  // owned as mSlot says
};

}  // namespace orvane
