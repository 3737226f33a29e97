// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneKeyboardView.h"

#include "kestrune/common/engine/FrequencyToNote.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace orvane
{

namespace
{

constexpr std::int32_t kDegrees = ZBWKeys::kNotesInOctave;
constexpr std::int32_t kKeys = 13;         // from tonic to tonic
constexpr std::int32_t kLowestTonic = 45;  // the A that the first key of the list means

/// The note moved by octaves into a keyboard from start to end. A note on end itself stays there,
/// where no key shows it.
std::int32_t foldNote(std::int32_t note, std::int32_t start, std::int32_t end)
{
    if (note > end)
        return note - kDegrees * (1 + (note - end - 1) / kDegrees);
    if (note < start)
        return note + kDegrees * ((start - note - 1) / kDegrees) + kDegrees;
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

// One change can mean more than one step: the scale is shown from the tonic that is in force.
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
    const std::int32_t key = std::clamp(mStartingNote->GetDiscrete(), 0, kDegrees - 1);
    const std::int32_t tonic = kLowestTonic + key;
    if (tonic != mStartNote)
        CancelPress();  // the pressed key is no longer under the mouse
    const std::int32_t keys = mEndNote - mStartNote;
    mStartNote = static_cast<std::uint16_t>(tonic);
    mEndNote = static_cast<std::uint16_t>(tonic + keys);
    ComputeKeys();
    Invalidate();
}

// In three octaves at once, of which the range shows one and the upper tonic.
void KestruneKeyboardView::ShowScale()
{
    mKeyState.fill(0);
    mKeyState[mStartNote] = 1;  // the tonic is in every scale
    ZBuffer* flags = mKeyStateElement ? mKeyStateElement->GetZBuffer() : nullptr;
    const auto count = flags ? std::min<std::uint32_t>(flags->Length(), kDegrees) : 0;
    for (std::uint32_t degree = 0; degree < count; ++degree) {
        if (std::atomic_ref(flags->Data()[degree]).load(std::memory_order_relaxed) != 1.0f)
            continue;
        for (const std::int32_t octave : {-kDegrees, 0, kDegrees})
            mKeyState[static_cast<std::size_t>(mStartNote + octave) + degree] = 1;
    }
    Invalidate();
}

// A pitch off the scale leaves the last key down, and so does a voice that pauses.
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
    for (const std::int32_t octave : {-kDegrees, 0, kDegrees})
        ZBWKeys::SetKeyDown(note + octave, down);
}

void KestruneKeyboardView::MouseDown(const ZPoint& point, std::uint32_t /*mods*/)
{
    CancelPress();  // of another button
    SetMouseCapture(true, true);
    for (std::int32_t note = mStartNote; note < mStartNote + kDegrees; ++note) {
        const auto place = static_cast<std::size_t>(note);
        const ZRect& upper = mUpperRect[place];
        const ZRect& lower = mLowerRect[place];
        if (!IsOn(upper, point) && !IsOn(lower, point))
            continue;
        mPressedRect = IsOn(upper, point) ? upper : lower;
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
    if (note != kNoNote && IsOn(mPressedRect, point))
        FlipKey(note);
}

// The element reports the change, and that shows the scale again; a tonic stays lit then.
void KestruneKeyboardView::FlipKey(std::int32_t note)
{
    const bool lit = !IsKeyLit(note);
    for (const std::int32_t octave : {-kDegrees, 0, kDegrees})
        mKeyState[static_cast<std::size_t>(note + octave)] = lit;
    WriteFlag(mKeyStateElement, note - mStartNote, lit);
    Invalidate();
}

void KestruneKeyboardView::WriteFlag(const ZObservedElement& element, std::int32_t index, bool set)
{
    ZBuffer* buffer = element ? element->GetZBuffer() : nullptr;
    const auto place = static_cast<std::uint32_t>(index);
    if (!buffer || place >= buffer->Length())
        return;
    // One sample in place: others may write theirs at the same time.
    std::atomic_ref(buffer->Data()[place]).store(set ? 1.0f : 0.0f, std::memory_order_relaxed);
    element->SetZBuffer(*buffer, false);
}

}  // namespace orvane
