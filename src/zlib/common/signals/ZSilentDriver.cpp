// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSilentDriver.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZThread.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <algorithm>
#include <chrono>

namespace orvane
{

ZSilentDriver::ZSilentDriver()
    : ZSignalDriver("ZSilentDriver")
{
}

ZSilentDriver::~ZSilentDriver()
{
    ZSilentDriver::Stop();
}

void ZSilentDriver::Open()
{
    if (ZSignalLooper* const looper = GetLooper())
        looper->SetBufferSizes(GetBufferSize(), GetBufferSize());
    ZSignalDriver::Open();
}

void ZSilentDriver::Start()
{
    if (mThread)
        return;
    auto thread = std::make_unique<ZThread>("silent", &ZSilentDriver::RunThread, this);
    thread->SetPriority(ZThread::kTimeCritical);
    ZSignalDriver::Start();
    mThread = std::move(thread);
    mThread->Resume();
}

void ZSilentDriver::Stop()
{
    ZSignalDriver::Stop();
    if (!mThread)
        return;
    mWaiter.Release();
    {
        const ZInterfaceUnlock unlocked;
        const auto joined = std::move(mThread);
    }
    static_cast<void>(mWaiter.Wait(0));  // the thread may have ended without taking it
}

void ZSilentDriver::RunThread(void* driver)
{
    static_cast<ZSilentDriver*>(driver)->RunPasses();
}

void ZSilentDriver::RunPasses()
{
    using Clock = std::chrono::steady_clock;
    while (IsRunning()) {
        const auto start = Clock::now();
        RunPass();
        const auto spent =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        const auto rest = std::max<std::int64_t>(kPassMicroseconds - spent.count(), 0);
        if (mWaiter.Wait(static_cast<std::int32_t>(rest)) == 0)
            return;
    }
}

// Reports the failure of a pass; the next pass runs.
void ZSilentDriver::RunPass()
{
    ZSignalLooper* const looper = GetLooper();
    if (looper == nullptr)
        return;
    try {
        looper->Drain();
        looper->Fill(GetBufferSize());
    } catch (...) {
        reportCurrentException();
    }
}

}  // namespace orvane
