// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>

namespace orvane
{

class ZBitmap;

/// A piano keyboard painted from pictures, whose sizes give its geometry: nothing is scaled.
///
/// Notes count semitones from note 0, the C of 16.35 Hz. A key is at rest, lit or down, and there
/// are pictures of four shapes for each: a white key with a black neighbour to the right (C, F), to
/// both sides (D, G, A) or to the left (E, B), and a black key. A picture that is missing measures
/// 0 by 0 and shows nothing.
class ZBWKeys : public ZView
{
public:
    static constexpr std::int32_t kNotes = 128;
    static constexpr std::int32_t kNotesInOctave = 12;

    /// Reads `<bitmap type= id=>` with the types w1 to w4 (at rest), l1 to l4 (lit) and d1 to d4
    /// (down), the number telling the shape.
    ZBWKeys(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    /// How a key of that pitch class, 0 (C) to 11, is marked: black ones by both their names.
    [[nodiscard]] static const char* NoteName(std::int32_t pitchClass);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void OnAttached() override;
    void OnDetached() override;
    void Draw(const ZRect& rect) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void OnCaptureLost() override;
    /// The second press of a quick hand is a press.
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;

    /// Lights the key; nothing for a note that there is not. x and y tell where a key was struck,
    /// for keyboards that care.
    virtual void SetKeyState(bool on, std::int32_t note, std::int32_t x, std::int32_t y);
    /// Finds the place of each key in the range.
    virtual void ComputeKeys();

    [[nodiscard]] std::int32_t GetStartNote() const { return mStartNote; }
    /// The first note above the range.
    [[nodiscard]] std::int32_t GetEndNote() const { return mEndNote; }
    [[nodiscard]] bool IsKeyLit(std::int32_t note) const;
    [[nodiscard]] bool IsKeyDown(std::int32_t note) const;
    /// Where the key's picture goes.
    [[nodiscard]] ZPoint GetKeyPos(std::int32_t note) const;
    [[nodiscard]] ZRect GetUpperRect(std::int32_t note) const;
    [[nodiscard]] ZRect GetLowerRect(std::int32_t note) const;
    /// The note that is down because it sounds; -1 for none.
    [[nodiscard]] std::int32_t GetPlayingNote() const { return mPlayingNote; }

protected:
    static constexpr std::int32_t kNoNote = -1;

    static bool IsBlack(std::int32_t note);
    /// With all four edges; an empty rectangle has none.
    static bool IsOn(const ZRect& rect, const ZPoint& point);

    /// Presses or lets go the key of a note for the mouse.
    virtual void SetKeyDown(std::int32_t note, bool down);
    /// Ends a press of the mouse with nothing done.
    void CancelPress();
    /// Of the pictures at rest, from 0, 0: all zero while they are missing.
    [[nodiscard]] ZRect WhiteFrame() const;
    [[nodiscard]] ZRect BlackFrame() const;

    std::array<std::uint8_t, kNotes> mKeyState{};
    std::array<std::uint8_t, kNotes> mKeyDown{};
    std::uint16_t mEndNote = 109;
    std::uint16_t mStartNote = 48;
    std::array<ZPoint, kNotes> mKeyPos{};
    std::array<boost::shared_ptr<ZBitmap>, 12> mKeyBitmaps;  // w1 .. w4, l1 .. l4, d1 .. d4
    // What of a key lies above the lower edge of the black ones, and a white key's full width below
    // it; all zero for a black key.
    std::array<ZRect, kNotes> mUpperRect{};
    std::array<ZRect, kNotes> mLowerRect{};
    ZRect mPressedRect;
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
