// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/pitch/KestruneEngineSettings.h"
#include "zlib/common/elements/ZElement.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvane
{

/// The elements of the pitch bay, its parameters and displays, and their translation to engine
/// settings. An element keeps any value that was stored in it; the translation replaces values that
/// the engine could not work with.
///
/// Values are read and written on [any thread], samples copied on [any thread but the audio
/// thread]. All other functions are called under the interface lock.
class KestruneElements
{
public:
    /// The order of the bay's elements, and so of archives and of host parameters.
    enum Index : std::size_t
    {
        kPitchShift,
        kFormantShift,
        kPitchCorrectionOnOff,
        kCurrentScaleModified,
        kTransposeOnOff,
        kKey,
        kScale,
        kBuiltInNames,
        kCustomNames,
        kIntonation,
        kSourceType,
        kDetune,
        kPitchCorrectionTime,
        kPitchReference,
        kCorrectionMeter,
        kInputPitch,
        kOutputPitch,
        kIgnoredNotes,
        kNotesInScale,
        kCurrentCustomScale,
        kCustomScaleTones,
        kCurrentScaleIndex,
        kElementCount
    };
    using List = std::array<boost::shared_ptr<ZElement>, kElementCount>;

    /// Makes the elements; looper delivers their notifications and may be null. [setup]
    explicit KestruneElements(ZLooper* looper);

    [[nodiscard]] ZElement& operator[](Index index) const noexcept { return *mElements[index]; }
    [[nodiscard]] const List& GetList() const { return mElements; }
    /// The element with this id, the field "elementid" of messages; none if it is not one of these.
    [[nodiscard]] std::optional<Index> Find(std::uint64_t elementId) const;

    /// Adds the observer to every element whose changes matter to the bay; RemoveObserver removes
    /// it from all.
    void AddObserver(ZHandler* observer);
    void RemoveObserver(const ZHandler* observer);

    /// Sets parameters and displays to their defaults, with notification. Scale names, custom
    /// scales and edited notes stay; the notification of `scale` updates the notes.
    void SetDefaults();
    /// Sets the displays to their defaults. [audio thread]
    void ResetDisplays();
    /// Sets the displays to what the engine measured, in cents and Hz. [audio thread]
    void ShowMeasured(float correctionCents, float inputHz, float outputHz);
    /// Sets the displays to 0, without notification of those that are 0 already. [audio thread]
    void ClearDisplays();

    /// Updates the setting that follows from one element. Returns false if none does; the tones
    /// follow from several elements, which the bay combines.
    bool ReadSetting(Index index, KestruneEngineSettings& settings) const;
    /// The settings that follow from all elements, without the tones.
    [[nodiscard]] KestruneEngineSettings ReadSettings() const;

    /// Number of custom scales that have a name.
    [[nodiscard]] int NamedScaleCount() const;
    /// The value of `scale` that a preset restored into `currentScaleIndex`; any integer.
    [[nodiscard]] std::int32_t ArchivedScale() const;

    /// Copies the samples of a buffer element; other threads may be writing them.
    [[nodiscard]] std::vector<float> CopySamples(Index index) const;
    /// Stores samples without notification, as many as fit the element.
    void StoreSamples(Index index, std::span<const float> samples) const;

private:
    [[nodiscard]] bool IsOn(Index index) const;
    [[nodiscard]] float Octaves(Index index) const;
    [[nodiscard]] float CorrectionTimeMs() const;
    [[nodiscard]] float ReferenceHz() const;
    [[nodiscard]] std::int16_t PitchReference() const;
    void SetDefault(Index index);

    List mElements;
};

}  // namespace orvane
