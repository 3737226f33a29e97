// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZAudioFaults.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceThread.h"

#include <cassert>
#include <utility>

namespace orvane
{

void ZAudioFaults::Keep() noexcept
{
    if (mSlot.load(std::memory_order_acquire) == Slot::kFull)
        return;
    mFault = std::current_exception();
    assert(mFault);
    mSlot.store(Slot::kFull, std::memory_order_release);
}

void ZAudioFaults::Report()
{
    if (mSlot.load(std::memory_order_acquire) == Slot::kEmpty)
        return;
    // The report is posted because it may wait for the user, in which time this object may go.
    ZInterfaceThread::Post([fault = std::exchange(mFault, nullptr)] {
        try {
            std::rethrow_exception(fault);
        } catch (...) {
            reportCurrentException();
        }
    });
    mSlot.store(Slot::kEmpty, std::memory_order_release);
}

}  // namespace orvane
