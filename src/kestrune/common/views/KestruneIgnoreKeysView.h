// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/views/KestruneKeyboardView.h"

#include <bitset>
#include <string>

namespace orvane
{

/// A row of check boxes, one over each key of the keyboard that stands below: what is checked is
/// left uncorrected. The keyboard's pictures are read for their sizes only.
///
/// Besides the keyboard's elements, `<element ignorekeystate=>` names a buffer of flags by degrees
/// above the tonic, 0 for corrected, any other value for ignored. Boxes keep their degrees when the
/// key changes, and move with the keyboard.
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
    /// A click acts on the way down, with no capture.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;

    [[nodiscard]] bool IsIgnored(std::int32_t degree) const;
    /// Where the box over a note's key is drawn.
    [[nodiscard]] ZPoint GetBoxPos(std::int32_t note) const;
    /// Where a click means the box over a note's key.
    [[nodiscard]] ZRect GetBoxRect(std::int32_t note) const;

private:
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
