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

/// The parameters and displays of the pitch bay, and what the engine is to be told of them. An
/// element keeps whatever was stored in it; values that would break the engine stop here.
///
/// Reading and writing values: [any thread], copies of samples: [any but audio thread]. All else
/// holds the interface lock.
class KestruneElements
{
public:
    /// In the order of the bay's list, which is that of archives and of the host's parameters.
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

    /// Makes the elements; the looper may be null.
    explicit KestruneElements(ZLooper* looper);

    [[nodiscard]] ZElement& operator[](Index index) const noexcept { return *mElements[index]; }
    [[nodiscard]] const List& GetList() const { return mElements; }
    /// The element that a message names by its "elementid"; nothing for any other number.
    [[nodiscard]] std::optional<Index> Find(std::uint64_t elementId) const;

    /// Enters the observer with every element whose changes concern the bay, and takes it off.
    void AddObserver(ZHandler* observer);
    void RemoveObserver(const ZHandler* observer);

    /// Gives the parameters and displays their defaults, with notification. Scale names, custom
    /// scales and edited notes stay: the notice of `scale` brings the notes back in step.
    void SetDefaults();
    /// The displays show their defaults. [audio thread]
    void ResetDisplays();
    /// What the engine has measured, in cents and Hz. [audio thread]
    void ShowMeasured(float correctionCents, float inputHz, float outputHz);
    /// The displays show 0; those that do so already are not notified again. [audio thread]
    void ShowNothing();

    /// Takes over what the element says to the engine; false when it says nothing by itself, as
    /// those of scales do.
    bool ReadSetting(Index index, KestruneEngineSettings& settings) const;
    /// What all elements say, but for the tones.
    [[nodiscard]] KestruneEngineSettings ReadSettings() const;

    /// Custom scales that have a name.
    [[nodiscard]] int NamedScaleCount() const;
    /// The archived value of `scale`, which any preset may have written.
    [[nodiscard]] std::int32_t ArchivedScale() const;

    /// A copy of a buffer element's samples, which other threads may be writing.
    [[nodiscard]] std::vector<float> CopySamples(Index index) const;
    /// Stores as many samples as both have, without notification.
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
