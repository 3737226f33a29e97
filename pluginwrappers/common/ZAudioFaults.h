// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>

namespace orvane
{

/// Takes what goes wrong on the audio thread to where the user can be told. One fault fits in;
/// those that come before it has been taken out are passed over, being mostly the same.
class ZAudioFaults
{
public:
    /// Keeps the exception that is being handled. Neither locks nor allocates. [audio thread]
    void Keep() noexcept;
    /// Has the fault that is kept reported by the interface thread, after what it is doing now.
    /// [interface thread]
    void Report();

private:
    enum class Slot : std::uint8_t
    {
        kEmpty,  // the audio thread's
        kFull,   // the interface thread's
    };

    std::atomic<Slot> mSlot{Slot::kEmpty};
    std::exception_ptr mFault;  // belongs to whom mSlot says
};

}  // namespace orvane
