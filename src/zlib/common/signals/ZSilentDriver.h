// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZSemaphore.h"
#include "zlib/common/signals/ZSignalDriver.h"

#include <memory>

namespace orvane
{

class ZThread;

/// Stands in where no device exists: a thread of its own drains the looper and runs passes at a
/// steady pace, so that whatever waits for audio goes on.
class ZSilentDriver : public ZSignalDriver
{
public:
    /// From the start of one pass to the start of the next: 4096 samples at 44.1 kHz.
    static constexpr std::int32_t kPassMicroseconds = 92879;

    ZSilentDriver();
    ~ZSilentDriver() override;

    /// Gives the looper this driver's buffer size, too.
    void Open() override;
    void Start() override;
    /// Waits for the thread; gives up the interface lock meanwhile.
    void Stop() override;

private:
    static void RunThread(void* driver);
    void RunPasses();
    void RunPass();

    ZSemaphore mWaiter{"waiter", 0};  // released to end the pause between two passes
    std::unique_ptr<ZThread> mThread;
};

}  // namespace orvane
