// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZMeterBay.h"

#include "zdsp/common/ZEnvelopeDetector.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace orvane
{

namespace
{

constexpr float kFullScaleDecibels = 0.0f;
constexpr std::array<float, 3> kCalibrations{-48.0f, -96.0f, -144.0f};
constexpr std::int32_t kDefaultCalibration = 1;
constexpr std::int32_t kResetMe = 0;
constexpr std::int32_t kResetComplete = 1;
constexpr std::uint32_t kMaxBeats = 65535;
constexpr float kMaxClips = 1000.0f;
constexpr float kRiseMilliseconds = 30.0f;
constexpr float kFallMilliseconds = 3000.0f;
constexpr float kHoldsPerSecond = 10.0f;

float peakOf(std::span<const float> samples) noexcept
{
    float peak = 0.0f;
    for (const float sample : samples)
        peak = std::max(peak, std::fabs(sample));
    return peak;
}

float decibelsOf(float peak) noexcept
{
    return peak > 0.0f ? 20.0f * std::log10(peak) : ZMeterBay::kSilenceDecibels;
}

}  // namespace

ZMeterBay::ZMeterBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZSignalBay(xml, application)
{
    const std::int32_t channels = ReadChannelCount(*xml, kMaxChannels);
    MakeElements();
    for (std::int32_t channel = 0; channel < channels; ++channel) {
        MakeImport("input", ZPort::kAudio);
        MakeExport("output", ZPort::kAudio);
        MakeChannel(channel);
    }
    mCalibration->AddObserver(this);
    Calibrate();
    ZMeterBay::SampleRateChanged();
}

ZMeterBay::~ZMeterBay()
{
    mCalibration->RemoveObserver(this);
}

bool ZMeterBay::IsKindOf(std::string_view className) const
{
    return className == "ZMeterBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZMeterBay::GetClassName() const
{
    return "ZMeterBayClass";
}

boost::shared_ptr<ZXMLElement> ZMeterBay::ExtractHeader() const
{
    auto xml = ZSignalBay::ExtractHeader();
    xml->AddAttribute("numchannels", static_cast<std::int32_t>(mChannels.size()));
    return xml;
}

boost::shared_ptr<ZBay> ZMeterBay::Clone()
{
    auto copy = boost::make_shared<ZMeterBay>(ExtractHeader(), GetApp());
    CopySettingsTo(*copy);
    copy->SampleRateChanged();
    return copy;
}

// Elements

void ZMeterBay::MakeElements()
{
    mCalibration = MakeChoice("MeterCalibration", {"-48 dB", "-96 dB", "-144 dB"});
    mClipReset = MakeChoice("ClipReset", {"Reset Me", "Reset Complete"});
    mHeartbeat = MakeFloat("Heartbeat", 0.0f, static_cast<float>(kMaxBeats));
}

void ZMeterBay::MakeChannel(std::int32_t number)
{
    Channel channel;
    channel.clipCount = MakeFloat("ClipCountChannel" + std::to_string(number), 0.0f, kMaxClips);
    channel.peakDecibels = MakeFloat("InstPeakdBChannel" + std::to_string(number), kSilenceDecibels,
                                     kFullScaleDecibels);
    channel.clips = ZEnvelopeDetector::Create(false);
    channel.clips->SetRiseTime(kRiseMilliseconds);
    channel.clips->SetFallTime(kFallMilliseconds);
    mChannels.push_back(std::move(channel));
}

boost::shared_ptr<ZElement> ZMeterBay::MakeFloat(const std::string& name, float min, float max)
{
    const auto element =
        boost::make_shared<ZElement>(GetName() + name, ZElement::ZFLOAT, GetLooper());
    element->SetRange(min, max, true);
    element->SetZFloatDefault(min);
    element->SetZFloat(min, true);
    Publish(element);
    return element;
}

/// Makes a ZDISCRETE whose second item is the default.
boost::shared_ptr<ZElement> ZMeterBay::MakeChoice(const std::string& name,
                                                  std::initializer_list<const char*> items)
{
    const auto element =
        boost::make_shared<ZElement>(GetName() + name, ZElement::ZDISCRETE, GetLooper());
    for (const char* const item : items)
        element->AddDiscreteValue(item);
    element->SetDiscreteDefault(1);
    element->SetDiscrete(1, true);
    Publish(element);
    return element;
}

void ZMeterBay::Publish(const boost::shared_ptr<ZElement>& element)
{
    element->SetArchivable(false);
    AddElement(element);
}

void ZMeterBay::Calibrate()
{
    const std::int32_t choice = mCalibration->GetDiscrete();
    const bool isKnown = choice >= 0 && choice < std::ssize(kCalibrations);
    const float minimum =
        kCalibrations[static_cast<std::size_t>(isKnown ? choice : kDefaultCalibration)];
    for (const Channel& channel : mChannels) {
        channel.peakDecibels->SetRange(minimum, kFullScaleDecibels, false);
        channel.peakDecibels->SetZFloatDefault(minimum);
    }
}

void ZMeterBay::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    std::uint64_t id = 0;
    if (message->GetId() != ZELEMENTCHANGED)
        return ZSignalBay::HandleZMessage(message);
    if (message->Find<std::uint64_t>("elementid", id) && id == elementIdOf(mCalibration.get()))
        Calibrate();
}

void ZMeterBay::SetDefaults()
{
    mCalibration->SetDiscrete(mCalibration->GetDiscreteDefault(), false);
    mClipReset->SetDiscrete(mClipReset->GetDiscreteDefault(), false);
    mHeartbeat->SetZFloat(mHeartbeat->GetZFloatDefault(), false);
    Calibrate();
    for (const Channel& channel : mChannels) {
        channel.clipCount->SetZFloat(channel.clipCount->GetZFloatDefault(), false);
        channel.peakDecibels->SetZFloat(channel.peakDecibels->GetZFloatDefault(), false);
    }
}

void ZMeterBay::SampleRateChanged()
{
    mHoldSamples = static_cast<std::uint32_t>(std::ceil(GetSampleRate() / kHoldsPerSecond));
    for (const Channel& channel : mChannels)
        channel.clips->SetSampleRate(GetSampleRate());
}

void ZMeterBay::Reset()
{
    for (Channel& channel : mChannels) {
        channel.heldPeak = 0.0f;
        channel.heldFor = 0;
        channel.peakDecibels->SetZFloat(kSilenceDecibels, false);
    }
    ZSignalBay::Reset();
}

// The pass

void ZMeterBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t count,
                              std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
    AnswerClipReset();
    mBeats = mBeats < kMaxBeats ? mBeats + 1 : 0;
    mHeartbeat->SetZFloat(static_cast<float>(mBeats), false);
    const auto channels =
        std::min({mChannels.size(), SignalImports().size(), SignalExports().size()});
    for (std::size_t i = 0; i < channels; ++i) {
        const ZBuffer& input = *SignalImports()[i]->GetBuffer();
        ZSignalPort& output = *SignalExports()[i];
        output.GetBuffer()->CopyRange(input, {0, count}, 0);
        output.SetAvailable(count);
        Meter(mChannels[i], input.Data(), std::min(count, input.Length()));
    }
}

void ZMeterBay::Meter(Channel& channel, const float* samples, std::uint32_t count) noexcept
{
    if (count == 0)
        return;
    const std::span block(samples, count);
    HoldPeak(channel, peakOf(block), count);
    channel.peakDecibels->SetZFloat(decibelsOf(channel.heldPeak), false);
    channel.clips->Process(block);
    channel.clipCount->SetZFloatClamped(static_cast<float>(channel.clips->ClipEvents()), false);
}

void ZMeterBay::HoldPeak(Channel& channel, float peak, std::uint32_t count) const noexcept
{
    channel.heldFor += count;
    if (peak < channel.heldPeak && channel.heldFor <= mHoldSamples)
        return;
    channel.heldPeak = peak;
    channel.heldFor = 0;
}

/// Answers a request to clear the clip counters, which only the audio thread touches.
void ZMeterBay::AnswerClipReset() noexcept
{
    if (mClipReset->GetDiscrete() != kResetMe)
        return;
    for (const Channel& channel : mChannels) {
        channel.clips->ClearClips();
        channel.clipCount->SetZFloat(0.0f, false);
    }
    mClipReset->SetDiscrete(kResetComplete, false);
}

}  // namespace orvane
