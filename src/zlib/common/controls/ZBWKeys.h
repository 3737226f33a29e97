// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>

namespace orvane
{

class ZBitmap;

/// A piano keyboard painted from pictures. The sizes of the pictures give the geometry; nothing is
/// scaled.
///
/// Notes are numbered in semitones from note 0, the C of 16.35 Hz. A key is at rest, lit or down;
/// each state has pictures of four shapes: a white key with a black neighbour on its right (C, F),
/// on both sides (D, G, A) or on its left (E, B), and a black key. A missing picture counts as 0 by
/// 0 pixels and draws nothing. [interface thread]
class ZBWKeys : public ZView
{
public:
    static constexpr std::int32_t kNotes = 128;
    static constexpr std::int32_t kNotesInOctave = 12;

    /// Reads `<bitmap type= id=>` with the types w1 to w4 (at rest), l1 to l4 (lit) and d1 to d4
    /// (down); the number is the shape, in the order above.
    ZBWKeys(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    /// The name on the keys of a pitch class, from 0 (C) to 11 (B); black keys have both names.
    [[nodiscard]] static const char* NoteName(std::int32_t pitchClass);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void OnAttached() override;
    void OnDetached() override;
    void Draw(const ZRect& rect) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void OnCaptureLost() override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;

    /// Lights the key of a note or turns its light off; does nothing for a note outside
    /// [0, kNotes). x and y are where the key was struck, which this class does not use.
    virtual void SetKeyState(bool on, std::int32_t note, std::int32_t x, std::int32_t y);
    /// Computes the position of each key in the range from the sizes of the pictures.
    virtual void ComputeKeys();

    [[nodiscard]] bool IsKeyLit(std::int32_t note) const;
    [[nodiscard]] bool IsKeyDown(std::int32_t note) const;
    /// The top left corner of the key's picture, in the view's coordinates.
    [[nodiscard]] ZPoint GetKeyPos(std::int32_t note) const;
    /// The part of the key above the lower edge of the black keys.
    [[nodiscard]] ZRect GetUpperRect(std::int32_t note) const;
    /// The note that is shown as down because it is being sung, or -1.
    [[nodiscard]] std::int32_t GetPlayingNote() const { return mPlayingNote; }

protected:
    static constexpr std::int32_t kNoNote = -1;

    static bool IsBlack(std::int32_t note);
    /// Whether the point lies in the rectangle or on one of its edges; never for an empty
    /// rectangle.
    static bool IsInside(const ZRect& rect, const ZPoint& point);

    /// Shows the key of a note as pressed or released by the mouse.
    virtual void SetKeyDown(std::int32_t note, bool down);
    /// Ends a press of the mouse without an effect on the element.
    void CancelPress();
    /// The frames of the pictures at rest, with their origin at 0, 0; empty for a missing picture.
    [[nodiscard]] ZRect WhiteFrame() const;
    [[nodiscard]] ZRect BlackFrame() const;

    std::array<std::uint8_t, kNotes> mKeyState{};
    std::array<std::uint8_t, kNotes> mKeyDown{};
    std::uint16_t mEndNote = 109;  // the first note above the range
    std::uint16_t mStartNote = 48;
    std::array<ZPoint, kNotes> mKeyPos{};
    std::array<boost::shared_ptr<ZBitmap>, 12> mKeyBitmaps;  // w1 .. w4, l1 .. l4, d1 .. d4
    std::array<ZRect, kNotes> mUpperRect{};  // the part above the black keys' lower edge
    std::array<ZRect, kNotes> mLowerRect{};  // the part below it; empty for a black key
    ZRect mPressedRect;                      // the part that the mouse was pressed in
    std::int32_t mPressedNote = kNoNote;
    std::int32_t mPlayingNote = kNoNote;

private:
    enum KeyLook
    {
        kAtRest,
        kLit,
        kDown,
    };

    void LiftPressedKey();
    void PlaceWhiteKeys();
    void PlaceBlackKeys();
    [[nodiscard]] KeyLook LookOf(std::int32_t note) const;
    void DrawKey(std::int32_t note, KeyLook look);
};

}  // namespace orvane
