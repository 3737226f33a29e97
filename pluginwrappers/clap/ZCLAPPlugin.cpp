// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ZCLAPPlugin.h"

#include "kestrune/common/views/KestruneFonts.h"
#include "pluginwrappers/clap/ClapCalls.h"
#include "pluginwrappers/core/HostParameter.h"
#include "pluginwrappers/core/PlainParameters.h"
#include "pluginwrappers/core/PluginStart.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZSetParameterFn.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace orvane
{

namespace
{

/// Queues what the user does in the window.
class EditListener : public ZSetParameterFn
{
public:
    explicit EditListener(ZCLAPPlugin& plugin)
        : mPlugin(plugin)
    {
    }
    void SetParameter(const boost::shared_ptr<ZElement>& /*element*/, std::int32_t index) override
    {
        mPlugin.QueueValue(static_cast<std::size_t>(index));
    }
    void BeginEdit(std::int32_t index) override
    {
        mPlugin.QueueGesture(static_cast<std::size_t>(index), true);
    }
    void EndEdit(std::int32_t index) override
    {
        mPlugin.QueueGesture(static_cast<std::size_t>(index), false);
    }
    void StateChanged() override { mPlugin.StateChanged(); }

private:
    ZCLAPPlugin& mPlugin;
};

bool isSilent(const float* samples, std::uint32_t frames) noexcept
{
    return samples == nullptr ||
           std::all_of(samples, samples + frames, [](float sample) { return sample == 0.0f; });
}

}  // namespace

ZCLAPPlugin::ZCLAPPlugin(const clap_host& host, const clap_plugin& functions)
    : mRecord(functions)
    , mHost(host)
{
    mRecord.plugin_data = this;
}

ZCLAPPlugin::~ZCLAPPlugin()
{
    if (!mCore)
        return;
    const ZInterfaceLock lock;
    mHost.WaitForCalls();
    try {
        mCore->EndModalRuns();
        mEditor.reset();
    } catch (const ZException& exception) {
        exception.Report();
    }
    mCore->Release();
}

void ZCLAPPlugin::Init()
{
    mHost.FindExtensions();
    const ZInterfaceLock lock;
    ZPluginShell& shell = *this;
    mCore = std::make_unique<ZPluginCore>(shell, startApplication());
    for (auto& element : plainParametersOf(*mCore)) {
        const float value = plainValueOf(*element);
        mParameters.push_back({std::move(element), value, value});
    }
    if (mCore->GetWindow()) {
        mEditor = std::make_unique<ZEditorWindow>(mCore->GetWindow());
        mEditor->SetHost(this);
    }
    ZPlugin& app = *mCore->GetApp();
    app.SetParameterFn(boost::make_shared<EditListener>(*this));
    app.InitLooper();
    addProductFonts(app);
}

bool ZCLAPPlugin::Activate(double sampleRate, std::uint32_t maxFrames)
{
    if (!(sampleRate > 0.0) || !std::isfinite(sampleRate) || maxFrames == 0)
        return false;
    const std::uint32_t latency = GetLatency();
    {
        const ZInterfaceLock lock;
        mMaxBlock = std::min<std::uint32_t>(maxFrames, ZHostStream::kMaxBlockSize);
        const auto rate = static_cast<float>(sampleRate);
        if (mCore->SetSampleRate(rate) && mEditor)
            mEditor->SampleRateChanged(rate);
        mCore->SetBlockSize(static_cast<std::int32_t>(mMaxBlock));
        mCore->EmptyStream();
        mCore->Deliver();
    }
    mIsFirstBlock = true;
    mSilentFrames = 0;
    mIsQuiet.store(true, std::memory_order_relaxed);
    mIsActive.store(true);
    if (GetLatency() != latency)
        mHost.LatencyChanged();
    return true;
}

void ZCLAPPlugin::Deactivate()
{
    mIsActive.store(false);
}

bool ZCLAPPlugin::StartProcessing() noexcept
{
    mCore->RestartClock();
    mIsProcessing.store(true);
    return true;
}

void ZCLAPPlugin::StopProcessing() noexcept
{
    mIsProcessing.store(false);
}

void ZCLAPPlugin::Reset()
{
    mCore->EmptyStream();
    mIsFirstBlock = true;
    mSilentFrames = 0;
}

std::int32_t ZCLAPPlugin::Process(const clap_process& block) noexcept
{
    assert(!ZInterfaceLock::IsHeld());
    const bool hasPorts = block.audio_inputs_count == 1 && block.audio_outputs_count == 1 &&
                          block.audio_inputs != nullptr && block.audio_outputs != nullptr;
    if (!hasPorts || block.audio_outputs->data32 == nullptr)
        return CLAP_PROCESS_ERROR;
    const auto channelsOf = [](const clap_audio_buffer& port) {
        std::array<float*, ZHostStream::kChannels> channels{};
        for (std::uint32_t i = 0; port.data32 != nullptr && i < channels.size(); ++i)
            channels[i] = i < port.channel_count ? port.data32[i] : nullptr;
        return channels;
    };
    mInputs = channelsOf(*block.audio_inputs);
    mOutputs = channelsOf(*block.audio_outputs);
    // Before the block, since input and output may be the same memory.
    const bool isSilence =
        isSilent(mInputs[0], block.frames_count) && isSilent(mInputs[1], block.frames_count);
    mSilentFrames = isSilence ? mSilentFrames + block.frames_count : 0;
    RunBlock(block);
    HandOutEdits(block.out_events);
    block.audio_outputs->constant_mask = 0;
    return ListenForSilence(block.frames_count);
}

// The block is cut at its events, so that each is taken at its own time as far as ticks allow.
void ZCLAPPlugin::RunBlock(const clap_process& block) noexcept
{
    const clap_input_events* const events = block.in_events;
    const std::uint32_t count = events != nullptr ? events->size(events) : 0;
    std::uint32_t done = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const clap_event_header* const event = events->get(events, i);
        if (event == nullptr)
            continue;
        const std::uint32_t time = std::clamp(event->time, done, block.frames_count);
        if (time > done) {
            RunAudio(done, time);
            done = time;
        }
        TakeEvent(*event);
    }
    RunAudio(done, block.frames_count);
}

void ZCLAPPlugin::RunAudio(std::uint32_t begin, std::uint32_t end) noexcept
{
    if (begin < end && std::exchange(mIsFirstBlock, false))
        DeliverToFirstBlock();
    while (begin < end) {
        const std::uint32_t frames = std::min(end - begin, mMaxBlock);
        const auto from = [begin](auto channels) {
            for (float*& channel : channels)
                channel = channel != nullptr ? channel + begin : nullptr;
            return channels;
        };
        auto inputs = from(mInputs);
        auto outputs = from(mOutputs);
        mCore->Run(inputs.data(), outputs.data(), static_cast<std::int32_t>(frames),
                   ZHostStream::Output::kReplaced);
        begin += frames;
    }
}

void ZCLAPPlugin::DeliverToFirstBlock() noexcept
try {
    const ZInterfaceLock lock;
    mCore->Deliver();
} catch (...) {
    mCore->KeepFault();
}

// Sound is left until silence has passed the whole delay and nothing else is heard.
std::int32_t ZCLAPPlugin::ListenForSilence(std::uint32_t frames) noexcept
{
    const bool isQuiet = mSilentFrames > static_cast<std::uint64_t>(mCore->GetLatency()) &&
                         isSilent(mOutputs[0], frames) && isSilent(mOutputs[1], frames);
    if (mIsQuiet.exchange(isQuiet, std::memory_order_relaxed) != isQuiet)
        mHost.TailChanged();
    return isQuiet ? CLAP_PROCESS_SLEEP : CLAP_PROCESS_CONTINUE;
}

void ZCLAPPlugin::TakeEvent(const clap_event_header& event) noexcept
{
    if (event.space_id != kClapCoreEventSpace)
        return;
    if (event.type == CLAP_EVENT_PARAM_VALUE && event.size >= sizeof(clap_event_param_value)) {
        const auto& given = reinterpret_cast<const clap_event_param_value&>(event);
        if (const Parameter* const parameter = Find(given.param_id))
            setPlainFromHost(*parameter->element, static_cast<float>(given.value));
    } else if (event.type == CLAP_EVENT_MIDI && event.size >= sizeof(clap_event_midi)) {
        const auto& given = reinterpret_cast<const clap_event_midi&>(event);
        mCore->QueueMidi({given.data[0], given.data[1], given.data[2]});
    }
}

void ZCLAPPlugin::TakeEvents(const clap_input_events* events) noexcept
{
    const std::uint32_t count = events != nullptr ? events->size(events) : 0;
    for (std::uint32_t i = 0; i < count; ++i)
        if (const clap_event_header* const event = events->get(events, i))
            TakeEvent(*event);
}

// An edit that the host has no room for stays for the next block.
void ZCLAPPlugin::HandOutEdits(const clap_output_events* out) noexcept
{
    if (out == nullptr)
        return;
    while (const Edit* const edit = mEdits.Front()) {
        clap_event_header header{sizeof(clap_event_param_gesture), 0, kClapCoreEventSpace,
                                 edit->type, 0};
        bool isTaken = false;
        if (edit->type == CLAP_EVENT_PARAM_VALUE) {
            header.size = sizeof(clap_event_param_value);
            const clap_event_param_value event{
                header, edit->parameter, nullptr, -1, -1, -1, -1, static_cast<double>(edit->value)};
            isTaken = out->try_push(out, &event.header);
        } else {
            const clap_event_param_gesture event{header, edit->parameter};
            isTaken = out->try_push(out, &event.header);
        }
        if (!isTaken)
            return;
        mEdits.Pop();
    }
}

void ZCLAPPlugin::Flush(const clap_input_events* in, const clap_output_events* out) noexcept
{
    TakeEvents(in);
    HandOutEdits(out);
}

void ZCLAPPlugin::OnMainThread()
{
    if (mIsDirty.exchange(false))
        mHost.MarkDirty();
    if (mMustRescan.exchange(false))
        mHost.RescanValues();
}

const ZCLAPPlugin::Parameter* ZCLAPPlugin::Find(clap_id parameter) const
{
    return parameter < mParameters.size() ? &mParameters[parameter] : nullptr;
}

std::uint32_t ZCLAPPlugin::GetParameterCount() const
{
    return static_cast<std::uint32_t>(mParameters.size());
}

bool ZCLAPPlugin::GetInfo(std::uint32_t index, clap_param_info& info) const
{
    const Parameter* const parameter = Find(index);
    if (parameter == nullptr)
        return false;
    const ZInterfaceLock lock;
    const ZElement& element = *parameter->element;
    const bool isChoice = element.GetType() == ZElement::ZDISCRETE;
    info = {};
    info.id = index;
    info.flags = CLAP_PARAM_IS_AUTOMATABLE;
    if (isChoice)
        info.flags |= CLAP_PARAM_IS_STEPPED;
    // A switch is no enumeration: hosts show it as a button.
    if (isChoice && element.CountDiscreteValues() > 2)
        info.flags |= CLAP_PARAM_IS_ENUM;
    writeText(info.name, sizeof info.name, plainLabelOf(element));
    info.min_value = isChoice ? 0.0 : static_cast<double>(element.Min());
    info.max_value =
        isChoice ? element.CountDiscreteValues() - 1 : static_cast<double>(element.Max());
    info.default_value = static_cast<double>(parameter->atStart);
    return true;
}

std::optional<double> ZCLAPPlugin::GetValue(clap_id parameter) const
{
    const Parameter* const found = Find(parameter);
    return found != nullptr ? std::optional(static_cast<double>(plainValueOf(*found->element)))
                            : std::nullopt;
}

std::optional<std::string> ZCLAPPlugin::GetText(clap_id parameter, double value) const
{
    const Parameter* const found = Find(parameter);
    if (found == nullptr || std::isnan(value))
        return std::nullopt;
    const ZInterfaceLock lock;
    return displayTextOf(*found->element, static_cast<float>(value)).ToNarrow();
}

std::optional<double> ZCLAPPlugin::GetValueOfText(clap_id parameter, const char* text) const
{
    const Parameter* const found = Find(parameter);
    if (found == nullptr)
        return std::nullopt;
    const ZInterfaceLock lock;
    return plainValueOfText(*found->element, text);
}

std::string ZCLAPPlugin::Save()
{
    const ZInterfaceLock lock;
    return mCore->SavePrograms(ZProgramBank::Extent::kCurrent);
}

void ZCLAPPlugin::Load(const std::string& text)
{
    {
        const ZInterfaceLock lock;
        mCore->LoadPrograms(text, ZProgramBank::Extent::kCurrent);
    }
    mHost.RescanValues();
}

bool ZCLAPPlugin::LoadPreset(const std::string& key)
{
    {
        const ZInterfaceLock lock;
        std::int32_t index = 0;
        while (mCore->GetPrograms().GetName(index) && KeyOf(index) != key)
            ++index;
        if (!mCore->LoadFactoryPreset(index))
            return false;
    }
    mHost.RescanValues();
    return true;
}

std::string ZCLAPPlugin::KeyOf(std::int32_t preset)
{
    return std::to_string(preset + 1);
}

std::uint32_t ZCLAPPlugin::GetLatency() const
{
    return static_cast<std::uint32_t>(mCore->GetLatency());
}

std::uint32_t ZCLAPPlugin::GetTail() const noexcept
{
    return mIsQuiet.load(std::memory_order_relaxed) ? 0 : kClapInfiniteTail;
}

void ZCLAPPlugin::SetOffline(bool isOffline) noexcept
{
    mIsOffline.store(isOffline, std::memory_order_relaxed);
}

bool ZCLAPPlugin::CreateWindow()
{
    if (!mEditor || mIsWindowCreated)
        return false;
    mIsWindowCreated = true;
    return true;
}

void ZCLAPPlugin::DestroyWindow()
{
    const ZInterfaceLock lock;
    if (mEditor)
        mEditor->Close();
    mParent = 0;
    mIsWindowCreated = false;
}

bool ZCLAPPlugin::SetScale(double scale)
{
    const ZInterfaceLock lock;
    if (!mEditor || !std::isfinite(scale) || scale <= 0.0)
        return false;
    mEditor->SetHostScale(scale);
    return true;
}

std::array<std::uint32_t, 2> ZCLAPPlugin::GetWindowSize() const
{
    const ZInterfaceLock lock;
    if (!mEditor)
        return {};
    return {static_cast<std::uint32_t>(mEditor->GetWidth()),
            static_cast<std::uint32_t>(mEditor->GetHeight())};
}

bool ZCLAPPlugin::SetParent(std::uintptr_t parent)
{
    const ZInterfaceLock lock;
    if (!mIsWindowCreated || !mEditor->Open(parent))
        return false;
    mParent = parent;
    return true;
}

bool ZCLAPPlugin::ShowWindow()
{
    const ZInterfaceLock lock;
    return mParent != 0 && (mEditor->IsOpen() || mEditor->Open(mParent));
}

bool ZCLAPPlugin::HideWindow()
{
    const ZInterfaceLock lock;
    if (!mIsWindowCreated)
        return false;
    mEditor->Close();
    return true;
}

bool ZCLAPPlugin::ResizeWindow(const ZPoint& size)
{
    return mHost.RequestResize(static_cast<std::uint32_t>(size.x),
                               static_cast<std::uint32_t>(size.y));
}

void ZCLAPPlugin::Queue(const Edit& edit)
{
    assert(ZInterfaceLock::IsHeld());
    // A host that takes nothing for so long reads the values anew instead.
    if (!mEdits.Push(edit))
        mMustRescan.store(true);
    // During a tick of the stream this is the audio thread, whose block hands out what waits.
    if (mCore->IsTickingByStream())
        return;
    if (mMustRescan.load())
        mHost.RequestCallback();
    else
        mHost.RequestFlush();
}

void ZCLAPPlugin::QueueValue(std::size_t parameter)
{
    Parameter& changed = mParameters[parameter];
    changed.lastTold = plainValueOf(*changed.element);
    Queue({CLAP_EVENT_PARAM_VALUE, static_cast<clap_id>(parameter), changed.lastTold});
}

void ZCLAPPlugin::QueueGesture(std::size_t parameter, bool begins)
{
    Queue({begins ? CLAP_EVENT_PARAM_GESTURE_BEGIN : CLAP_EVENT_PARAM_GESTURE_END,
           static_cast<clap_id>(parameter), 0.0f});
}

// Parameters that the core does not count among the host's are found by their values.
void ZCLAPPlugin::StateChanged()
{
    assert(ZInterfaceLock::IsHeld());
    for (auto i = static_cast<std::size_t>(mCore->GetParameterCount()); i < mParameters.size(); ++i)
        if (plainValueOf(*mParameters[i].element) != mParameters[i].lastTold)
            QueueValue(i);
    mIsDirty.store(true);
    mHost.RequestCallback();
}

}  // namespace orvane
