// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZBWKeys.h"
#include "zlib/common/elements/ZObservedElement.h"

#include <string>

namespace orvane
{

/// The octave from tonic to tonic, on which the user sees and edits the scale and follows the note
/// that is sung. It starts at the tonic of the key, so a change of key moves all of it.
///
/// Elements, named by `<element startingnote= keystate= playingPitch= trackPitch=>`: the key, an
/// index that counts from A; the scale, a buffer of flags by degrees above the tonic, exactly 1.0
/// for set; the pitch that sounds, in Hz; and whether to show that, 1 for yes. Each may be missing.
class KestruneKeyboardView : public ZBWKeys
{
public:
    KestruneKeyboardView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    /// Presses a key below the upper tonic.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    /// Over the key that was pressed, takes it into the scale or out of it.
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;

protected:
    /// Writes exactly 1.0 or 0.0 to a sample of a buffer element, for its observers to hear of.
    /// Nothing without the element, or for an index that it does not have.
    static void WriteFlag(const ZObservedElement& element, std::int32_t index, bool set);

    /// The same key in the octaves around, too: both tonics go down together.
    void SetKeyDown(std::int32_t note, bool down) override;

    std::string mStartingNoteName;
    ZObservedElement mStartingNote;
    std::string mKeyStateName;
    ZObservedElement mKeyStateElement;
    std::string mPlayingPitchName;
    ZObservedElement mPlayingPitch;
    std::string mTrackPitchName;
    ZObservedElement mTrackPitch;

private:
    void MoveToTonic();
    void ShowScale();
    void FollowPitch();
    void LetPlayingNoteGo();
    void FlipKey(std::int32_t note);
};

}  // namespace orvane
