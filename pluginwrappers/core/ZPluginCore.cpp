// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZPluginCore.h"

#include "zdsp/common/ZFloatMode.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZSignalLooper.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/make_shared.hpp>

#include <cassert>
#include <cmath>
#include <utility>

namespace orvane
{

namespace
{

/// Sets a flag for as long as the object lives.
class RaisedFlag
{
public:
    explicit RaisedFlag(bool& flag)
        : mFlag(flag)
    {
        assert(!mFlag);
        mFlag = true;
    }
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;
    ~RaisedFlag() { mFlag = false; }

private:
    bool& mFlag;
};

boost::shared_ptr<ZAudioDocument> documentOf(const ZPlugin* app)
{
    return app != nullptr ? boost::dynamic_pointer_cast<ZAudioDocument>(app->GetCurrentDocument())
                          : nullptr;
}

boost::shared_ptr<ZWindow> windowOf(const ZPlugin* app)
{
    const ZWindowKeeper* const windows = app != nullptr ? app->GetWindowManager() : nullptr;
    return windows != nullptr ? windows->GetCurrentWindow() : nullptr;
}

// Copies or adds inputs to outputs, for a plug-in without a network. Hosts that ignore the number
// of channels may pass null arrays.
void passThrough(float** inputs, float** outputs, std::int32_t frames, ZHostStream::Output output)
{
    for (int channel = 0; channel < ZHostStream::kChannels; ++channel) {
        const float* const in = inputs != nullptr ? inputs[channel] : nullptr;
        float* const out = outputs != nullptr ? outputs[channel] : nullptr;
        if (in == nullptr || out == nullptr)
            continue;
        for (std::int32_t i = 0; i < frames; ++i)
            out[i] = output == ZHostStream::Output::kAdded ? out[i] + in[i] : in[i];
    }
}

}  // namespace

ZPluginCore::ZPluginCore(ZPluginShell& shell, std::unique_ptr<ZPlugin> app)
    : mShell(shell)
    , mApp(std::move(app))
    , mDocument(documentOf(mApp.get()))
    , mWindow(windowOf(mApp.get()))
    , mPrograms(mDocument.get())
{
    if (!mApp)
        return;
    mApp->SetTickFilter([this] { return AcceptTick(); });
    mApp->SetPrograms(&mPrograms);
    RouteNetwork();
    MeasureLatency();
}

ZPluginCore::~ZPluginCore() = default;

void ZPluginCore::EndModalRuns()
{
    if (mApp)
        mApp->EndModalRuns();
}

void ZPluginCore::Release() noexcept
try {
    mWindow.reset();
    mDocument.reset();
    mApp.reset();
} catch (const ZException& exception) {
    exception.Report();
}

// The audio manager has routed the network to the looper's output; this routes its input.
void ZPluginCore::RouteNetwork()
{
    const boost::shared_ptr<ZSignalLooper> looper = GetSignalLooper();
    const boost::shared_ptr<ZSignalBay> network = GetNetwork();
    if (!looper || !network)
        return;
    ZInputBay& input = *looper->GetInputBay();
    network->Route(0, input, 0);
    network->Route(1, input, input.GetExportCount() == 1 ? 0 : 1);
}

boost::shared_ptr<ZSignalLooper> ZPluginCore::GetSignalLooper() const
{
    const ZAudioManager* const manager = mApp ? mApp->GetAudioManager() : nullptr;
    return manager != nullptr ? manager->GetSignalLooper() : nullptr;
}

boost::shared_ptr<ZSignalBay> ZPluginCore::GetNetwork() const
{
    return mDocument ? boost::dynamic_pointer_cast<ZSignalBay>(mDocument->GetOutputNetwork())
                     : nullptr;
}

// Kept, since the network locks its list of bays to add them up.
void ZPluginCore::MeasureLatency()
{
    mLatency = mDocument ? mDocument->GetLatency() : 0;
}

bool ZPluginCore::SetSampleRate(float rate)
{
    const auto looper = GetSignalLooper();
    if (!std::isfinite(rate) || rate <= 0.0f || (looper && looper->GetSampleRate() == rate))
        return false;
    if (const auto network = GetNetwork())
        network->HandleZMessage(makeSampleRateMessage(rate));
    if (looper) {
        looper->SetSampleRate(rate);
        looper->InitLooper();
        looper->Drain();
    }
    MeasureLatency();
    return true;
}

bool ZPluginCore::SetBlockSize(std::int32_t frames)
{
    if (frames <= 0 || frames > ZHostStream::kMaxBlockSize)
        return false;
    if (const auto looper = GetSignalLooper()) {
        looper->SetBufferSize(static_cast<std::uint32_t>(frames));
        looper->InitLooper();
        looper->Drain();
    }
    // The looper rounds the size up to a power of two for its FIFOs; the network takes the exact
    // size, the longest block that the host passes.
    if (const auto network = GetNetwork())
        network->SetMaxBuffer(frames);
    mStream.SetBlockSize(frames);
    MeasureLatency();
    return true;
}

void ZPluginCore::EmptyStream()
{
    mClock.Restart();
    if (const auto looper = GetSignalLooper()) {
        looper->InitLooper();
        looper->Drain();
    }
    if (mDocument)
        mDocument->HandleZMessage(boost::make_shared<ZMessage>(ZRESET));
}

void ZPluginCore::Deliver()
{
    if (!mApp)
        return;
    HandleQueuedMidi();
    mApp->Tick();
}

void ZPluginCore::Run(float** inputs, float** outputs, std::int32_t frames,
                      ZHostStream::Output output) noexcept
{
    if (frames <= 0)
        return;
    const auto looper = GetSignalLooper();
    if (!looper) {
        passThrough(inputs, outputs, frames, output);
        return;
    }
    TickByStream(frames, looper->GetSampleRate());
    try {
        const ZFloatMode mode;
        mStream.Run(*looper, inputs, outputs, frames, output);
    } catch (...) {
        mFaults.Keep();
    }
}

void ZPluginCore::TickByStream(std::int32_t frames, float rate) noexcept
{
    assert(mApp);
    const auto now = ZStreamClock::Clock::now();
    if (!mClock.BlockBegins(now, mShell.HostIsOffline(), frames, static_cast<double>(rate)))
        return;
    try {
        const ZInterfaceLock lock;
        const RaisedFlag ticks(mTicksByStream);
        Deliver();
    } catch (...) {
        mFaults.Keep();
    }
}

// Called by the timer of the interface thread: returns whether it has to tick.
bool ZPluginCore::AcceptTick()
{
    mFaults.Report();
    mShell.TimerTicks();
    if (!mClock.WallClockTicks(ZStreamClock::Clock::now()))
        return false;
    HandleQueuedMidi();
    return true;
}

void ZPluginCore::HandleMidi(const MidiBytes& midi)
{
    const auto message = mDocument ? midiMessageOf(midi) : nullptr;
    if (message)
        mDocument->HandleZMessage(message);
}

void ZPluginCore::QueueMidi(const MidiBytes& midi) noexcept
{
    static_cast<void>(mMidi.Push(midi));
}

void ZPluginCore::HandleQueuedMidi()
{
    assert(ZInterfaceLock::IsHeld());
    while (const auto midi = mMidi.Pop())
        HandleMidi(*midi);
}

std::int32_t ZPluginCore::GetParameterCount() const
{
    return mApp ? mApp->GetExposedCount() : 0;
}

boost::shared_ptr<ZElement> ZPluginCore::GetParameter(std::int32_t index) const
{
    return mApp ? mApp->GetExposedElement(index) : nullptr;
}

std::string ZPluginCore::SavePrograms(ZProgramBank::Extent extent)
{
    return mPrograms.Save(extent);
}

void ZPluginCore::LoadPrograms(std::string_view text, ZProgramBank::Extent extent)
{
    mPrograms.Load(text, extent);
    // Delivers what the load has posted; after a bank that is left to the next tick.
    if (mApp && extent == ZProgramBank::Extent::kCurrent)
        mApp->ProcessQueue();
}

bool ZPluginCore::LoadFactoryPreset(std::int32_t index)
{
    auto* const presets = dynamic_cast<ZPluginPresetsAudioDocument*>(mDocument.get());
    if (presets == nullptr || index < 0 || index >= presets->GetPresetCount())
        return false;
    presets->LoadFactoryPreset(index);
    mApp->ProcessQueue();
    return true;
}

}  // namespace orvane
