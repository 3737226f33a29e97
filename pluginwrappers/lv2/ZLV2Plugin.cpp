// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/ZLV2Plugin.h"

#include "kestrune/common/views/KestruneFonts.h"
#include "pluginwrappers/core/PlainParameters.h"
#include "pluginwrappers/core/PluginStart.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZSetParameterFn.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <boost/make_shared.hpp>
#include <lv2/atom/util.h>

#include <algorithm>
#include <cassert>
#include <cstring>
#include <string>
#include <string_view>

namespace orvane
{

namespace
{

/// For hosts that announce no length of their blocks.
constexpr std::int32_t kDefaultBlock = 4096;

/// How long the host's answers to earlier values may come after the last one: half a second.
constexpr double kGraceSeconds = 0.5;

/// Keeps the user's edits for the editor. Values need no call: the editor looks for them.
class EditListener : public ZSetParameterFn
{
public:
    explicit EditListener(ZLV2Plugin& plugin)
        : mPlugin(plugin)
    {
    }
    void SetParameter(const boost::shared_ptr<ZElement>& /*element*/,
                      std::int32_t /*index*/) override
    {
    }
    void BeginEdit(std::int32_t index) override { mPlugin.BeginEdit(index); }
    void EndEdit(std::int32_t index) override { mPlugin.EndEdit(index); }
    void StateChanged() override { mPlugin.StateChanged(); }

private:
    ZLV2Plugin& mPlugin;
};

std::uint32_t portOf(std::size_t parameter)
{
    return kLv2FirstParameter + static_cast<std::uint32_t>(parameter);
}

}  // namespace

ZLV2Plugin::ZLV2Plugin(double sampleRate, const Lv2Urids& urids, const LV2_Options_Option* options)
    : mUrids(urids)
    , mCore(*this, startApplication())
    , mMaxBlock(kDefaultBlock)
{
    for (auto& element : plainParametersOf(mCore))
        mParameters.push_back(std::make_unique<ZLV2Parameter>(std::move(element)));
    mParameterPorts.resize(mParameters.size());
    if (mCore.GetWindow())
        mEditor = std::make_unique<ZEditorWindow>(mCore.GetWindow());
    mSampleRate = sampleRate;
    mCore.SetSampleRate(static_cast<float>(sampleRate));
    mCore.SetBlockSize(mMaxBlock);
    if (options != nullptr)
        static_cast<void>(SetOptions(options));
    ZPlugin& app = *mCore.GetApp();
    app.SetParameterFn(boost::make_shared<EditListener>(*this));
    app.InitLooper();
    addProductFonts(app);
}

ZLV2Plugin::~ZLV2Plugin()
{
    const ZInterfaceLock lock;
    try {
        mCore.EndModalRuns();
        mEditor.reset();
    } catch (const ZException& exception) {
        exception.Report();
    }
    mCore.Release();
}

void ZLV2Plugin::Connect(std::uint32_t port, void* data) noexcept
{
    switch (port) {
    case kLv2AudioIn:
    case kLv2AudioIn + 1:
        mInputs[port - kLv2AudioIn] = static_cast<float*>(data);
        return;
    case kLv2AudioOut:
    case kLv2AudioOut + 1:
        mOutputs[port - kLv2AudioOut] = static_cast<float*>(data);
        return;
    case kLv2MidiIn:
        mMidiPort = static_cast<const LV2_Atom_Sequence*>(data);
        return;
    case kLv2Notify:
        mNotifyPort = static_cast<LV2_Atom_Sequence*>(data);
        return;
    case kLv2Latency:
        mLatencyPort = static_cast<float*>(data);
        return;
    case kLv2FreeWheel:
        mFreeWheelPort = static_cast<const float*>(data);
        return;
    default:
        if (port - kLv2FirstParameter < mParameterPorts.size())
            mParameterPorts[port - kLv2FirstParameter] = static_cast<const float*>(data);
    }
}

void ZLV2Plugin::Activate()
{
    const ZInterfaceLock lock;
    mCore.EmptyStream();
    mCore.Deliver();
    mIsFirstBlock = true;
}

void ZLV2Plugin::Run(std::uint32_t frames) noexcept
{
    mIsOffline = mFreeWheelPort != nullptr && *mFreeWheelPort > 0.0f;
    ReadControls(frames);
    ReadMidi();
    RunAudio(frames);
    WriteNotifications();
    if (mLatencyPort != nullptr)
        *mLatencyPort = static_cast<float>(mCore.GetLatency());
}

void ZLV2Plugin::ReadControls(std::uint32_t frames) noexcept
{
    bool isChanged = false;
    for (std::size_t i = 0; i < mParameters.size(); ++i)
        if (mParameterPorts[i] != nullptr)
            isChanged |= mParameters[i]->ReadPort(*mParameterPorts[i], mIsFirstBlock, frames);
    if (isChanged && mIsFirstBlock)
        DeliverToFirstBlock();
    mIsFirstBlock = false;
}

void ZLV2Plugin::DeliverToFirstBlock() noexcept
try {
    const ZInterfaceLock lock;
    mCore.Deliver();
} catch (...) {
    mCore.KeepFault();
}

void ZLV2Plugin::ReadMidi() noexcept
{
    if (mMidiPort == nullptr || mMidiPort->atom.type != mUrids.atomSequence)
        return;
    LV2_ATOM_SEQUENCE_FOREACH(mMidiPort, event)
    {
        if (event->body.type != mUrids.midiEvent || event->body.size == 0)
            continue;
        MidiBytes bytes{};
        std::memcpy(bytes.data(), event + 1, std::min<std::size_t>(event->body.size, bytes.size()));
        mCore.QueueMidi(bytes);
    }
}

void ZLV2Plugin::RunAudio(std::uint32_t frames) noexcept
{
    const auto from = [](const auto& channels, std::uint32_t start) {
        std::array<float*, ZHostStream::kChannels> moved{};
        for (std::size_t i = 0; i < moved.size(); ++i)
            moved[i] = channels[i] != nullptr ? channels[i] + start : nullptr;
        return moved;
    };
    const auto longest = static_cast<std::uint32_t>(mMaxBlock);
    for (std::uint32_t start = 0; start < frames;) {
        const std::uint32_t count = std::min(frames - start, longest);
        auto inputs = from(mInputs, start);
        auto outputs = from(mOutputs, start);
        mCore.Run(inputs.data(), outputs.data(), static_cast<std::int32_t>(count),
                  ZHostStream::Output::kReplaced);
        start += count;
    }
}

// The host leaves the capacity of the port in its size.
void ZLV2Plugin::WriteNotifications() noexcept
{
    if (mNotifyPort == nullptr)
        return;
    struct StateChangedEvent
    {
        LV2_Atom_Event event;
        LV2_Atom_Object_Body object;
    };
    const std::uint32_t capacity = mNotifyPort->atom.size;
    mNotifyPort->atom = {sizeof(LV2_Atom_Sequence_Body), mUrids.atomSequence};
    mNotifyPort->body = {0, 0};
    if (capacity < sizeof(LV2_Atom_Sequence_Body) + sizeof(StateChangedEvent) ||
        !mStateChanged.load(std::memory_order_relaxed) ||
        !mStateChanged.exchange(false, std::memory_order_relaxed))
        return;
    StateChangedEvent changed{};
    changed.event.body = {sizeof(LV2_Atom_Object_Body), mUrids.atomObject};
    changed.object.otype = mUrids.stateChanged;
    static_assert(sizeof changed % 8 == 0, "events are padded to 64 bits");
    std::memcpy(mNotifyPort + 1, &changed, sizeof changed);
    mNotifyPort->atom.size += static_cast<std::uint32_t>(sizeof changed);
}

LV2_State_Status ZLV2Plugin::Save(LV2_State_Store_Function store, LV2_State_Handle handle)
{
    std::string text;
    {
        const ZInterfaceLock lock;
        text = mCore.SavePrograms(ZProgramBank::Extent::kCurrent);
    }
    return store(handle, mUrids.program, text.c_str(), text.size() + 1, mUrids.atomString,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status ZLV2Plugin::Restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle)
{
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const auto* const text =
        static_cast<const char*>(retrieve(handle, mUrids.program, &size, &type, &flags));
    if (text == nullptr)
        return LV2_STATE_ERR_NO_PROPERTY;
    if (type != mUrids.atomString)
        return LV2_STATE_ERR_BAD_TYPE;
    const ZInterfaceLock lock;
    mCore.LoadPrograms({text, ::strnlen(text, size)}, ZProgramBank::Extent::kCurrent);
    return LV2_STATE_SUCCESS;
}

std::uint32_t ZLV2Plugin::GetOptions(LV2_Options_Option* options) const
{
    std::uint32_t status = LV2_OPTIONS_SUCCESS;
    for (; options->key != 0; ++options) {
        if (options->key == mUrids.maxBlockLength) {
            options->size = sizeof mMaxBlock;
            options->type = mUrids.atomInt;
            options->value = &mMaxBlock;
        } else {
            status |= LV2_OPTIONS_ERR_BAD_KEY;
        }
    }
    return status;
}

std::uint32_t ZLV2Plugin::SetOptions(const LV2_Options_Option* options)
{
    const ZInterfaceLock lock;
    // Compared before the conversion: a number of the host may be beyond the range of the integer.
    if (const auto block = findOption(options, mUrids.maxBlockLength, mUrids);
        block && *block >= 1.0 && *block <= ZHostStream::kMaxBlockSize)
    {
        mMaxBlock = static_cast<std::int32_t>(*block);
        mCore.SetBlockSize(mMaxBlock);
    }
    if (const auto rate = findOption(options, mUrids.sampleRate, mUrids);
        rate && mCore.SetSampleRate(static_cast<float>(*rate)))
    {
        mSampleRate = *rate;
        if (mEditor)
            mEditor->SampleRateChanged(static_cast<float>(*rate));
    }
    return LV2_OPTIONS_SUCCESS;
}

bool ZLV2Plugin::OpenEditor(ZLV2Editor& editor, ZWindowHost& host, std::optional<double> scale,
                            std::uintptr_t parent)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mEditor)
        return false;
    mEditor->SetHost(&host);
    if (scale)
        mEditor->SetHostScale(*scale);
    if (!mEditor->Open(parent)) {
        mEditor->SetHost(mWindowHost);
        return false;
    }
    mOpenFor = &editor;
    mWindowHost = &host;
    return true;
}

std::vector<ZLV2Plugin::Edit> ZLV2Plugin::CloseEditor(const ZLV2Editor& editor)
{
    assert(ZInterfaceLock::IsHeld());
    if (mOpenFor != &editor)
        return {};
    mEditor->Close();
    mEditor->SetHost(nullptr);
    mOpenFor = nullptr;
    mWindowHost = nullptr;
    return TakeEdits();
}

void ZLV2Plugin::BeginEdit(std::int32_t index)
{
    assert(ZInterfaceLock::IsHeld());
    const auto parameter = static_cast<std::size_t>(index);
    mParameters[parameter]->SetHeld(true);
    if (mOpenFor != nullptr)
        mEdits.push_back({portOf(parameter), Edit::Kind::kBegin, 0.0f});
}

void ZLV2Plugin::EndEdit(std::int32_t index)
{
    assert(ZInterfaceLock::IsHeld());
    const auto parameter = static_cast<std::size_t>(index);
    if (mOpenFor != nullptr) {
        // Before the end, since hosts record only what comes inside the gesture.
        AddValue(mEdits, parameter);
        mEdits.push_back({portOf(parameter), Edit::Kind::kEnd, 0.0f});
    }
    mParameters[parameter]->SetHeld(false);
}

void ZLV2Plugin::AddValue(std::vector<Edit>& edits, std::size_t index)
{
    const auto grace = static_cast<std::uint32_t>(kGraceSeconds * mSampleRate);
    if (const auto value = mParameters[index]->TakeNews(grace))
        edits.push_back({portOf(index), Edit::Kind::kValue, *value});
}

std::vector<ZLV2Plugin::Edit> ZLV2Plugin::TakeEdits()
{
    assert(ZInterfaceLock::IsHeld());
    std::vector<Edit> edits = std::exchange(mEdits, {});
    for (std::size_t i = 0; i < mParameters.size(); ++i)
        AddValue(edits, i);
    return edits;
}

}  // namespace orvane
