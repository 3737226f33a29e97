// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// The product's document. It ties what the user chooses to what the engine knows: transpositions
/// become shifts in cents, notes of MIDI switch the notes of the scale, and edited notes become a
/// custom scale with a name. [interface thread, but where it says otherwise]
///
/// A preset holds the choices and the shifts, and the shifts may be others than the choices mean:
/// while one is loaded, the shifts stay as they are restored.
class KestruneDocument : public ZPluginPresetsAudioDocument
{
public:
    /// As ZPluginPresetsAudioDocument; then makes `pitchTranspose` and `formantTranspose`. [setup]
    KestruneDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~KestruneDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZMIDINOTEON: switches a note of the scale [audio thread included]. ZSETDEFAULTS: the choices
    /// too. KESTRUNECUSTOMSCALEDONE: SaveCustomScale; KESTRUNECUSTOMSCALECANCEL: the chosen scale
    /// is put back. The rest as ZPluginPresetsAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void ElementChanged(std::uint64_t elementId) override;
    using ZPluginPresetsAudioDocument::ElementChanged;

    /// Makes a custom scale of the edited notes, under a name that the user is asked for, and
    /// chooses it. Nothing without a pitch bay, or when the user cancels. Waits for the user.
    virtual void SaveCustomScale();

private:
    void MakeChoices(ZApplication* application);
    void TakeNote(const ZMessage& message);
    void SwitchDegree(std::int32_t degree);
    void SetChoicesToDefaults();
    void ShiftByChoices();
    void CancelCustomScale();

    // Null where the description, or the bay, has no such element.
    boost::shared_ptr<ZElement> mNotesInScale;
    boost::shared_ptr<ZElement> mKey;
    boost::shared_ptr<ZElement> mScale;
    boost::shared_ptr<ZElement> mPitchTranspose;
    boost::shared_ptr<ZElement> mFormantTranspose;
    boost::shared_ptr<ZElement> mPitchShift;
    boost::shared_ptr<ZElement> mFormantShift;
    boost::shared_ptr<ZElement> mTransposeOnOff;
    boost::shared_ptr<ZElement> mAcceptMIDI;
    bool mIsLoading = false;  // between the begin and the end of a preset's load
};

}  // namespace orvane
