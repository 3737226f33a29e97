// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/views/KestruneKeyboardView.h"

#include <bitset>
#include <string>

namespace orvane
{

/// A row of check boxes, one above each key of the keyboard view below it. Notes whose box is
/// checked are not corrected. The pictures of keys are read for their sizes only.
///
/// Besides the keyboard's elements, `<element ignorekeystate=>` names a buffer of flags, indexed by
/// the degree above the tonic: 0 for corrected, any other value for ignored. When the key changes,
/// the boxes keep their degrees and move with the keyboard. [interface thread]
class KestruneIgnoreKeysView : public KestruneKeyboardView
{
public:
    /// Reads `<bitmap type= id=>` with the types on and off.
    KestruneIgnoreKeysView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;
    void Draw(const ZRect& rect) override;
    /// Switches the box under the mouse at the press, without capturing the mouse.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;

    /// Whether the box of a degree, in [0, 12), is checked.
    [[nodiscard]] bool IsIgnored(std::int32_t degree) const;
    /// The top left corner of the picture of the box above a note's key.
    [[nodiscard]] ZPoint GetBoxPos(std::int32_t note) const;
    /// The rectangle in which a press switches the box above a note's key.
    [[nodiscard]] ZRect GetBoxRect(std::int32_t note) const;

protected:
    [[nodiscard]] ZRect RectOfDegree(std::int32_t degree) const override;
    void FlipDegree(std::int32_t degree) override { FlipBox(degree); }

private:
    /// The width of a box in pixels, 0 without pictures.
    [[nodiscard]] std::int32_t BoxWidth() const;
    void ShowIgnored();
    void DrawBox(std::int32_t note);
    void FlipBox(std::int32_t degree);

    std::string mIgnoreElementName;
    ZObservedElement mIgnoreElement;
    boost::shared_ptr<ZBitmap> mOffBitmap;
    boost::shared_ptr<ZBitmap> mOnBitmap;
    std::bitset<kNotesInOctave> mIgnored;
};

}  // namespace orvane
