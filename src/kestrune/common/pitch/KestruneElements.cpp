// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneElements.h"

#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZMessage.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <string_view>

namespace orvane
{

namespace
{

constexpr float kCentsPerOctave = 1200.0f;

constexpr std::array<std::string_view, 2> kNoYes{"No", "Yes"};

/// Properties of an element. A null label is not set. min and max are the range of views, of a
/// buffer element that of its samples.
struct Definition
{
    const char* name;
    ZElement::Type type;
    const char* fullLabel = nullptr;
    const char* mediumLabel = nullptr;
    const char* shortLabel = nullptr;
    std::span<const std::string_view> choices{};
    float min = -1.0f;
    float max = 1.0f;
    ZElement::Units units = ZElement::kGeneric;
    std::uint32_t bufferLength = 0;
    float defaultValue = 0.0f;
    bool isSaved = true;
    bool isHostParameter = false;
    bool isObserved = true;
};

constexpr auto kDiscrete = ZElement::ZDISCRETE;
constexpr auto kFloat = ZElement::ZFLOAT;
constexpr auto kBuffer = ZElement::ZBUFFER;

constexpr std::array<Definition, KestruneElements::kElementCount> kDefinitions{{
    {.name = "PitchShift",
     .type = kFloat,
     .fullLabel = "Pitch Shift",
     .shortLabel = "PiSh",
     .min = -kCentsPerOctave,
     .max = kCentsPerOctave,
     .units = ZElement::kCents},
    {.name = "FormantShift",
     .type = kFloat,
     .fullLabel = "Formant Shift",
     .shortLabel = "FiSh",
     .min = -kCentsPerOctave,
     .max = kCentsPerOctave,
     .units = ZElement::kCents},
    {.name = "pitchCorrectionOnOff",
     .type = kDiscrete,
     .fullLabel = "Correct Pitch",
     .mediumLabel = "CorrPitch",
     .shortLabel = "CrPi",
     .choices = kOnOffNames,
     .isHostParameter = true},
    {.name = "currentScaleModified", .type = kDiscrete, .choices = kNoYes, .isObserved = false},
    {.name = "transposeOnOff",
     .type = kDiscrete,
     .fullLabel = "Transpose",
     .shortLabel = "Tran",
     .choices = kOnOffNames,
     .isHostParameter = true},
    {.name = "key",
     .type = kDiscrete,
     .fullLabel = "Key",
     .choices = kKeyNames,
     .defaultValue = 3.0f,
     .isHostParameter = true},
    {.name = "scale",
     .type = kDiscrete,
     .choices = kBuiltInScaleNames,
     .defaultValue = 1.0f,
     .isSaved = false},
    {.name = "BuiltInScaleNames",
     .type = kDiscrete,
     .fullLabel = "Scale",
     .shortLabel = "Scal",
     .choices = kBuiltInScaleNames,
     .isSaved = false},
    {.name = "CustomScaleNames", .type = kDiscrete},
    {.name = "intonation",
     .type = kDiscrete,
     .fullLabel = "Tuning",
     .shortLabel = "Tune",
     .choices = kIntonationNames},
    {.name = "sourceType",
     .type = kDiscrete,
     .fullLabel = "Pitch Range",
     .mediumLabel = "PitchRan",
     .shortLabel = "PiRa",
     .choices = kSourceTypeNames,
     .isHostParameter = true},
    {.name = "detune",
     .type = kFloat,
     .fullLabel = "Detune",
     .shortLabel = "Detn",
     .min = -50.0f,
     .max = 50.0f,
     .units = ZElement::kCents},
    {.name = "pitchCorrectionTime",
     .type = kFloat,
     .fullLabel = "Pitch Correcton Time",
     .mediumLabel = "PitCorrTime",
     .shortLabel = "CrTm",
     .min = 0.0f,
     .max = 400.0f,
     .units = ZElement::kMilliseconds,
     .defaultValue = 50.0f,
     .isHostParameter = true},
    {.name = "pitchReference",
     .type = kDiscrete,
     .fullLabel = "Reference Source",
     .mediumLabel = "RefSource",
     .shortLabel = "RfSc",
     .choices = kPitchReferenceNames,
     .defaultValue = 2.0f},
    {.name = "correctionMeter",
     .type = kFloat,
     .min = -200.0f,
     .max = 200.0f,
     .units = ZElement::kCents,
     .isSaved = false},
    {.name = "inputPitch",
     .type = kFloat,
     .min = 100.0f,
     .max = 500.0f,
     .units = ZElement::kHertz,
     .defaultValue = 100.0f,
     .isSaved = false},
    {.name = "outputPitch",
     .type = kFloat,
     .min = 100.0f,
     .max = 500.0f,
     .units = ZElement::kHertz,
     .defaultValue = 100.0f,
     .isSaved = false},
    {.name = "ignoredNotes", .type = kBuffer, .min = 0.0f, .bufferLength = kDegrees},
    {.name = "notesInScale", .type = kBuffer, .bufferLength = kDegrees, .isSaved = false},
    {.name = "currentCustomScale", .type = kBuffer, .bufferLength = kDegrees},
    {.name = "customScaleTones",
     .type = kBuffer,
     .min = 0.0f,
     .bufferLength = KestruneScaleTable::kArchivedFlags},
    {.name = "currentScaleIndex", .type = kFloat, .defaultValue = 1.0f},
}};

/// The elements that SetDefaults sets, in the order of their notifications.
constexpr std::array kOrderOfDefaults{
    KestruneElements::kPitchShift,
    KestruneElements::kFormantShift,
    KestruneElements::kPitchCorrectionOnOff,
    KestruneElements::kTransposeOnOff,
    KestruneElements::kKey,
    KestruneElements::kDetune,
    KestruneElements::kScale,
    KestruneElements::kCurrentScaleIndex,
    KestruneElements::kIntonation,
    KestruneElements::kIgnoredNotes,
    KestruneElements::kSourceType,
    KestruneElements::kPitchCorrectionTime,
    KestruneElements::kPitchReference,
    KestruneElements::kCorrectionMeter,
    KestruneElements::kInputPitch,
    KestruneElements::kOutputPitch,
};

constexpr std::array kDisplays{KestruneElements::kCorrectionMeter, KestruneElements::kInputPitch,
                               KestruneElements::kOutputPitch};

void setLabels(ZElement& element, const Definition& definition)
{
    const auto set = [&element](ZElement::LabelKind kind, const char* text) {
        if (text)
            element.SetLabel(kind, ZString(text));
    };
    set(ZElement::kFullLabel, definition.fullLabel);
    set(ZElement::kMediumLabel, definition.mediumLabel);
    set(ZElement::kShortLabel, definition.shortLabel);
}

boost::shared_ptr<ZElement> makeElement(const Definition& definition, ZLooper* looper)
{
    auto element = boost::make_shared<ZElement>(definition.name, definition.type, looper,
                                                definition.bufferLength);
    setLabels(*element, definition);
    for (const std::string_view choice : definition.choices)
        element->AddDiscreteValue(ZString(choice));
    if (definition.type == kFloat)
        element->SetRange(definition.min, definition.max, true);
    if (definition.type == kBuffer)
        element->SetZBufferRange(definition.min, definition.max);
    element->SetUnits(definition.units);
    element->SetArchivable(definition.isSaved);
    element->SetExposed(definition.isHostParameter);
    // A notification of the initial values would clear the table of custom scales.
    element->ClearMarkedChanged();
    return element;
}

float valueOrIfNaN(float value, float replacement)
{
    return std::isnan(value) ? replacement : value;
}

}  // namespace

KestruneElements::KestruneElements(ZLooper* looper)
{
    for (std::size_t i = 0; i < kElementCount; ++i)
        mElements[i] = makeElement(kDefinitions[i], looper);
    mElements[kCustomNames]->SetArchiveDiscreteList(true);
}

std::optional<KestruneElements::Index> KestruneElements::Find(std::uint64_t elementId) const
{
    for (std::size_t i = 0; i < kElementCount; ++i)
        if (elementIdOf(mElements[i].get()) == elementId)
            return static_cast<Index>(i);
    return std::nullopt;
}

void KestruneElements::AddObserver(ZHandler* observer)
{
    for (std::size_t i = 0; i < kElementCount; ++i)
        if (kDefinitions[i].isObserved)
            mElements[i]->AddObserver(observer);
}

void KestruneElements::RemoveObserver(const ZHandler* observer)
{
    for (const auto& element : mElements)
        element->RemoveObserver(observer);
}

void KestruneElements::SetDefaults()
{
    for (const Index index : kOrderOfDefaults)
        SetDefault(index);
}

void KestruneElements::SetDefault(Index index)
{
    ZElement& element = *mElements[index];
    const float value = kDefinitions[index].defaultValue;
    switch (element.GetType()) {
    case kFloat:
        element.SetZFloat(value, false);
        element.SetZFloatDefault(value);
        return;
    case kDiscrete:
        element.SetDiscrete(static_cast<std::int32_t>(value), false);
        element.SetDiscreteDefault(static_cast<std::int32_t>(value));
        return;
    default:
        element.SetZBuffer(ZBuffer(kDefinitions[index].bufferLength, "ZBuffer"), false);
    }
}

void KestruneElements::ResetDisplays()
{
    for (const Index index : kDisplays)
        mElements[index]->SetZFloat(mElements[index]->GetZFloatDefault(), false);
}

void KestruneElements::ShowMeasured(float correctionCents, float inputHz, float outputHz)
{
    mElements[kCorrectionMeter]->SetZFloat(correctionCents, false);
    mElements[kInputPitch]->SetZFloat(inputHz, false);
    mElements[kOutputPitch]->SetZFloat(outputHz, false);
}

void KestruneElements::ClearDisplays()
{
    for (const Index index : kDisplays)
        if (mElements[index]->GetZFloat() != 0.0f)
            mElements[index]->SetZFloat(0.0f, false);
}

KestruneEngineSettings KestruneElements::ReadSettings() const
{
    KestruneEngineSettings settings;
    for (std::size_t i = 0; i < kElementCount; ++i)
        ReadSetting(static_cast<Index>(i), settings);
    return settings;
}

bool KestruneElements::ReadSetting(Index index, KestruneEngineSettings& settings) const
{
    switch (index) {
    case kPitchShift:
        settings.pitchShiftOctaves = Octaves(index);
        return true;
    case kFormantShift:
        settings.formantShiftOctaves = Octaves(index);
        return true;
    case kPitchCorrectionOnOff:
        settings.correctionOn = IsOn(index);
        ++settings.correctionSwitches;
        return true;
    case kTransposeOnOff:
        settings.transposeOn = IsOn(index);
        return true;
    case kKey:
    case kDetune:
        settings.referenceHz = ReferenceHz();
        return true;
    case kPitchCorrectionTime:
        settings.correctionTimeMs = CorrectionTimeMs();
        return true;
    case kSourceType:
        settings.range = sourceRange(mElements[index]->GetDiscrete());
        return true;
    case kPitchReference:
        settings.pitchReference = PitchReference();
        return true;
    case kIgnoredNotes:
        settings.ignoredNotes = mElements[index]->GetZBuffer();
        return true;
    default:
        return false;
    }
}

bool KestruneElements::IsOn(Index index) const
{
    return mElements[index]->GetDiscrete() != 0;
}

float KestruneElements::Octaves(Index index) const
{
    const float cents =
        valueOrIfNaN(mElements[index]->GetZFloat(), kDefinitions[index].defaultValue);
    return std::clamp(cents, -kCentsPerOctave, kCentsPerOctave) / kCentsPerOctave;
}

float KestruneElements::CorrectionTimeMs() const
{
    const float time = mElements[kPitchCorrectionTime]->GetZFloat();
    return std::max(valueOrIfNaN(time, kDefinitions[kPitchCorrectionTime].defaultValue), 0.0f);
}

float KestruneElements::ReferenceHz() const
{
    // The reference may lie in any octave, so the key is reduced to one octave.
    const std::int32_t key = mElements[kKey]->GetDiscrete() % kDegrees;
    const float detune = valueOrIfNaN(mElements[kDetune]->GetZFloat(), 0.0f);
    return referenceFrequency(key < 0 ? key + kDegrees : key,
                              std::clamp(detune, -kCentsPerOctave, kCentsPerOctave));
}

std::int16_t KestruneElements::PitchReference() const
{
    constexpr std::int32_t kBoth = 2;
    const std::int32_t reference = mElements[kPitchReference]->GetDiscrete();
    return static_cast<std::int16_t>(reference >= 0 && reference < kBoth ? reference : kBoth);
}

int KestruneElements::NamedScaleCount() const
{
    return mElements[kCustomNames]->CountDiscreteValues();
}

std::int32_t KestruneElements::ArchivedScale() const
{
    constexpr float kMost = 1e6f;  // larger than any list, and an int32 can hold it
    const float scale = valueOrIfNaN(mElements[kCurrentScaleIndex]->GetZFloat(), 0.0f);
    return static_cast<std::int32_t>(std::clamp(scale, -kMost, kMost));
}

std::vector<float> KestruneElements::CopySamples(Index index) const
{
    ZBuffer& buffer = *mElements[index]->GetZBuffer();
    std::vector<float> samples(buffer.Length());
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = std::atomic_ref(buffer.Data()[i]).load(std::memory_order_relaxed);
    return samples;
}

void KestruneElements::StoreSamples(Index index, std::span<const float> samples) const
{
    ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "ZBuffer");
    std::copy(samples.begin(), samples.end(), buffer.Data());
    mElements[index]->SetZBuffer(buffer, true);
}

}  // namespace orvane
