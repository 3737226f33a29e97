// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/ZPsolaBay.h"

#include "kestrune/common/engine/PsolaClass.h"
#include "zdsp/common/ZDelayBuffer.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>
#include <numbers>

namespace orvane
{

namespace
{

constexpr float kBlockSeconds = 0.0116f;
constexpr float kFadeSeconds = 0.010f;

std::unique_ptr<PsolaClass> makeEngine(float sampleRate, std::int32_t blockSize)
{
    try {
        auto engine = std::make_unique<PsolaClass>();
        return engine->Initialize(sampleRate, blockSize) ? std::move(engine) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

ZPsolaBay::ZPsolaBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZBlockProcessingBay(xml, application)
    , mElements(application)
{
    ZPsolaBay::BuildScaleTable();
    for (const auto& element : mElements.GetList())
        AddElement(element);
    mElements.AddObserver(this);
}

ZPsolaBay::~ZPsolaBay()
{
    mElements.RemoveObserver(this);
}

bool ZPsolaBay::IsKindOf(std::string_view className) const
{
    return className == "ZPsolaBayClass" || ZBlockProcessingBay::IsKindOf(className);
}

const char* ZPsolaBay::GetClassName() const
{
    return "ZPsolaBayClass";
}

void ZPsolaBay::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    PackCustomScales();
    ZBlockProcessingBay::ExtractBody(xml);
}

boost::shared_ptr<ZBay> ZPsolaBay::Clone()
{
    auto copy = boost::make_shared<ZPsolaBay>(ExtractHeader(), GetApp());
    CopySettingsTo(*copy);
    copy->mScaleTable = mScaleTable;
    copy->mSettings.tracking = mSettings.tracking;
    return copy;
}

// Setting up.

/// The block does not depend on the host's block size, so that the engine's output and latency are
/// the same in every host.
std::int32_t ZPsolaBay::BlockAtRate() const
{
    // Rates that the engine does not support need any valid block size.
    constexpr float kMost = 65536.0f;
    const float samples = GetSampleRate() * kBlockSeconds + 0.5f;
    return static_cast<std::int32_t>(std::max(1.0f, std::min(samples, kMost)));
}

bool ZPsolaBay::Prepare()
{
    if (!ZBlockProcessingBay::Prepare())
        return false;
    mEngineRuns = false;
    mDelay = {};
    SetBlockSize(BlockAtRate());
    mEngine = makeEngine(GetSampleRate(), GetBlockSize());
    if (!mEngine)
        return false;
    UpdateLatency(*mEngine);
    MakeDelayLines();
    SetDefaults();
    // The notifications of the defaults come later; the first block already uses the defaults.
    const KestruneTracking tracking = mSettings.tracking;
    mSettings = mElements.ReadSettings();
    mSettings.tracking = tracking;
    mSettings.tones =
        tonesOf(mScaleTable.Degrees(mElements[KestruneElements::kScale].GetDiscrete()),
                mElements[KestruneElements::kIntonation].GetDiscrete());
    PostSettings();
    mControl.ApplyAll(*mEngine);
    mEngineRuns = true;
    mIsWet = false;
    mIsEngineHeard = false;
    return true;
}

void ZPsolaBay::SampleRateChanged()
{
    ZBlockProcessingBay::SampleRateChanged();
    if (!mEngine)
        return;
    mEngineRuns = false;
    mDelay = {};
    SetBlockSize(BlockAtRate());
    // One call for both: setting one after the other could make an unsupported combination.
    mEngineRuns = mEngine->Initialize(GetSampleRate(), GetBlockSize());
    if (mEngineRuns)
        UpdateLatency(*mEngine);
    else
        SetLatency(mEngineLatency);
    MakeDelayLines();
}

void ZPsolaBay::UpdateLatency(const PsolaClass& engine)
{
    mEngineLatency = engine.GetLatency();
    SetLatency(mEngineLatency);
}

void ZPsolaBay::MakeDelayLines()
{
    const auto length = static_cast<std::uint32_t>(mEngineLatency + GetBlockSize()) * 2;
    for (std::int32_t channel = 0; channel < GetChannelCount(); ++channel)
        mDelay[static_cast<std::size_t>(channel)] = ZDelayBuffer::Create(length);
    mDryBlock = std::make_unique<ZBuffer>(static_cast<std::uint32_t>(GetBlockSize()), "ZBuffer");
}

void ZPsolaBay::SetDefaults()
{
    ZBlockProcessingBay::SetDefaults();
    mElements.SetDefaults();
    mSettings.correctionOn = false;
    mSettings.transposeOn = false;
    PostSettings();
}

void ZPsolaBay::Reset()
{
    mElements.ResetDisplays();
    ZBlockProcessingBay::Reset();
}

void ZPsolaBay::ClearSound() noexcept
{
    if (mEngine)
        mEngine->Reset();
    for (const auto& delay : mDelay)
        if (delay)
            delay->Clear();
    ZBlockProcessingBay::ClearSound();
}

void ZPsolaBay::PostSettings()
{
    mControl.Post(mSettings);
}

void ZPsolaBay::SetPitchRange(int sourceType)
{
    mSettings.range = sourceRange(sourceType);
    PostSettings();
}

void ZPsolaBay::SetTracking(KestruneTracking tracking)
{
    mSettings.tracking = tracking;
    PostSettings();
}

// Changes of elements. Those that concern scales are in ZPsolaBayScales.cpp.

void ZPsolaBay::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() != ZELEMENTCHANGED)
        return ZBlockProcessingBay::HandleZMessage(message);
    std::uint64_t elementId = 0;
    if (!message->Find<std::uint64_t>("elementid", elementId))
        return;
    if (const auto index = mElements.Find(elementId))
        ElementChanged(*index);
}

void ZPsolaBay::ElementChanged(KestruneElements::Index index)
{
    switch (index) {
    case KestruneElements::kScale:
        return ScaleChosen();
    case KestruneElements::kIntonation:
        return ApplyChosenScale();
    case KestruneElements::kNotesInScale:
        return NotesEdited();
    case KestruneElements::kCurrentCustomScale:
        return CustomScaleRestored();
    case KestruneElements::kCurrentScaleIndex:
        return ScaleIndexRestored();
    case KestruneElements::kCustomScaleTones:
        return mEngine ? RestoreCustomScales() : void();
    case KestruneElements::kCustomNames:
        return mEngine ? RebuildScaleNames() : void();
    case KestruneElements::kSourceType:
        return SetPitchRange(mElements[index].GetDiscrete());
    default:
        if (mElements.ReadSetting(index, mSettings))
            PostSettings();
    }
}

// One block.

void ZPsolaBay::ProcessBlock() noexcept
{
    if (!mDelay[0])
        return ZBlockProcessingBay::ProcessBlock();
    if (mEngineRuns)
        mControl.ApplyChanges(*mEngine);
    const bool wasEngineHeard = mIsEngineHeard;
    UpdatePath(mEngineRuns && mControl.InForce().IsWet());
    const bool fades = wasEngineHeard != mIsEngineHeard && mEngineRuns &&
                       mEngine->GetTracking() == KestruneTracking::kFine;
    FeedDelay();
    if (mIsWet || mIsEngineHeard || fades)
        RunEngine();
    if (fades)
        FadeBetweenPaths();
    else if (!mIsEngineHeard)
        ReadDelay();  // over what the engine wrote
    if (mIsWet)
        mElements.ShowMeasured(mEngine->GetCorrectionCents(), mEngine->GetInputPitch(),
                               mEngine->GetOutputPitch());
    else
        mElements.ClearDisplays();
}

void ZPsolaBay::CatchUp(float share) noexcept
{
    if (mEngineRuns)
        mEngine->CatchUp(share);
}

void ZPsolaBay::UpdatePath(bool isWet) noexcept
{
    if (isWet != mIsWet)
        mChangeCount = 0;
    mIsWet = isWet;
    if (mIsEngineHeard == mIsWet)
        return;
    if (mChangeCount >= mEngineLatency || !mEngineRuns)
        mIsEngineHeard = mIsWet;
    else
        mChangeCount += GetBlockSize();
}

void ZPsolaBay::RunEngine() noexcept
{
    assert(mEngineRuns);
    // A single channel is processed as two equal ones, whose outputs are equal too.
    const std::int32_t second = GetChannelCount() - 1;
    const float* const inputs[] = {InputBlock(0).Data(), InputBlock(second).Data()};
    float* const outputs[] = {OutputBlock(0).Data(), OutputBlock(second).Data()};
    mEngine->Process(inputs, outputs, GetBlockSize());
}

void ZPsolaBay::FeedDelay() noexcept
{
    for (std::int32_t channel = 0; channel < GetChannelCount(); ++channel)
        mDelay[static_cast<std::size_t>(channel)]->Write(InputBlock(channel));
}

void ZPsolaBay::ReadDelay() noexcept
{
    for (std::int32_t channel = 0; channel < GetChannelCount(); ++channel)
        mDelay[static_cast<std::size_t>(channel)]->Read(OutputBlock(channel),
                                                        static_cast<std::uint32_t>(mEngineLatency));
}

void ZPsolaBay::FadeBetweenPaths() noexcept
{
    const std::int32_t length =
        std::min(GetBlockSize(), static_cast<std::int32_t>(GetSampleRate() * kFadeSeconds));
    const float turn = std::numbers::pi_v<float> / static_cast<float>(length);
    for (std::int32_t channel = 0; channel < GetChannelCount(); ++channel) {
        mDelay[static_cast<std::size_t>(channel)]->Read(*mDryBlock,
                                                        static_cast<std::uint32_t>(mEngineLatency));
        float* const engine = OutputBlock(channel).Data();
        const float* const dry = mDryBlock->Data();
        for (std::int32_t i = 0; i < GetBlockSize(); ++i) {
            const float done =
                0.5f - 0.5f * std::cos(turn * static_cast<float>(std::min(i, length)));
            const float share = mIsEngineHeard ? done : 1.0f - done;
            engine[i] = dry[i] + share * (engine[i] - dry[i]);
        }
    }
}

}  // namespace orvane
