// SPDX-License-Identifier: GPL-3.0-or-later
// Scales of the pitch bay: the table, its elements, and the effects of their changes.
//
// Either a scale chosen by name or the edited notes are in force; `currentScaleModified` tells
// which. Before Prepare a change is only copied between elements; table, names and engine settings
// change once there is an engine.

#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/pitch/ZPsolaBay.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <vector>

namespace orvane
{

namespace
{

/// Number of custom scales before the one that fills the archive.
constexpr int kNamesBeforeTheLast = KestruneScaleTable::kCustomRows - 1;

void showArchiveIsFull()
{
    ZMessageBox::Show(
        ZMessageBox::kWarning, ZString(productName()),
        ZString("You have added the maximum number of custom scales that may be saved in a preset "
                "(or session).\n\n"
                "You may continue to add custom scales in this session, but additional ones will "
                "not be saved in preset files."));
}

}  // namespace

void ZPsolaBay::BuildScaleTable()
{
    mScaleTable.AddBuiltInScales();
}

void ZPsolaBay::ApplyScale(int scaleIndex, int intonationIndex)
{
    if (scaleIndex < 0) {
        const auto degrees = degreesOf(mElements.CopySamples(KestruneElements::kNotesInScale));
        mSettings.tones = tonesOf(degrees, intonationIndex);
    } else {
        const auto degrees = mScaleTable.Degrees(scaleIndex);
        ShowNotes(degrees);
        mSettings.tones = tonesOf(degrees, intonationIndex);
    }
    PostSettings();
}

void ZPsolaBay::ShowNotes(std::span<const std::int32_t> degrees)
{
    std::array<float, kDegrees> flags;
    flagDegrees(flags, degrees);
    mElements.StoreSamples(KestruneElements::kNotesInScale, flags);
    NotifyOthers(KestruneElements::kNotesInScale);
}

void ZPsolaBay::NotifyOthers(KestruneElements::Index index)
{
    mElements[index].ElementChanged(this, false);
}

void ZPsolaBay::SetScaleModified(bool modified)
{
    mElements[KestruneElements::kCurrentScaleModified].SetDiscrete(modified ? 1 : 0, true);
    NotifyOthers(KestruneElements::kCurrentScaleModified);
}

void ZPsolaBay::ApplyChosenScale()
{
    if (mEngine)
        ApplyScale(mElements[KestruneElements::kScale].GetDiscrete(),
                   mElements[KestruneElements::kIntonation].GetDiscrete());
}

void ZPsolaBay::ApplyNotes()
{
    constexpr int kNotesInScale = -1;
    if (mEngine)
        ApplyScale(kNotesInScale, mElements[KestruneElements::kIntonation].GetDiscrete());
}

void ZPsolaBay::ScaleChosen()
{
    SetScaleModified(false);
    ApplyChosenScale();
}

void ZPsolaBay::NotesEdited()
{
    mElements.StoreSamples(KestruneElements::kCurrentCustomScale,
                           mElements.CopySamples(KestruneElements::kNotesInScale));
    SetScaleModified(true);
    ApplyNotes();
}

void ZPsolaBay::CustomScaleRestored()
{
    mElements.StoreSamples(KestruneElements::kNotesInScale,
                           mElements.CopySamples(KestruneElements::kCurrentCustomScale));
    NotifyOthers(KestruneElements::kNotesInScale);
    ApplyNotes();
}

void ZPsolaBay::ScaleIndexRestored()
{
    mElements[KestruneElements::kScale].SetDiscrete(mElements.ArchivedScale(), true);
    if (mElements[KestruneElements::kCurrentScaleModified].GetDiscrete() == 0)
        ApplyChosenScale();
}

void ZPsolaBay::AddCustomScale(const ZString& name, std::span<const std::int32_t> degrees)
{
    if (mElements.NamedScaleCount() == kNamesBeforeTheLast)
        showArchiveIsFull();
    // As an archive holds it, so that the list shows what will be saved.
    const ZString saved(withoutMarkup(name.ToNarrow()));
    mElements[KestruneElements::kScale].AddDiscreteValue(saved);
    mElements[KestruneElements::kCustomNames].AddDiscreteValue(saved);
    mScaleTable.Add(degrees);
}

void ZPsolaBay::RestoreCustomScales()
{
    mScaleTable.Unpack(mElements.CopySamples(KestruneElements::kCustomScaleTones),
                       mElements.NamedScaleCount());
}

void ZPsolaBay::RebuildScaleNames()
{
    ZElement& scale = mElements[KestruneElements::kScale];
    const std::int32_t value = scale.GetDiscrete();
    const std::int32_t defaultValue = scale.GetDiscreteDefault();
    std::vector<ZString> names;
    for (const auto index : {KestruneElements::kBuiltInNames, KestruneElements::kCustomNames})
        for (std::int32_t i = 0; i < mElements[index].CountDiscreteValues(); ++i)
            names.push_back(*mElements[index].GetDiscreteString(i));
    // At once: every menu that shows the list is filled anew when it changes.
    scale.ReplaceDiscreteValues(names);
    // The new list has clamped both.
    scale.SetDiscrete(value, true);
    scale.SetDiscreteDefault(defaultValue);
}

void ZPsolaBay::PackCustomScales() const
{
    const std::int32_t scale = mElements[KestruneElements::kScale].GetDiscrete();
    mElements[KestruneElements::kCurrentScaleIndex].SetZFloat(static_cast<float>(scale), true);
    std::vector<float> archive = mElements.CopySamples(KestruneElements::kCustomScaleTones);
    mScaleTable.Pack(archive, mElements.NamedScaleCount());
    mElements.StoreSamples(KestruneElements::kCustomScaleTones, archive);
}

}  // namespace orvane
