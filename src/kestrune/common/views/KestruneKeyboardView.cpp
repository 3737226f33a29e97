// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneKeyboardView.h"

#include "kestrune/common/engine/FrequencyToNote.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZWindow.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr std::int32_t kOctaveNotes = ZBWKeys::kNotesInOctave;
constexpr std::int32_t kKeys = 13;         // from tonic to tonic
constexpr std::int32_t kLowestTonic = 45;  // the note A, the first entry in the list of keys

/// The note moved by octaves into [start, end]. The keyboard has no key for end itself, so a note
/// there is not shown.
std::int32_t foldNote(std::int32_t note, std::int32_t start, std::int32_t end)
{
    assert(end - start >= kOctaveNotes);
    if (note > end)
        return note - kOctaveNotes * (1 + (note - end - 1) / kOctaveNotes);
    if (note < start)
        return note + kOctaveNotes * ((start - note - 1) / kOctaveNotes) + kOctaveNotes;
    return note;
}

}  // namespace

KestruneKeyboardView::KestruneKeyboardView(const boost::shared_ptr<ZXMLElement>& xml,
                                           ZApplication* application)
    : ZBWKeys(xml, application)
    , mStartingNoteName(readElementName(*xml, "startingnote"))
    , mStartingNote(*this)
    , mKeyStateName(readElementName(*xml, "keystate"))
    , mKeyStateElement(*this)
    , mPlayingPitchName(readElementName(*xml, "playingPitch"))
    , mPlayingPitch(*this)
    , mTrackPitchName(readElementName(*xml, "trackPitch"))
    , mTrackPitch(*this)
{
    mStartNote = 48;
    mEndNote = static_cast<std::uint16_t>(mStartNote + kKeys);
    SetNavigable(true);
}

bool KestruneKeyboardView::IsKindOf(std::string_view className) const
{
    return className == "KestruneKeyboardViewClass" || ZBWKeys::IsKindOf(className);
}

const char* KestruneKeyboardView::GetClassName() const
{
    return "KestruneKeyboardViewClass";
}

void KestruneKeyboardView::DetachFromElements()
{
    ZBWKeys::DetachFromElements();
    for (ZObservedElement* element :
         {&mStartingNote, &mKeyStateElement, &mPlayingPitch, &mTrackPitch})
        element->StopObserving();
}

void KestruneKeyboardView::OnDocumentChanged()
{
    ZBWKeys::OnDocumentChanged();
    mStartingNote.Observe(FindElement(mStartingNoteName));
    mKeyStateElement.Observe(FindElement(mKeyStateName));
    mPlayingPitch.Observe(FindElement(mPlayingPitchName));
    mTrackPitch.Observe(FindElement(mTrackPitchName));
}

void KestruneKeyboardView::OnDocumentClosed()
{
    ZBWKeys::OnDocumentClosed();
    for (ZObservedElement* element :
         {&mStartingNote, &mKeyStateElement, &mPlayingPitch, &mTrackPitch})
        element->Release();
    CancelPress();
    mKeyState.fill(0);
    LetPlayingNoteGo();
}

// A change of key both moves the keyboard and shows the scale from the new tonic.
void KestruneKeyboardView::ElementChanged(std::uint64_t elementId)
{
    const bool moves = mStartingNote.Is(elementId);
    if (moves)
        MoveToTonic();
    if (moves || mKeyStateElement.Is(elementId))
        ShowScale();
    if (mPlayingPitch.Is(elementId))
        FollowPitch();
    if (mTrackPitch.Is(elementId) && mTrackPitch->GetDiscrete() == 0)
        LetPlayingNoteGo();
}

void KestruneKeyboardView::MoveToTonic()
{
    const std::int32_t key = std::clamp(mStartingNote->GetDiscrete(), 0, kOctaveNotes - 1);
    const std::int32_t tonic = kLowestTonic + key;
    if (tonic != mStartNote)
        CancelPress();  // the key under the mouse is another one now
    const std::int32_t keys = mEndNote - mStartNote;
    mStartNote = static_cast<std::uint16_t>(tonic);
    mEndNote = static_cast<std::uint16_t>(tonic + keys);
    ComputeKeys();
    Invalidate();
    if (mWindow)
        mWindow->UpdateFocusRing();
}

// Sets three octaves, so that the upper tonic is lit and keys an octave apart stay equal.
void KestruneKeyboardView::ShowScale()
{
    mKeyState.fill(0);
    mKeyState[mStartNote] = 1;  // the tonic is in every scale
    ZBuffer* flags = mKeyStateElement ? mKeyStateElement->GetZBuffer() : nullptr;
    const auto count = flags ? std::min<std::uint32_t>(flags->Length(), kOctaveNotes) : 0;
    for (std::uint32_t degree = 0; degree < count; ++degree) {
        if (std::atomic_ref(flags->Data()[degree]).load(std::memory_order_relaxed) != 1.0f)
            continue;
        for (const std::int32_t octave : {-kOctaveNotes, 0, kOctaveNotes})
            mKeyState[static_cast<std::size_t>(mStartNote + octave) + degree] = 1;
    }
    Invalidate();
}

// A pitch outside the scale and a pause of the voice leave the last key down.
void KestruneKeyboardView::FollowPitch()
{
    if (!mTrackPitch || mTrackPitch->GetDiscrete() != 1)
        return;
    const float pitchHz = mPlayingPitch->GetZFloat();
    constexpr float kNoVoiceBelowHz = 1.0f;
    if (!std::isfinite(pitchHz) || pitchHz < kNoVoiceBelowHz)
        return;
    int note = 0;
    FrequencyToNote(pitchHz, &note, nullptr, nullptr);
    note = foldNote(note, mStartNote, mEndNote);
    if (note == mPlayingNote || !IsKeyLit(note))
        return;
    mPlayingNote = note;
    Invalidate();
}

void KestruneKeyboardView::LetPlayingNoteGo()
{
    mPlayingNote = kNoNote;
    Invalidate();
}

void KestruneKeyboardView::SetKeyDown(std::int32_t note, bool down)
{
    for (const std::int32_t octave : {-kOctaveNotes, 0, kOctaveNotes})
        ZBWKeys::SetKeyDown(note + octave, down);
}

void KestruneKeyboardView::MouseDown(const ZPoint& point, std::uint32_t /*mods*/)
{
    CancelPress();  // another mouse button may have begun one
    SetMouseCapture(true, true);
    for (std::int32_t note = mStartNote; note < mStartNote + kOctaveNotes; ++note) {
        const auto place = static_cast<std::size_t>(note);
        const ZRect& upper = mUpperRect[place];
        const ZRect& lower = mLowerRect[place];
        if (!IsInside(upper, point) && !IsInside(lower, point))
            continue;
        mPressedRect = IsInside(upper, point) ? upper : lower;
        mPressedNote = note;
    }
    if (mPressedNote == kNoNote)
        return;
    SetKeyDown(mPressedNote, true);
    Invalidate();
}

void KestruneKeyboardView::MouseUp(const ZPoint& point, std::uint32_t /*mods*/)
{
    const std::int32_t note = mPressedNote;
    CancelPress();
    if (note != kNoNote && IsInside(mPressedRect, point))
        FlipKey(note);
}

// The element's report of the change then calls ShowScale(), which lights the tonic in any case.
void KestruneKeyboardView::FlipKey(std::int32_t note)
{
    assert(note >= mStartNote && note < mStartNote + kOctaveNotes);
    const bool lit = !IsKeyLit(note);
    for (const std::int32_t octave : {-kOctaveNotes, 0, kOctaveNotes})
        mKeyState[static_cast<std::size_t>(note + octave)] = lit;
    WriteFlag(mKeyStateElement, note - mStartNote, lit);
    Invalidate();
}

bool KestruneKeyboardView::WantsKey(const ZNativeKeyEvent& key) const
{
    return key.Is(kKeySpace) || DegreeAfter(key).has_value();
}

void KestruneKeyboardView::KeyDown(const ZNativeKeyEvent& key)
{
    if (key.Is(kKeySpace))
        return FlipDegree(mCursor);
    const auto degree = DegreeAfter(key);
    if (!degree)
        return;
    mCursor = *degree;
    if (mWindow)
        mWindow->UpdateFocusRing();
}

std::optional<std::int32_t> KestruneKeyboardView::DegreeAfter(const ZNativeKeyEvent& key) const
{
    constexpr std::int32_t kLast = kOctaveNotes - 1;
    if (key.Is(kKeyLeft))
        return std::max(mCursor - 1, 0);
    if (key.Is(kKeyRight))
        return std::min(mCursor + 1, kLast);
    if (key.Is(kKeyHome))
        return 0;
    if (key.Is(kKeyEnd))
        return kLast;
    return std::nullopt;
}

ZRect KestruneKeyboardView::GetFocusRect() const
{
    const ZRect rect = RectOfDegree(mCursor);
    return rect.IsEmpty() ? GetFrame() : rect;
}

ZRect KestruneKeyboardView::RectOfDegree(std::int32_t degree) const
{
    assert(degree >= 0 && degree < kOctaveNotes);
    const auto place = static_cast<std::size_t>(mStartNote + degree);
    return mLowerRect[place].IsEmpty() ? mUpperRect[place] : mLowerRect[place];
}

void KestruneKeyboardView::FlipDegree(std::int32_t degree)
{
    FlipKey(mStartNote + degree);
}

void KestruneKeyboardView::WriteFlag(const ZObservedElement& element, std::int32_t index, bool set)
{
    assert(index >= 0);
    ZBuffer* buffer = element ? element->GetZBuffer() : nullptr;
    const auto place = static_cast<std::uint32_t>(index);
    if (!buffer || place >= buffer->Length())
        return;
    // Writes this sample only: other threads may write other samples at the same time.
    std::atomic_ref(buffer->Data()[place]).store(set ? 1.0f : 0.0f, std::memory_order_relaxed);
    element->SetZBuffer(*buffer, false);
}

}  // namespace orvane
