// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane
{

class ZPsolaBay;

/// The product's document. It translates the user's choices to elements of the pitch bay: a choice
/// of transposition becomes shifts in cents, a MIDI note switches a note of the scale, and edited
/// notes become a custom scale with a name. [interface thread] unless stated otherwise.
///
/// A preset holds both the choices and the shifts, and the shifts may differ from what the choices
/// stand for: a load that holds both restores both. If it holds a choice without its shift, the
/// shift follows the choice at the end of the load.
///
/// `tracking` chooses how the engine follows the voice. It is no parameter of the host and is saved
/// only while it is not "Classic", so that projects which do not use it stay the same text.
class KestruneDocument : public ZPluginPresetsAudioDocument
{
public:
    /// Reads xml as ZPluginPresetsAudioDocument does, then makes `pitchTranspose`,
    /// `formantTranspose` and `tracking`. [setup]
    KestruneDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~KestruneDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZMIDINOTEON switches a note of the scale; it may come on the [audio thread]. ZSETDEFAULTS
    /// resets the choices too. KESTRUNECUSTOMSCALEDONE calls SaveCustomScale,
    /// KESTRUNECUSTOMSCALECANCEL restores the notes of the chosen scale. All other messages go to
    /// ZPluginPresetsAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void ElementChanged(std::uint64_t elementId) override;
    using ZPluginPresetsAudioDocument::ElementChanged;

    /// Asks the user for a name, adds the edited notes as a custom scale of that name, and chooses
    /// it. Does nothing if there is no pitch bay or the user cancels. Returns when the user has
    /// answered.
    virtual void SaveCustomScale();
    /// Returns the element of the shift in cents that a choice of transposition sets; null for any
    /// other element.
    [[nodiscard]] boost::shared_ptr<ZElement> GetShift(const ZElement& choice) const;
    /// Returns the choice of a transposition that stands for a shift now; nothing when none does.
    [[nodiscard]] std::optional<std::int32_t> FindChoice(const ZElement& choice, float cents) const;
    /// Sets the shift of a choice of transposition to any value in cents and leaves the choice as
    /// it is. Formants that are what their choice says follow the pitch as after a choice. The host
    /// is told that the state has changed, since the shifts are no parameters.
    void EnterShift(const ZElement& choice, float cents);
    /// True for the shifts, which follow the choices of transposition.
    [[nodiscard]] bool FollowsParameter(std::uint64_t elementId) const override;

private:
    void MakeChoices(ZApplication* application);
    void HandleNoteOn(const ZMessage& message);
    void SwitchDegree(std::int32_t degree);
    void SetChoicesToDefaults();
    void ShiftPitchByChoice();
    void ShiftFormantsByChoice();
    [[nodiscard]] float ShiftOf(const ZElement& choice, std::int32_t index) const;
    void LoadEnded();
    void ApplyTracking();
    [[nodiscard]] boost::shared_ptr<ZPsolaBay> PitchBay() const;
    void CancelCustomScale();

    // Null if neither the description nor the bay has such an element.
    boost::shared_ptr<ZElement> mNotesInScale;
    boost::shared_ptr<ZElement> mKey;
    boost::shared_ptr<ZElement> mScale;
    boost::shared_ptr<ZElement> mPitchTranspose;
    boost::shared_ptr<ZElement> mFormantTranspose;
    boost::shared_ptr<ZElement> mTracking;
    boost::shared_ptr<ZElement> mPitchShift;
    boost::shared_ptr<ZElement> mFormantShift;
    boost::shared_ptr<ZElement> mTransposeOnOff;
    boost::shared_ptr<ZElement> mAcceptMIDI;
    /// The elements that a load has restored so far.
    struct Restored
    {
        bool pitchTranspose = false;
        bool formantTranspose = false;
        bool pitchShift = false;
        bool formantShift = false;
        bool tracking = false;
    };
    std::optional<Restored> mLoad;  // from ZPRESETLOADBEGIN to ZPRESETLOADEND
};

}  // namespace orvane
