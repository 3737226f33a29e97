// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/pitch/KestruneElements.h"
#include "kestrune/common/pitch/KestruneEngineControl.h"
#include "kestrune/common/pitch/KestruneEngineSettings.h"
#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "zlib/common/signals/ZBlockProcessingBay.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

class PsolaClass;
class ZDelayBuffer;
class ZString;

/// The pitch engine as a bay: it carries the engine's parameters as elements, runs the engine on
/// fixed blocks of 11.6 ms whatever the host's blocks are, and shows what the engine measures.
///
/// With neither correction nor transposition on, the voice passes a delay line of the engine's
/// latency, bit by bit, and the engine rests. A change goes from one path to the other without a
/// fade: for one latency, counted in whole blocks, both run and the old one stays on the air.
///
/// Elements are set on any thread. Their notices come to HandleZMessage, which gathers settings;
/// ProcessBlock takes these over between blocks. All but ProcessBlock and Reset holds the interface
/// lock; what is marked [setup] never overlaps a pass.
class ZPsolaBay : public ZBlockProcessingBay
{
public:
    /// One or two channels, by numchannels; no engine before Prepare. Throws as its base. [setup]
    ZPsolaBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZPsolaBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Packs the custom scales into their element first.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Lets the change of an element take effect.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// With the scales of this bay and elements of its own, which are as new.
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    /// Throws ZException 2 when there is no memory. When the engine does not take the rate, the bay
    /// stays dry and keeps its latency. [setup]
    void SampleRateChanged() override;
    void SetDefaults() override;
    /// A new engine; all elements at their defaults. False when there can be no engine; the voice
    /// then passes by itself. Throws ZException 2 when there is no memory for the rest. [setup]
    bool Prepare() override;
    /// Forgets all sound. Some hosts suspend on the audio thread: of its own it neither allocates
    /// nor waits. [setup]
    void Reset() override;
    void ProcessBlock() noexcept override;

    /// Adds a scale of the user behind the others; it is saved as long as the archive has room,
    /// and the user hears when it is full. Numbers that are no degrees of 0 .. 11 are left out.
    virtual void AddCustomScale(const ZString& name, std::span<const std::int32_t> degrees);
    /// Fills the empty table with the built-in scales.
    virtual void BuildScaleTable();
    /// Puts a scale in force, and shows its notes in `notesInScale`. An index that is not there
    /// counts as 0; a negative scale is the one that `notesInScale` holds.
    virtual void ApplyScale(int scaleIndex, int intonationIndex);
    /// Range of voices, a value of `sourceType`.
    virtual void SetPitchRange(int sourceType);

    /// Rebuilds the custom scales from `customScaleTones`, as far as they have names.
    void RestoreCustomScales();
    /// Makes the choices of `scale` anew: the built-in names, then the custom ones.
    void RebuildScaleNames();
    /// Writes `currentScaleIndex` and `customScaleTones`, silently.
    void PackCustomScales() const;

private:
    [[nodiscard]] std::int32_t BlockAtRate() const;
    void TakeLatency(const PsolaClass& engine);
    void MakeDelayLines();
    void PostSettings();

    void ElementChanged(KestruneElements::Index index);
    void ScaleChosen();
    void NotesEdited();
    void CustomScaleRestored();
    void ScaleIndexRestored();
    void ApplyChosenScale();
    void ApplyNotes();
    void SetScaleModified(bool modified);
    /// Tells all observers but this bay.
    void NotifyOthers(KestruneElements::Index index);
    void ShowNotes(std::span<const std::int32_t> degrees);

    void TakeState(bool isWet) noexcept;
    void RunEngine() noexcept;
    void RunDelay() noexcept;

    // The pass's own, but for [setup].
    bool mIsWet = false;
    std::int32_t mChangeCount = 0;    // samples since the last change of state
    std::int32_t mEngineLatency = 0;  // samples that engine and dry path add to the block
    bool mEngineRuns = false;         // the engine is there and has its memory
    std::unique_ptr<PsolaClass> mEngine;
    std::array<std::unique_ptr<ZDelayBuffer>, kMaxBlockChannels> mDelay;

    KestruneElements mElements;
    KestruneScaleTable mScaleTable;
    KestruneEngineSettings mSettings;  // as posted last
    KestruneEngineControl mControl;
};

}  // namespace orvane
