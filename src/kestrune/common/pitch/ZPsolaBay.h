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
class ZBuffer;
class ZDelayBuffer;
class ZString;

/// The bay that runs the pitch engine. It holds the engine's parameters as elements, runs the
/// engine on blocks of 11.6 ms whatever the host's block size, and shows what the engine measures.
///
/// With correction and transposition off the output is dry: the input, bit for bit, delayed by the
/// engine's latency; the engine does not run. A change between the engine and the dry path has no
/// fade: for one latency, counted in whole blocks, the old path stays on the output while the new
/// one takes in sound; then the output changes. A change back within that time only keeps the path
/// that is on the output. The delay line is fed at all times. With the fine tracking the output
/// fades over 10 ms from that moment on, since its engine puts out the input as it is where nothing
/// is to be changed, so that the two paths are alike.
///
/// Elements are set on any thread. Their notifications come to HandleZMessage, which collects the
/// settings for the engine; ProcessBlock applies them between blocks. All functions but
/// ProcessBlock and Reset are called under the interface lock; those marked [setup] never run at
/// the same time as a pass of the host's audio thread.
class ZPsolaBay : public ZBlockProcessingBay
{
public:
    /// The attribute numchannels gives one or two channels. The engine is made by Prepare. Throws
    /// as ZBlockProcessingBay. [setup]
    ZPsolaBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZPsolaBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Packs the custom scales into their element before it writes the elements.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// ZELEMENTCHANGED applies the new value of an element.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// The clone has the scales of this bay, and elements with their initial values.
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    /// Throws ZException kOutOfMemory if memory is short. If the engine does not support the rate,
    /// the output stays dry and the latency unchanged. [setup]
    void SampleRateChanged() override;
    void SetDefaults() override;
    /// Makes a new engine and sets all elements to their defaults. Returns false if there can be no
    /// engine; the input then passes unchanged. Throws ZException kOutOfMemory if memory for the
    /// delay lines is short. [setup]
    bool Prepare() override;
    /// Resets the displays; the next pass clears the sound in engine and delay lines. Neither
    /// allocates nor waits. [any thread]
    void Reset() override;
    void ProcessBlock() noexcept override;
    void CatchUp(float share) noexcept override;

    /// Appends a custom scale; numbers outside 0 .. 11 are ignored. Characters of the name that an
    /// archive cannot hold are replaced. Tells the user in a message box when the archive is full
    /// and further scales will not be saved.
    virtual void AddCustomScale(const ZString& name, std::span<const std::int32_t> degrees);
    /// Fills the empty scale table with the built-in scales.
    virtual void BuildScaleTable();
    /// Sets the engine's tones from a scale and shows its notes in `notesInScale`. An index beyond
    /// the table counts as 0; a negative index means the notes that `notesInScale` holds.
    virtual void ApplyScale(int scaleIndex, int intonationIndex);
    /// Sets the range of the pitch detection; sourceType is a value of the element `sourceType`.
    virtual void SetPitchRange(int sourceType);
    /// Sets how the engine follows the voice.
    void SetTracking(KestruneTracking tracking);

    /// Rebuilds the custom scales from `customScaleTones`, as many as have names.
    void RestoreCustomScales();
    /// Rebuilds the choices of `scale`: the built-in names, then the custom ones. The value of
    /// `scale` stays, even if there are fewer choices now.
    void RebuildScaleNames();
    /// Writes `currentScaleIndex` and `customScaleTones` without notification.
    void PackCustomScales() const;

protected:
    void ClearSound() noexcept override;

private:
    [[nodiscard]] std::int32_t BlockAtRate() const;
    void UpdateLatency(const PsolaClass& engine);
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
    /// Notifies all observers of an element except this bay.
    void NotifyOthers(KestruneElements::Index index);
    void ShowNotes(std::span<const std::int32_t> degrees);

    void UpdatePath(bool isWet) noexcept;
    void RunEngine() noexcept;
    void FeedDelay() noexcept;
    void ReadDelay() noexcept;
    void FadeBetweenPaths() noexcept;

    // Used by ProcessBlock and by functions marked [setup] only.
    bool mIsWet = false;              // the engine is wanted on the output
    bool mIsEngineHeard = false;      // the engine is on the output; follows mIsWet
    std::int32_t mChangeCount = 0;    // samples that both paths have taken in since mIsWet changed
    std::int32_t mEngineLatency = 0;  // samples that both paths add to the latency of the block
    bool mEngineRuns = false;         // the engine exists and is initialised
    std::unique_ptr<PsolaClass> mEngine;
    std::array<std::unique_ptr<ZDelayBuffer>, kMaxBlockChannels> mDelay;
    std::unique_ptr<ZBuffer> mDryBlock;  // one channel of one block, for the fade

    KestruneElements mElements;
    KestruneScaleTable mScaleTable;
    KestruneEngineSettings mSettings;  // posted last
    KestruneEngineControl mControl;
};

}  // namespace orvane
