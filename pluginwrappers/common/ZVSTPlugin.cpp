// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTPlugin.h"

#include "pluginwrappers/common/VstMidi.h"
#include "pluginwrappers/common/VstText.h"
#include "pluginwrappers/common/ZVSTEditor.h"
#include "pluginwrappers/common/ZVSTSetParameterFn.h"
#include "pluginwrappers/core/HostParameter.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <limits>
#include <new>
#include <utility>

namespace orvane
{

namespace
{

constexpr int kChannels = 2;

std::int32_t programsOf(const ZPlugin* app)
{
    const auto document =
        app != nullptr ? boost::dynamic_pointer_cast<ZAudioDocument>(app->GetCurrentDocument())
                       : nullptr;
    return ZProgramBank::CountOf(document.get());
}

ZProgramBank::Extent extentOf(bool isPreset)
{
    return isPreset ? ZProgramBank::Extent::kCurrent : ZProgramBank::Extent::kAll;
}

}  // namespace

ZVSTPlugin::ZVSTPlugin(audioMasterCallback host, std::unique_ptr<ZPlugin> app)
    : AudioEffectX(host, programsOf(app.get()), app ? app->GetExposedCount() : 0)
    , mCore(*this, std::move(app))
{
    setUniqueID(fourCharacters("ocmn"));
    setNumInputs(kChannels);
    setNumOutputs(kChannels);
    canMono(true);
    canProcessReplacing(true);
    programsAreChunks(true);
    MakeEditor();
    if (!mCore.HasDocument())
        return;
    setInitialDelay(mCore.GetLatency());
    mCore.GetApp()->SetParameterFn(boost::make_shared<ZVSTSetParameterFn>(*this));
}

ZVSTPlugin::~ZVSTPlugin()
{
    const ZInterfaceLock lock;
    waitForHostCalls();
    try {
        // Before anything else, since an open dialog uses what is destroyed here.
        mCore.EndModalRuns();
        editor.reset();
    } catch (const ZException& exception) {
        exception.Report();
    }
    mCore.Release();
}

void ZVSTPlugin::MakeEditor()
{
    if (!mCore.GetWindow())
        return;
    std::unique_ptr<ZVSTEditor> made(new (std::nothrow) ZVSTEditor(this, mCore.GetWindow()));
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
        mCore.KeepFault();
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
    mCore.EmptyStream();
}

void ZVSTPlugin::resume()
{
    mCore.RestartClock();
    const bool onEntryThread = IsEntryThread();
    if (mWantsMidi)
        wantEvents();
    if (!onEntryThread)
        return;  // this thread does not hold the lock, so the host may have closed the object
    ReleaseChunk();
    mCore.Deliver();
}

void ZVSTPlugin::setSampleRate(float rate)
{
    if (!mCore.SetSampleRate(rate))
        return;
    AudioEffectX::setSampleRate(rate);
    if (editor)
        GetEditor().SampleRateChanged(rate);
    RefreshLatency();
}

void ZVSTPlugin::setBlockSize(std::int32_t frames)
{
    if (!mCore.SetBlockSize(frames))
        return;
    AudioEffectX::setBlockSize(frames);
    RefreshLatency();
}

void ZVSTPlugin::RefreshLatency()
{
    if (!mCore.HasDocument() || mCore.GetLatency() == cEffect.initialDelay)
        return;
    setInitialDelay(mCore.GetLatency());
    ioChanged();
}

void ZVSTPlugin::processReplacing(float** inputs, float** outputs,
                                  std::int32_t sampleFrames) noexcept
{
    mCore.Run(inputs, outputs, sampleFrames, ZHostStream::Output::kReplaced);
}

void ZVSTPlugin::process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept
{
    mCore.Run(inputs, outputs, sampleFrames, ZHostStream::Output::kAdded);
}

// Calls the host directly, without releasing the interface lock, which this thread does not hold.
bool ZVSTPlugin::HostIsOffline()
{
    return audioMaster != nullptr && audioMaster(&cEffect, audioMasterGetCurrentProcessLevel, 0, 0,
                                                 nullptr, 0.0f) == kVstProcessLevelOffline;
}

std::int32_t ZVSTPlugin::processEvents(VstEvents* events)
{
    VstEvent* const* const all = events->events;
    for (std::int32_t i = 0; i < events->numEvents; ++i)
        if (const auto midi = all[i] != nullptr ? midiBytesOf(all[i]) : std::nullopt)
            mCore.HandleMidi(*midi);
    return 1;
}

void ZVSTPlugin::setParameter(std::int32_t index, float value)
{
    if (mAutomatingParam.load(std::memory_order_relaxed) != kNotAutomating)
        return;
    if (const auto element = mCore.GetParameter(index))
        setFromHost(*element, value);
}

float ZVSTPlugin::getParameter(std::int32_t index)
{
    const auto element = mCore.GetParameter(index);
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
    if (mCore.IsTickingByStream())
        mPendingAutomation.push_back(index);
    else
        setParameterAutomated(index, getParameter(index));
}

void ZVSTPlugin::TimerTicks()
{
    // Taken out of the member first, since the lock is released during each call of the host.
    for (const std::int32_t index : std::exchange(mPendingAutomation, {}))
        setParameterAutomated(index, getParameter(index));
}

void ZVSTPlugin::getParameterDisplay(std::int32_t index, std::span<char> text)
{
    const auto element = mCore.GetParameter(index);
    writeHostText(element ? displayTextOf(*element) : ZString(), text);
}

void ZVSTPlugin::getParameterName(std::int32_t index, std::span<char> text)
{
    const ZPlugin* const app = mCore.GetApp();
    writeHostText(app != nullptr ? app->GetExposedLabel(index) : ZString(), text);
}

bool ZVSTPlugin::getParameterProperties(std::int32_t index, VstParameterProperties* properties)
{
    const auto element = mCore.GetParameter(index);
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
    mCore.GetPrograms().SetCurrent(index);
}

// Reads at most kVstMaxProgNameLen bytes, the length that getProgramName can return.
void ZVSTPlugin::setProgramName(const char* text)
{
    mCore.GetPrograms().SetName(readHostText(text, kVstMaxProgNameLen));
}

void ZVSTPlugin::getProgramName(std::span<char> text)
{
    writeHostText(mCore.GetPrograms().GetName(), text);
}

bool ZVSTPlugin::getProgramNameIndexed(std::int32_t /*category*/, std::int32_t index,
                                       std::span<char> text)
{
    const auto name = mCore.GetPrograms().GetName(index);
    writeHostText(name.value_or(ZString()), text);
    return name.has_value();
}

std::int32_t ZVSTPlugin::getChunk(void** data, bool isPreset)
{
    *data = nullptr;
    ReleaseChunk();
    try {
        mChunk = mCore.SavePrograms(extentOf(isPreset));
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
    if (!mCore.HasDocument())
        return 0;
    try {
        mCore.LoadPrograms({static_cast<const char*>(data), static_cast<std::size_t>(size)},
                           extentOf(isPreset));
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
                                         float opt)
{
    if (index != kVendorOrvane || value != kVendorWindowPicture || ptr == nullptr || !editor)
        return 0;
    // The comparison is false for a number that is none, too.
    const double scale = opt > 0.0f ? std::clamp(opt, kLeastPictureScale, kMostPictureScale) : 1.0f;
    GetEditor().GetPicture(*static_cast<WindowPicture*>(ptr), scale);
    return 1;
}

}  // namespace orvane
