// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZSemaphore.h"
#include "zlib/common/signals/ZSignalDriver.h"

#include <memory>

namespace orvane
{

class ZThread;

/// A driver without a device: its thread drains the looper and runs passes at a constant rate, so
/// that code that waits for audio continues.
class ZSilentDriver : public ZSignalDriver
{
public:
    /// From the start of one pass to the start of the next: 4096 samples at 44.1 kHz.
    static constexpr std::int32_t kPassMicroseconds = 92879;

    ZSilentDriver();
    ~ZSilentDriver() override;

    /// Also sets the looper's buffer sizes to this driver's.
    void Open() override;
    void Start() override;
    /// Joins the thread; gives up the interface lock meanwhile. [setup]
    void Stop() override;

private:
    static void RunThread(void* driver);
    void RunPasses();
    void RunPass();

    ZSemaphore mWaiter{"waiter", 0};  // released to end the wait between two passes
    std::unique_ptr<ZThread> mThread;
};

}  // namespace orvane
