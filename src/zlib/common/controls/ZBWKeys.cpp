// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZBWKeys.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <string_view>

namespace orvane
{

namespace
{

/// The types of `bitmap` tags, in the order of ZBWKeys::mKeyBitmaps.
constexpr std::array<std::string_view, 12> kBitmapTypes{"w1", "w2", "w3", "w4", "l1", "l2",
                                                        "l3", "l4", "d1", "d2", "d3", "d4"};

constexpr std::array<const char*, ZBWKeys::kNotesInOctave> kNoteNames{
    "C", "C# Db", "D", "D# Eb", "E", "F", "F# Gb", "G", "G# Ab", "A", "A# Bb", "B"};

/// The shapes of keys, as indices into the four pictures of a state.
enum Shape
{
    kBlackToTheRight,
    kBlackOnBothSides,
    kBlackToTheLeft,
    kBlackKey,
};

Shape shapeOf(std::int32_t note)
{
    switch (note % ZBWKeys::kNotesInOctave) {
    case 0:
    case 5:
        return kBlackToTheRight;
    case 2:
    case 7:
    case 9:
        return kBlackOnBothSides;
    case 4:
    case 11:
        return kBlackToTheLeft;
    default:
        return kBlackKey;
    }
}

/// Whether the next black key above this one has two white keys between.
bool hasWideGapAbove(std::int32_t note)
{
    const std::int32_t pitchClass = note % ZBWKeys::kNotesInOctave;
    return pitchClass == 3 || pitchClass == 10;
}

/// The index of a picture in the order of kBitmapTypes.
std::size_t placeOf(int look, Shape shape)
{
    constexpr int kShapes = 4;
    assert(look >= 0 && look < 3);
    return static_cast<std::size_t>(look * kShapes + shape);
}

bool isNote(std::int32_t note)
{
    return note >= 0 && note < ZBWKeys::kNotes;
}

constexpr ZColor kInk{0, 0, 0, 255};
constexpr ZColor kInkOnBlack{255, 255, 255, 255};

}  // namespace

ZBWKeys::ZBWKeys(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
{
    for (std::size_t i = 0; i < kBitmapTypes.size(); ++i)
        mKeyBitmaps[i] = readBitmap(*xml, kBitmapTypes[i], application);
}

const char* ZBWKeys::NoteName(std::int32_t pitchClass)
{
    assert(pitchClass >= 0 && pitchClass < kNotesInOctave);
    return kNoteNames[static_cast<std::size_t>(pitchClass)];
}

bool ZBWKeys::IsKindOf(std::string_view className) const
{
    return className == "ZBWKeysClass" || ZView::IsKindOf(className);
}

const char* ZBWKeys::GetClassName() const
{
    return "ZBWKeysClass";
}

void ZBWKeys::OnAttached()
{
    ZView::OnAttached();
    ComputeKeys();
}

void ZBWKeys::OnDetached()
{
    CancelPress();
    ZView::OnDetached();
}

void ZBWKeys::SetKeyState(bool on, std::int32_t note, std::int32_t /*x*/, std::int32_t /*y*/)
{
    if (!isNote(note))
        return;
    mKeyState[static_cast<std::size_t>(note)] = on;
    Invalidate();
}

void ZBWKeys::SetKeyDown(std::int32_t note, bool down)
{
    if (isNote(note))
        mKeyDown[static_cast<std::size_t>(note)] = down;
}

void ZBWKeys::CancelPress()
{
    if (HasMouseCapture())
        SetMouseCapture(false, true);
    LiftPressedKey();
}

void ZBWKeys::OnCaptureLost()
{
    LiftPressedKey();
}

void ZBWKeys::LiftPressedKey()
{
    if (mPressedNote == kNoNote)
        return;
    SetKeyDown(mPressedNote, false);
    mPressedNote = kNoNote;
    Invalidate();
}

bool ZBWKeys::IsKeyLit(std::int32_t note) const
{
    return isNote(note) && mKeyState[static_cast<std::size_t>(note)] != 0;
}

bool ZBWKeys::IsKeyDown(std::int32_t note) const
{
    return isNote(note) && mKeyDown[static_cast<std::size_t>(note)] != 0;
}

ZPoint ZBWKeys::GetKeyPos(std::int32_t note) const
{
    assert(isNote(note));
    return mKeyPos[static_cast<std::size_t>(note)];
}

ZRect ZBWKeys::GetUpperRect(std::int32_t note) const
{
    assert(isNote(note));
    return mUpperRect[static_cast<std::size_t>(note)];
}

bool ZBWKeys::IsBlack(std::int32_t note)
{
    return shapeOf(note) == kBlackKey;
}

bool ZBWKeys::IsInside(const ZRect& rect, const ZPoint& point)
{
    return !rect.IsEmpty() && rect.ContainsWithEdges(point);
}

ZRect ZBWKeys::WhiteFrame() const
{
    const auto& picture = mKeyBitmaps[placeOf(kAtRest, kBlackToTheRight)];
    return picture ? picture->GetFrame() : ZRect{};
}

ZRect ZBWKeys::BlackFrame() const
{
    const auto& picture = mKeyBitmaps[placeOf(kAtRest, kBlackKey)];
    return picture ? picture->GetFrame() : ZRect{};
}

void ZBWKeys::ComputeKeys()
{
    assert(mStartNote <= mEndNote);
    PlaceWhiteKeys();
    PlaceBlackKeys();
}

void ZBWKeys::PlaceWhiteKeys()
{
    const std::int32_t width = WhiteFrame().right;
    const std::int32_t height = WhiteFrame().bottom;
    const std::int32_t blackHeight = BlackFrame().bottom;
    const std::int32_t overlap = BlackFrame().right / 2;  // of a black key over each neighbour
    std::int32_t x = IsBlack(mStartNote) ? overlap : 0;
    for (std::int32_t note = mStartNote; note < std::min<std::int32_t>(mEndNote, kNotes); ++note) {
        const Shape shape = shapeOf(note);
        if (shape == kBlackKey)
            continue;
        const auto place = static_cast<std::size_t>(note);
        mKeyPos[place] = {x, 0};
        mUpperRect[place] = {shape == kBlackToTheRight ? x : x + overlap, 0,
                             shape == kBlackToTheLeft ? x + width : x - overlap + width,
                             blackHeight};
        mLowerRect[place] = {x, blackHeight, x + width, height};
        x += width;
    }
}

void ZBWKeys::PlaceBlackKeys()
{
    const std::int32_t width = BlackFrame().right;
    const std::int32_t height = BlackFrame().bottom;
    const std::int32_t step = WhiteFrame().right;
    std::int32_t x = step - width / 2;
    if (IsBlack(mStartNote))
        x = -1;
    else if (shapeOf(mStartNote) == kBlackToTheLeft)
        x += step;
    for (std::int32_t note = mStartNote; note < std::min<std::int32_t>(mEndNote, kNotes); ++note) {
        if (!IsBlack(note))
            continue;
        const auto place = static_cast<std::size_t>(note);
        mKeyPos[place] = {x, 0};
        mUpperRect[place] = {x, 0, x + width, height};
        mLowerRect[place] = {};
        x += hasWideGapAbove(note) ? 2 * step : step;
    }
}

ZBWKeys::KeyLook ZBWKeys::LookOf(std::int32_t note) const
{
    if (IsKeyDown(note) || note == mPlayingNote)
        return kDown;
    return IsKeyLit(note) ? kLit : kAtRest;
}

void ZBWKeys::DrawKey(std::int32_t note, KeyLook look)
{
    const auto place = static_cast<std::size_t>(note);
    if (const auto& picture = mKeyBitmaps[placeOf(look, shapeOf(note))])
        DrawBitmap(*picture, mKeyPos[place].x, mKeyPos[place].y);
    constexpr std::int32_t kNameDrop = 10;  // below the key's upper edge, in pixels
    const ZString name(NoteName(note % kNotesInOctave));
    DrawString(name, mUpperRect[place].Offset(0, kNameDrop), 0, kAlignCentre, 0);
}

// Black keys are drawn last, since they lie on top of the white ones.
void ZBWKeys::Draw(const ZRect& /*rect*/)
{
    const std::int32_t end = std::min<std::int32_t>(mEndNote, kNotes);
    mPenColor = kInk;
    for (std::int32_t note = mStartNote; note < end; ++note) {
        if (!IsBlack(note))
            DrawKey(note, LookOf(note));
    }
    for (std::int32_t note = mStartNote; note < end; ++note) {
        if (!IsBlack(note))
            continue;
        const KeyLook look = LookOf(note);
        mPenColor = look == kDown ? kInk : kInkOnBlack;  // a key that is down is light
        DrawKey(note, look);
    }
}

void ZBWKeys::MouseMoved(const ZPoint& point, std::uint32_t /*mods*/)
{
    if (mPressedNote == kNoNote)
        return;
    const bool inside = IsInside(mPressedRect, point);
    if (inside == IsKeyDown(mPressedNote))
        return;
    SetKeyDown(mPressedNote, inside);
    Invalidate();
}

void ZBWKeys::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

}  // namespace orvane
