// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZBWKeys.h"
#include "zlib/common/elements/ZObservedElement.h"

#include <optional>
#include <string>

namespace orvane
{

/// A keyboard of one octave from tonic to tonic, which shows the scale and the note being sung and
/// on which the user edits the scale. It starts at the tonic of the current key, so a change of key
/// moves the whole keyboard.
///
/// Its elements are named by `<element startingnote= keystate= playingPitch= trackPitch=>`: the
/// key, an index counted from A; the scale, a buffer of flags indexed by the degree above the
/// tonic, with exactly 1.0 for a note of the scale; the pitch being sung, in Hz; and whether to
/// show that pitch, 1 for yes. Each may be missing.
///
/// With the keyboard of the computer, arrows left and right, Home and End walk through the keys,
/// and the space bar does what a click does. [interface thread]
class KestruneKeyboardView : public ZBWKeys
{
public:
    KestruneKeyboardView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    /// Presses the key under the mouse; the upper tonic cannot be pressed.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    /// If the mouse is still on the pressed key, adds its note to the scale or removes it.
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    void KeyDown(const ZNativeKeyEvent& key) override;
    /// The key that the arrows have walked to; of a white key the part below the black ones.
    [[nodiscard]] ZRect GetFocusRect() const override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;

protected:
    /// Writes exactly 1.0 or 0.0 to one sample of a buffer element and notifies its observers. Does
    /// nothing without the element, or if its buffer is too short.
    static void WriteFlag(const ZObservedElement& element, std::int32_t index, bool set);

    /// Sets the key and its copies an octave below and above, so that both tonics move together.
    void SetKeyDown(std::int32_t note, bool down) override;
    /// Returns the rectangle of the key of a degree, in [0, 12), or of what stands for it.
    [[nodiscard]] virtual ZRect RectOfDegree(std::int32_t degree) const;
    /// Does what a click on the key of a degree, in [0, 12), does.
    virtual void FlipDegree(std::int32_t degree);

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
    /// The degree that a key walks to; nothing for another key.
    [[nodiscard]] std::optional<std::int32_t> DegreeAfter(const ZNativeKeyEvent& key) const;

    std::int32_t mCursor = 0;  // the degree that the arrows have walked to
};

}  // namespace orvane
