// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalLooper.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZThread.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZSignalDriver.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <bit>
#include <cassert>

namespace orvane
{

namespace
{

// How long the fill thread waits for a signal before it checks whether its driver still runs.
constexpr std::int32_t kFillWaitMicroseconds = 20000;

boost::shared_ptr<const ZMessage> maxBufferMessage(std::uint32_t samples)
{
    const auto message = boost::make_shared<ZMessage>(ZMAXBUFFERCHANGED);
    message->Add<std::int32_t>("maxbuf", static_cast<std::int32_t>(samples));
    return message;
}

}  // namespace

/// A thread's turn to drain or fill. A second thread does not get it and does not wait for it.
class ZSignalLooper::Pass
{
public:
    explicit Pass(std::atomic<bool>& inPass) noexcept
        : mInPass(inPass)
        , mTaken(!inPass.exchange(true, std::memory_order_acquire))
    {
    }
    ~Pass()
    {
        if (mTaken)
            mInPass.store(false, std::memory_order_release);
    }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

    [[nodiscard]] bool IsTaken() const noexcept { return mTaken; }

private:
    std::atomic<bool>& mInPass;
    const bool mTaken;
};

ZSignalLooper::ZSignalLooper(ZApplication* app)
    : ZLooper("SignalLooper", app)
    , mInputBay(boost::make_shared<ZInputBay>("input", kChannels))
    , mOutputBay(boost::make_shared<ZOutputBay>("output", kChannels))
{
    mInputBay->SetLooper(this);
    mOutputBay->SetLooper(this);
}

ZSignalLooper::~ZSignalLooper()
{
    Stop();
    if (mDriver)
        mDriver->SetLooper(nullptr);
}

bool ZSignalLooper::IsKindOf(std::string_view className) const
{
    return className == "ZSignalLooperClass" || ZLooper::IsKindOf(className);
}

const char* ZSignalLooper::GetClassName() const
{
    return "ZSignalLooperClass";
}

void ZSignalLooper::InitLooper()
{
    const bool wasRunning = mDriver && mDriver->IsRunning();
    if (wasRunning)
        Stop();
    if (mDriver) {
        mDriver->SetBufferSize(mPreferredBuffer);
        mDriver->SetSampleRate(mSampleRate);
        mDriver->Open();
    }
    assert(!mOutputBay->IsPassRunning());
    const auto fifoSize = static_cast<std::int32_t>(mPreferredBuffer);
    mInputBay->SetFifoSize(fifoSize);
    mOutputBay->SetFifoSize(fifoSize);
    BroadcastZMessage(maxBufferMessage(mPreferredBuffer));
    BroadcastZMessage(makeSampleRateMessage(mSampleRate));
    Drain();
    if (wasRunning)
        Start();
}

void ZSignalLooper::Run()
{
}

void ZSignalLooper::HandlerAdded(ZHandler* handler)
{
    auto* const bay = dynamic_cast<ZSignalBay*>(handler);
    if (bay == nullptr)
        return;
    bay->Prepare();
    bay->PostZMessage(maxBufferMessage(mPreferredBuffer));
    BroadcastZMessage(makeSampleRateMessage(mSampleRate));
}

void ZSignalLooper::SetDriver(const boost::shared_ptr<ZSignalDriver>& driver)
{
    assert(ZInterfaceLock::IsHeld());
    mDriver = driver;
    if (mDriver)
        mDriver->SetLooper(this);
}

void ZSignalLooper::SetBufferSizes(std::uint32_t preferred, std::uint32_t maximum)
{
    assert(preferred > 0 && preferred <= maximum);
    mPreferredBuffer = preferred;
    mMaxBuffer = maximum;
}

void ZSignalLooper::SetBufferSize(std::uint32_t size)
{
    const std::uint32_t power = std::bit_ceil(size);
    SetBufferSizes(power, power);
}

void ZSignalLooper::SetSampleRate(float rate)
{
    assert(rate > 0.0f);
    mSampleRate = rate;
}

void ZSignalLooper::AddExtraSink(ZSignalBay* sink)
{
    assert(ZInterfaceLock::IsHeld());
    assert(sink && !mOutputBay->IsPassRunning());
    mExtraSinks.push_back(sink);
}

void ZSignalLooper::RemoveExtraSink(ZSignalBay* sink)
{
    assert(ZInterfaceLock::IsHeld());
    assert(!mOutputBay->IsPassRunning());
    std::erase(mExtraSinks, sink);
}

std::uint32_t ZSignalLooper::InputFree(std::int32_t channel) const noexcept
{
    return mInputBay->Free(channel);
}

void ZSignalLooper::InputWrite(std::span<const float> samples, std::int32_t channel)
{
    mInputBay->Write(samples, channel);
}

std::uint32_t ZSignalLooper::OutputAvailable(std::int32_t channel) const noexcept
{
    return mOutputBay->Available(channel);
}

void ZSignalLooper::OutputRead(std::span<float> samples, std::int32_t channel)
{
    mOutputBay->Read(samples, channel);
}

void ZSignalLooper::Drain()
{
    if (!HasMessages())
        return;
    const Pass pass(mInPass);
    if (!pass.IsTaken())
        return;
    while (const std::size_t waiting = CountMessages()) {
        mHighWater = std::max<std::size_t>(mHighWater, waiting);
        ProcessNextMessage();
    }
}

std::uint32_t ZSignalLooper::Fill(std::uint32_t count) noexcept
{
    assert(!ZInterfaceLock::IsHeld());
    const Pass pass(mInPass);
    if (!pass.IsTaken())
        return 0;
    const std::uint32_t total = mExtraSinks.empty() ? PassUntil(count) : 0;
    for (ZSignalBay* const sink : mExtraSinks)
        sink->RunPass(count);
    return total;
}

std::uint32_t ZSignalLooper::PassUntil(std::uint32_t count) noexcept
{
    std::uint32_t total = 0;
    while (total < count) {
        mOutputBay->RunPass(count);
        const std::uint32_t written = mOutputBay->GetWritten();
        if (written == 0)
            break;
        total += written;
    }
    return total;
}

void ZSignalLooper::Start()
{
    if (!mDriver || mDriver->IsRunning() || mRunning)
        return;
    auto thread = std::make_unique<ZThread>("fillthread", &ZSignalLooper::RunFillThread, this);
    thread->SetPriority(ZThread::kAboveNormal);
    Drain();
    mDriver->Start();
    mRunning = true;
    mFillThread = std::move(thread);
    mFillThread->Resume();
}

void ZSignalLooper::Stop()
{
    if (!mRunning)
        return;
    mDriver->Stop();
    SignalFill();
    {
        const ZInterfaceUnlock unlocked;
        const auto joined = std::move(mFillThread);
    }
    BroadcastZMessage(boost::make_shared<ZMessage>(ZRESET));
    Drain();
    mRunning = false;
}

void ZSignalLooper::SignalFill()
{
    mFillSemaphore.Release();
}

void ZSignalLooper::RunFillThread(void* looper)
{
    static_cast<ZSignalLooper*>(looper)->FillWhileRunning();
}

// Does nothing without a signal: a driver that runs the passes itself drains the queue as well.
void ZSignalLooper::FillWhileRunning()
{
    while (mDriver->IsRunning()) {
        if (mFillSemaphore.Wait(kFillWaitMicroseconds) != 0)
            continue;
        try {
            FillOutput();
        } catch (...) {
            reportCurrentException();
        }
    }
}

void ZSignalLooper::FillOutput()
{
    std::uint32_t passes = mOutputBay->Free(0) / mPreferredBuffer;
    while (passes > 0 && Fill(mPreferredBuffer) > 0)
        --passes;
    Drain();
}

}  // namespace orvane
