// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneEngineControl.h"

#include "kestrune/common/engine/PsolaClass.h"

#include <cassert>

namespace orvane
{

namespace
{

using Settings = KestruneEngineSettings;

/// Applies every setting for whose field isNew returns true.
template <class IsNew>
void apply(PsolaClass& engine, const Settings& settings, const IsNew& isNew) noexcept
{
    if (isNew(&Settings::pitchShiftOctaves))
        engine.SetPitchShift(settings.pitchShiftOctaves);
    if (isNew(&Settings::formantShiftOctaves))
        engine.SetFormantShift(settings.formantShiftOctaves);
    if (isNew(&Settings::correctionTimeMs))
        engine.SetCorrectionTime(settings.correctionTimeMs);
    if (isNew(&Settings::referenceHz))
        engine.SetReferenceFrequency(settings.referenceHz);
    assert(settings.tones.count >= 0);
    assert(static_cast<std::size_t>(settings.tones.count) <= settings.tones.values.size());
    if (isNew(&Settings::tones))
        engine.SetScaleTones(settings.tones.values.data(), settings.tones.count);
    if (isNew(&Settings::ignoredNotes))
        engine.SetIgnoredNotes(settings.ignoredNotes);
    if (isNew(&Settings::range))
        engine.SetFrequencyRange(settings.range.lowHz, settings.range.highHz);
    if (isNew(&Settings::pitchReference))
        engine.SetPitchReference(settings.pitchReference);
    if (isNew(&Settings::tracking))
        engine.SetTracking(settings.tracking);
    if (isNew(&Settings::transposeOn))
        engine.SetTransposeEnabled(settings.transposeOn);
    if (isNew(&Settings::correctionSwitches))
        engine.SetCorrectionEnabled(settings.correctionOn);
}

}  // namespace

void KestruneEngineControl::ApplyAll(PsolaClass& engine) noexcept
{
    if (const Settings* const newest = mMailbox.TakeNewest())
        mInForce = *newest;
    apply(engine, mInForce, [](auto) { return true; });
}

void KestruneEngineControl::ApplyChanges(PsolaClass& engine) noexcept
{
    const Settings* const newest = mMailbox.TakeNewest();
    if (!newest)
        return;
    apply(engine, *newest, [&](auto field) { return newest->*field != mInForce.*field; });
    mInForce = *newest;
}

}  // namespace orvane
