// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneDocument.h"

#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/KestruneTracking.h"
#include "kestrune/common/engine/KestruneTransposition.h"
#include "kestrune/common/pitch/KestruneMessages.h"
#include "kestrune/common/pitch/KestruneNameScaleDialog.h"
#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "kestrune/common/pitch/ZPsolaBay.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <atomic>
#include <cassert>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

struct Labels
{
    const char* full;
    const char* medium;
    const char* abbreviated;
};

boost::shared_ptr<ZElement> makeChoice(const char* name, const Labels& labels,
                                       std::span<const std::string_view> choices,
                                       std::int32_t defaultChoice, ZLooper* looper)
{
    auto element = boost::make_shared<ZElement>(name, ZElement::ZDISCRETE, looper);
    element->SetLabel(ZElement::kFullLabel, labels.full);
    element->SetLabel(ZElement::kMediumLabel, labels.medium);
    element->SetLabel(ZElement::kShortLabel, labels.abbreviated);
    for (const std::string_view choice : choices)
        element->AddDiscreteValue(ZString(choice));
    element->SetDiscrete(defaultChoice, true);
    element->SetDiscreteDefault(defaultChoice);
    element->SetArchivable(true);
    element->SetExposed(true);
    return element;
}

/// Sets a value that follows from another element, and notifies its observers in the same run of
/// the message queue, so that a choice reaches the engine within one tick.
void store(ZElement& element, float value)
{
    element.SetZFloat(value, false);
    element.FlushMark(nullptr);
}

/// The degree of the scale for a MIDI note, 0 for the root; none if key is out of range.
std::optional<std::int32_t> degreeOf(std::uint8_t note, std::int32_t key)
{
    constexpr std::int32_t kKeyOfC = 3;  // keys count from A, MIDI notes from C
    if (key < 0 || key >= kDegrees)
        return std::nullopt;
    return (note % kDegrees + kKeyOfC - key + kDegrees) % kDegrees;
}

/// Toggles a flag by compare-and-exchange, so that no change by another thread is lost.
void switchFlag(float& flag)
{
    const std::atomic_ref<float> shared(flag);
    float before = shared.load(std::memory_order_relaxed);
    while (!shared.compare_exchange_weak(before, before == 1.0f ? 0.0f : 1.0f,
                                         std::memory_order_relaxed))
    {
    }
}

std::vector<std::int32_t> degreesIn(ZElement& notes)
{
    ZBuffer& buffer = *notes.GetZBuffer();
    std::vector<float> flags;
    for (std::uint32_t i = 0; i < buffer.Length(); ++i)
        flags.push_back(std::atomic_ref(buffer.Data()[i]).load(std::memory_order_relaxed));
    return degreesOf(flags);
}

/// Asks for a name until the user enters one; none if the user cancels.
std::optional<ZString> askForName(ZApplication* application, const ZString& editedScale)
{
    KestruneNameScaleDialog dialog(application, "SaveCustomScale", editedScale);
    while (dialog.Run())
        if (!dialog.GetName().IsEmpty())
            return dialog.GetName();
    return std::nullopt;
}

}  // namespace

KestruneDocument::KestruneDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                   ZApplication* application)
    : ZAudioDocument(xml, application)
    , ZPluginPresetsAudioDocument(xml, application)
    , mNotesInScale(FindElement("notesInScale"))
    , mKey(FindElement("key"))
    , mScale(FindElement("scale"))
    , mPitchShift(FindElement("PitchShift"))
    , mFormantShift(FindElement("FormantShift"))
    , mTransposeOnOff(FindElement("transposeOnOff"))
    , mAcceptMIDI(FindElement("AcceptMIDI"))
{
    MakeChoices(application);
    for (const auto& element : {mAcceptMIDI, mKey, mPitchTranspose, mFormantTranspose, mPitchShift,
                                mFormantShift, mTracking})
        if (element)
            element->AddObserver(this);
}

// The host's list of parameters may keep elements alive longer than the document.
KestruneDocument::~KestruneDocument()
{
    for (const auto& element : {mAcceptMIDI, mKey, mPitchTranspose, mFormantTranspose, mPitchShift,
                                mFormantShift, mTracking})
        if (element)
            element->RemoveObserver(this);
}

bool KestruneDocument::FollowsParameter(std::uint64_t elementId) const
{
    return elementId == elementIdOf(mPitchShift.get()) ||
           elementId == elementIdOf(mFormantShift.get());
}

void KestruneDocument::MakeChoices(ZApplication* application)
{
    mPitchTranspose = makeChoice("pitchTranspose", {"Pitch Transposition", "Ptch Tns", "PtTs"},
                                 kPitchTransposeNames, kNoPitchTranspose, application);
    mFormantTranspose =
        makeChoice("formantTranspose", {"Formant Transposition", "Frmt Tns", "Ftps"},
                   kFormantTransposeNames, kNaturalFormants, application);
    AddSubElement(mPitchTranspose);
    AddSubElement(mFormantTranspose);
    mTracking = makeChoice("tracking", {"Tracking", "Tracking", "Trck"}, kTrackingNames,
                           static_cast<std::int32_t>(KestruneTracking::kClassic), application);
    mTracking->SetExposed(false);
    mTracking->SetArchivedAtDefault(false);
    AddSubElement(mTracking);
}

bool KestruneDocument::IsKindOf(std::string_view className) const
{
    return className == "KestruneDocumentClass" || ZPluginPresetsAudioDocument::IsKindOf(className);
}

const char* KestruneDocument::GetClassName() const
{
    return "KestruneDocumentClass";
}

void KestruneDocument::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZMIDINOTEON:
        return HandleNoteOn(*message);
    case ZMIDINOTEOFF:
        return;
    case ZPRESETLOADBEGIN:
        mLoad = Restored{};
        break;
    case ZPRESETLOADEND:
        LoadEnded();
        break;
    case ZSETDEFAULTS:
        SetChoicesToDefaults();
        break;
    case KESTRUNECUSTOMSCALEDONE:
        return SaveCustomScale();
    case KESTRUNECUSTOMSCALECANCEL:
        return CancelCustomScale();
    default:
        break;
    }
    ZPluginPresetsAudioDocument::HandleZMessage(std::move(message));
}

// Transposition.

void KestruneDocument::ElementChanged(std::uint64_t elementId)
{
    const auto is = [elementId](const auto& element) {
        return element && elementId == elementIdOf(element.get());
    };
    const bool isChoice = is(mPitchTranspose) || is(mFormantTranspose);
    if (mLoad) {
        mLoad->pitchTranspose |= is(mPitchTranspose);
        mLoad->formantTranspose |= is(mFormantTranspose);
        mLoad->pitchShift |= is(mPitchShift);
        mLoad->formantShift |= is(mFormantShift);
        mLoad->tracking |= is(mTracking);
    } else if (isChoice) {
        ShiftPitchByChoice();
        ShiftFormantsByChoice();
    }
    if (is(mTracking))
        ApplyTracking();
    ZPluginPresetsAudioDocument::ElementChanged(elementId);
}

void KestruneDocument::LoadEnded()
{
    const Restored restored = mLoad.value_or(Restored{});
    mLoad.reset();
    // What does not hold the tracking was saved with the default: this is the one element whose
    // absence says something, or a project would sound by what stood before it was opened.
    if (!restored.tracking && mTracking->GetDiscrete() != mTracking->GetDiscreteDefault()) {
        mTracking->SetDiscrete(mTracking->GetDiscreteDefault(), false);
        mTracking->FlushMark(nullptr);
    }
    const bool pitchFollows = restored.pitchTranspose && !restored.pitchShift;
    if (pitchFollows)
        ShiftPitchByChoice();
    if ((pitchFollows || restored.formantTranspose) && !restored.formantShift)
        ShiftFormantsByChoice();
}

void KestruneDocument::ShiftPitchByChoice()
{
    if (mPitchShift)
        store(*mPitchShift, pitchShiftCents(mPitchTranspose->GetDiscrete()));
}

void KestruneDocument::ShiftFormantsByChoice()
{
    if (mPitchShift && mFormantShift)
        store(*mFormantShift,
              formantShiftCents(mFormantTranspose->GetDiscrete(), mPitchShift->GetZFloat()));
}

float KestruneDocument::ShiftOf(const ZElement& choice, std::int32_t index) const
{
    return &choice == mPitchTranspose.get() ? pitchShiftCents(index)
                                            : formantShiftCents(index, mPitchShift->GetZFloat());
}

boost::shared_ptr<ZElement> KestruneDocument::GetShift(const ZElement& choice) const
{
    if (!mPitchShift || !mFormantShift)
        return nullptr;
    return &choice == mPitchTranspose.get()     ? mPitchShift
           : &choice == mFormantTranspose.get() ? mFormantShift
                                                : nullptr;
}

std::optional<std::int32_t> KestruneDocument::FindChoice(const ZElement& choice, float cents) const
{
    assert(GetShift(choice));
    for (std::int32_t i = 0; i < choice.CountDiscreteValues(); ++i)
        if (ShiftOf(choice, i) == cents)
            return i;
    return std::nullopt;
}

void KestruneDocument::EnterShift(const ZElement& choice, float cents)
{
    const auto shift = GetShift(choice);
    assert(shift && cents >= shift->Min() && cents <= shift->Max());
    const bool formantsFollow =
        shift == mPitchShift &&
        mFormantShift->GetZFloat() == ShiftOf(*mFormantTranspose, mFormantTranspose->GetDiscrete());
    store(*shift, cents);
    if (formantsFollow)
        ShiftFormantsByChoice();
    MarkStateChanged();
}

// The bay resets the shifts, so the choices must be reset too, or the window would show shifts that
// are not in force.
void KestruneDocument::SetChoicesToDefaults()
{
    for (const auto& choice : {mPitchTranspose, mFormantTranspose, mTracking})
        choice->SetDiscrete(choice->GetDiscreteDefault(), false);
}

boost::shared_ptr<ZPsolaBay> KestruneDocument::PitchBay() const
{
    const auto network = GetOutputNetwork();
    return boost::dynamic_pointer_cast<ZPsolaBay>(network ? network->FindBay("PsolaBay") : nullptr);
}

void KestruneDocument::ApplyTracking()
{
    if (const auto bay = PitchBay())
        bay->SetTracking(trackingOf(mTracking->GetDiscrete()));
}

// MIDI notes come on the audio thread; the bay is notified of the change at the next tick.

void KestruneDocument::HandleNoteOn(const ZMessage& message)
{
    constexpr std::int32_t kListen = 1;
    std::uint8_t note = 0;
    if (!mAcceptMIDI || !mKey || !mNotesInScale || mAcceptMIDI->GetDiscrete() != kListen ||
        !message.Find<std::uint8_t>("Which", note))
        return;
    if (const auto degree = degreeOf(note, mKey->GetDiscrete()); degree && *degree > 0)
        SwitchDegree(*degree);
}

void KestruneDocument::SwitchDegree(std::int32_t degree)
{
    assert(degree > 0 && degree < kDegrees);
    ZBuffer& notes = *mNotesInScale->GetZBuffer();
    if (static_cast<std::uint32_t>(degree) >= notes.Length())
        return;
    switchFlag(notes.Data()[degree]);
    mNotesInScale->SetZBuffer(notes, false);
}

// Custom scales.

void KestruneDocument::CancelCustomScale()
{
    // The notification makes the bay show the notes of the scale again.
    if (mScale)
        mScale->SetDiscrete(mScale->GetDiscrete(), false);
}

void KestruneDocument::SaveCustomScale()
{
    const auto bay = PitchBay();
    if (!bay || !mNotesInScale || !mScale)
        return;
    const std::vector<std::int32_t> degrees = degreesIn(*mNotesInScale);
    const auto name = askForName(GetApp(), *mScale->GetDiscreteString(mScale->GetDiscrete()));
    if (!name)
        return;
    bay->AddCustomScale(*name, degrees);
    mScale->SetDiscrete(mScale->CountDiscreteValues() - 1, false);
}

}  // namespace orvane
