// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTPlugin.h"

#include "pluginwrappers/common/HostParameter.h"
#include "pluginwrappers/common/VstText.h"
#include "pluginwrappers/common/ZMidiMessage.h"
#include "pluginwrappers/common/ZVSTEditor.h"
#include "pluginwrappers/common/ZVSTSetParameterFn.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zdsp/common/ZFloatMode.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/documents/ZAudioManager.h"
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
#include <limits>
#include <new>
#include <utility>

namespace orvane
{

namespace
{

constexpr int kChannels = 2;

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

ZProgramBank::Extent extentOf(bool isPreset)
{
    return isPreset ? ZProgramBank::Extent::kCurrent : ZProgramBank::Extent::kAll;
}

// Copies or adds inputs to outputs, for a plug-in without a network. Hosts that ignore the number
// of channels may pass null arrays.
void passThrough(float** inputs, float** outputs, std::int32_t frames, ZHostStream::Output output)
{
    for (int channel = 0; channel < kChannels; ++channel) {
        const float* const in = inputs != nullptr ? inputs[channel] : nullptr;
        float* const out = outputs != nullptr ? outputs[channel] : nullptr;
        if (in == nullptr || out == nullptr)
            continue;
        for (std::int32_t i = 0; i < frames; ++i)
            out[i] = output == ZHostStream::Output::kAdded ? out[i] + in[i] : in[i];
    }
}

}  // namespace

ZVSTPlugin::ZVSTPlugin(audioMasterCallback host, std::unique_ptr<ZPlugin> app)
    : AudioEffectX(host, ZProgramBank::CountOf(documentOf(app.get()).get()),
                   app ? app->GetExposedCount() : 0)
    , mApp(std::move(app))
    , mDocument(documentOf(mApp.get()))
    , mWindow(windowOf(mApp.get()))
    , mPrograms(mDocument.get())
{
    setUniqueID(fourCharacters("ocmn"));
    setNumInputs(kChannels);
    setNumOutputs(kChannels);
    canMono(true);
    canProcessReplacing(true);
    programsAreChunks(true);
    if (!mApp)
        return;
    mApp->SetTickFilter([this] { return AcceptTick(); });
    MakeEditor();
    if (!mDocument)
        return;
    RouteNetwork();
    setInitialDelay(mDocument->GetLatency());
    mApp->SetParameterFn(boost::make_shared<ZVSTSetParameterFn>(*this));
}

ZVSTPlugin::~ZVSTPlugin()
{
    // Released before mInterfaceThread is destroyed, which joins the interface thread.
    const ZInterfaceLock lock;
    waitForHostCalls();
    try {
        // Before anything else, since an open dialog uses what is destroyed here.
        if (mApp)
            mApp->EndModalRuns();
        mWindow.reset();
        editor.reset();
        mDocument.reset();
        mApp.reset();
    } catch (const ZException& exception) {
        exception.Report();
    }
}

void ZVSTPlugin::MakeEditor()
{
    if (!mWindow)
        return;
    std::unique_ptr<ZVSTEditor> made(new (std::nothrow) ZVSTEditor(this, mWindow));
    if (!made)
        throw ZException("Could Not Create The VST Editor Layer.");
    setEditor(std::move(made));
}

// MakeEditor() sets a ZVSTEditor; nothing else sets an editor.
ZVSTEditor& ZVSTPlugin::GetEditor()
{
    assert(editor);
    return static_cast<ZVSTEditor&>(*editor);
}

// The audio manager has routed the network to the looper's output; this routes its input.
void ZVSTPlugin::RouteNetwork()
{
    const boost::shared_ptr<ZSignalLooper> looper = GetSignalLooper();
    const boost::shared_ptr<ZSignalBay> network = GetNetwork();
    if (!looper || !network)
        return;
    ZInputBay& input = *looper->GetInputBay();
    network->Route(0, input, 0);
    network->Route(1, input, input.GetExportCount() == 1 ? 0 : 1);
}

boost::shared_ptr<ZSignalLooper> ZVSTPlugin::GetSignalLooper() const
{
    const ZAudioManager* const manager = mApp ? mApp->GetAudioManager() : nullptr;
    return manager != nullptr ? manager->GetSignalLooper() : nullptr;
}

boost::shared_ptr<ZSignalBay> ZVSTPlugin::GetNetwork() const
{
    return mDocument ? boost::dynamic_pointer_cast<ZSignalBay>(mDocument->GetOutputNetwork())
                     : nullptr;
}

std::intptr_t ZVSTPlugin::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void* ptr, float opt)
{
    if (!IsAudioCall(opcode)) {
        const ZInterfaceLock lock;
        return AudioEffectX::dispatcher(opcode, index, value, ptr, opt);
    }
    try {
        return AudioEffectX::dispatcher(opcode, index, value, ptr, opt);
    } catch (...) {
        mFaults.Keep();
        return 0;
    }
}

bool ZVSTPlugin::IsEntryThread() const
{
    return std::this_thread::get_id() == mEntryThread;
}

// Some hosts send effMainsChanged on the audio thread, which must not wait for the interface lock,
// others on the thread that loaded the plug-in.
bool ZVSTPlugin::IsAudioCall(std::int32_t opcode) const
{
    switch (opcode) {
    case effMainsChanged:
        return !IsEntryThread();
    case effProcessEvents:
    case effStartProcess:
    case effStopProcess:
        return true;
    default:
        return false;
    }
}

void ZVSTPlugin::suspend()
{
    mClock.Restart();
    if (const auto looper = GetSignalLooper()) {
        looper->InitLooper();
        looper->Drain();
    }
    if (mDocument)
        mDocument->HandleZMessage(boost::make_shared<ZMessage>(ZRESET));
}

void ZVSTPlugin::resume()
{
    mClock.Restart();
    const bool onEntryThread = IsEntryThread();
    if (mWantsMidi)
        wantEvents();
    if (!onEntryThread)
        return;  // this thread does not hold the lock, so the host may have closed the object
    ReleaseChunk();
    if (mApp)
        mApp->Tick();
}

void ZVSTPlugin::setSampleRate(float rate)
{
    const auto looper = GetSignalLooper();
    if (!std::isfinite(rate) || rate <= 0.0f || (looper && looper->GetSampleRate() == rate))
        return;
    AudioEffectX::setSampleRate(rate);
    if (const auto network = GetNetwork())
        network->HandleZMessage(makeSampleRateMessage(rate));
    if (looper) {
        looper->SetSampleRate(rate);
        looper->InitLooper();
        looper->Drain();
    }
    if (editor)
        GetEditor().SampleRateChanged(rate);
    RefreshLatency();
}

void ZVSTPlugin::setBlockSize(std::int32_t frames)
{
    if (frames <= 0 || frames > ZHostStream::kMaxBlockSize)
        return;
    AudioEffectX::setBlockSize(frames);
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
    RefreshLatency();
}

void ZVSTPlugin::RefreshLatency()
{
    if (!mDocument || mDocument->GetLatency() == cEffect.initialDelay)
        return;
    setInitialDelay(mDocument->GetLatency());
    ioChanged();
}

void ZVSTPlugin::processReplacing(float** inputs, float** outputs,
                                  std::int32_t sampleFrames) noexcept
{
    RunBlock(inputs, outputs, sampleFrames, ZHostStream::Output::kReplaced);
}

void ZVSTPlugin::process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept
{
    RunBlock(inputs, outputs, sampleFrames, ZHostStream::Output::kAdded);
}

void ZVSTPlugin::RunBlock(float** inputs, float** outputs, std::int32_t frames,
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

void ZVSTPlugin::TickByStream(std::int32_t frames, float rate) noexcept
{
    assert(mApp);
    const auto now = ZStreamClock::Clock::now();
    if (!mClock.BlockBegins(now, HostIsOffline(), frames, static_cast<double>(rate)))
        return;
    try {
        const ZInterfaceLock lock;
        const RaisedFlag ticks(mTicksByStream);
        mApp->Tick();
    } catch (...) {
        mFaults.Keep();
    }
}

// Calls the host directly, without releasing the interface lock, which this thread does not hold.
bool ZVSTPlugin::HostIsOffline()
{
    return audioMaster != nullptr && audioMaster(&cEffect, audioMasterGetCurrentProcessLevel, 0, 0,
                                                 nullptr, 0.0f) == kVstProcessLevelOffline;
}

// Called by the timer of the interface thread: returns whether it has to tick.
bool ZVSTPlugin::AcceptTick()
{
    mFaults.Report();
    SendPendingAutomation();
    return mClock.WallClockTicks(ZStreamClock::Clock::now());
}

std::int32_t ZVSTPlugin::processEvents(VstEvents* events)
{
    VstEvent* const* const all = events->events;
    for (std::int32_t i = 0; mDocument && i < events->numEvents; ++i) {
        const auto message = all[i] != nullptr ? midiMessageOf(all[i]) : nullptr;
        if (message)
            mDocument->HandleZMessage(message);
    }
    return 1;
}

boost::shared_ptr<ZElement> ZVSTPlugin::GetParameterElement(std::int32_t index) const
{
    return mApp ? mApp->GetExposedElement(index) : nullptr;
}

void ZVSTPlugin::setParameter(std::int32_t index, float value)
{
    if (mAutomatingParam.load(std::memory_order_relaxed) != kNotAutomating)
        return;
    if (const auto element = GetParameterElement(index))
        setFromHost(*element, value);
}

float ZVSTPlugin::getParameter(std::int32_t index)
{
    const auto element = GetParameterElement(index);
    return element ? hostValueOf(*element) : 0.0f;
}

void ZVSTPlugin::setParameterAutomated(std::int32_t index, float value)
{
    assert(index >= 0 && index < numParams);
    mAutomatingParam.store(index, std::memory_order_relaxed);
    AudioEffectX::setParameterAutomated(index, value);
    mAutomatingParam.store(kNotAutomating, std::memory_order_relaxed);
}

void ZVSTPlugin::NotifyHost(std::int32_t index)
{
    if (mTicksByStream)
        mPendingAutomation.push_back(index);
    else
        setParameterAutomated(index, getParameter(index));
}

void ZVSTPlugin::SendPendingAutomation()
{
    // Taken out of the member first, since the lock is released during each call of the host.
    for (const std::int32_t index : std::exchange(mPendingAutomation, {}))
        setParameterAutomated(index, getParameter(index));
}

void ZVSTPlugin::getParameterDisplay(std::int32_t index, std::span<char> text)
{
    const auto element = GetParameterElement(index);
    writeHostText(element ? displayTextOf(*element) : ZString(), text);
}

void ZVSTPlugin::getParameterName(std::int32_t index, std::span<char> text)
{
    writeHostText(mApp ? mApp->GetExposedLabel(index) : ZString(), text);
}

bool ZVSTPlugin::getParameterProperties(std::int32_t index, VstParameterProperties* properties)
{
    const auto element = GetParameterElement(index);
    if (!element || element->GetType() != ZElement::ZDISCRETE ||
        element->CountDiscreteValues() != 2)
        return false;
    assert(index < std::numeric_limits<std::int16_t>::max());
    *properties = {};
    properties->stepFloat = 1.0f;
    properties->smallStepFloat = 1.0f;
    properties->largeStepFloat = 1.0f;
    writeHostText(element->GetLabel(ZElement::kFullLabel), properties->label);
    properties->flags = kVstParameterIsSwitch;
    properties->maxInteger = 1;
    properties->stepInteger = 1;
    properties->largeStepInteger = 1;
    writeHostText(element->GetLabel(ZElement::kShortLabel), properties->shortLabel);
    properties->displayIndex = static_cast<std::int16_t>(index + 1);
    return true;
}

void ZVSTPlugin::setProgram(std::int32_t index)
{
    AudioEffectX::setProgram(index);
    mPrograms.SetCurrent(index);
}

// Reads at most kVstMaxProgNameLen bytes, the length that getProgramName can return.
void ZVSTPlugin::setProgramName(const char* text)
{
    mPrograms.SetName(readHostText(text, kVstMaxProgNameLen));
}

void ZVSTPlugin::getProgramName(std::span<char> text)
{
    writeHostText(mPrograms.GetName(), text);
}

bool ZVSTPlugin::getProgramNameIndexed(std::int32_t /*category*/, std::int32_t index,
                                       std::span<char> text)
{
    const auto name = mPrograms.GetName(index);
    writeHostText(name.value_or(ZString()), text);
    return name.has_value();
}

std::int32_t ZVSTPlugin::getChunk(void** data, bool isPreset)
{
    *data = nullptr;
    ReleaseChunk();
    try {
        mChunk = mPrograms.Save(extentOf(isPreset));
    } catch (const ZException& exception) {
        exception.Report();
    }
    if (!mChunk.empty())
        *data = mChunk.data();
    return static_cast<std::int32_t>(mChunk.size());
}

std::int32_t ZVSTPlugin::setChunk(void* data, std::int32_t size, bool isPreset)
{
    assert(data != nullptr && size > 0);
    if (!mDocument)
        return 0;
    try {
        mPrograms.Load({static_cast<const char*>(data), static_cast<std::size_t>(size)},
                       extentOf(isPreset));
        // Delivers what the load has posted; after a bank that is left to the next tick.
        if (isPreset)
            mApp->ProcessQueue();
        return 1;
    } catch (const ZException& exception) {
        exception.Report();
        return 0;
    }
}

void ZVSTPlugin::ReleaseChunk()
{
    std::string().swap(mChunk);
}

bool ZVSTPlugin::getVendorString(std::span<char> text)
{
    writeHostText("Orvane Inc.", text);
    return true;
}

std::intptr_t ZVSTPlugin::vendorSpecific(std::int32_t index, std::intptr_t value, void* ptr,
                                         float /*opt*/)
{
    if (index != kVendorOrvane || value != kVendorWindowPicture || ptr == nullptr || !editor)
        return 0;
    GetEditor().GetPicture(*static_cast<WindowPicture*>(ptr));
    return 1;
}

}  // namespace orvane
