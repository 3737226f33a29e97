// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneIgnoreKeysView.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>
#include <atomic>
#include <cassert>

namespace orvane
{

namespace
{

constexpr ZColor kGrooveShadow{0, 0, 0, 51};
constexpr ZColor kGrooveLight{255, 255, 255, 120};

}  // namespace

KestruneIgnoreKeysView::KestruneIgnoreKeysView(const boost::shared_ptr<ZXMLElement>& xml,
                                               ZApplication* application)
    : KestruneKeyboardView(xml, application)
    , mIgnoreElementName(readElementName(*xml, "ignorekeystate"))
    , mIgnoreElement(*this)
    , mOffBitmap(readBitmap(*xml, "off", application))
    , mOnBitmap(readBitmap(*xml, "on", application))
{
    mEndNote =
        static_cast<std::uint16_t>(mStartNote + kNotesInOctave);  // no box on the upper tonic
}

bool KestruneIgnoreKeysView::IsKindOf(std::string_view className) const
{
    return className == "KestruneIgnoreKeysViewClass" || KestruneKeyboardView::IsKindOf(className);
}

const char* KestruneIgnoreKeysView::GetClassName() const
{
    return "KestruneIgnoreKeysViewClass";
}

void KestruneIgnoreKeysView::DetachFromElements()
{
    KestruneKeyboardView::DetachFromElements();
    mIgnoreElement.StopObserving();
}

void KestruneIgnoreKeysView::OnDocumentChanged()
{
    KestruneKeyboardView::OnDocumentChanged();
    mIgnoreElement.Observe(FindElement(mIgnoreElementName));
}

void KestruneIgnoreKeysView::OnDocumentClosed()
{
    KestruneKeyboardView::OnDocumentClosed();
    mIgnoreElement.Release();
    mIgnored.reset();
}

void KestruneIgnoreKeysView::ElementChanged(std::uint64_t elementId)
{
    if (mIgnoreElement.Is(elementId))
        ShowIgnored();
    else
        KestruneKeyboardView::ElementChanged(elementId);
}

void KestruneIgnoreKeysView::ShowIgnored()
{
    assert(mIgnoreElement);
    ZBuffer& flags = *mIgnoreElement->GetZBuffer();
    mIgnored.reset();
    for (std::uint32_t i = 0; i < std::min<std::uint32_t>(flags.Length(), kNotesInOctave); ++i)
        mIgnored[i] = std::atomic_ref(flags.Data()[i]).load(std::memory_order_relaxed) != 0.0f;
    Invalidate();
}

bool KestruneIgnoreKeysView::IsIgnored(std::int32_t degree) const
{
    assert(degree >= 0 && degree < kNotesInOctave);
    return mIgnored[static_cast<std::size_t>(degree)];
}

// Centres the box on the part of the key's top that the black keys leave free.
ZPoint KestruneIgnoreKeysView::GetBoxPos(std::int32_t note) const
{
    const ZRect upper = GetUpperRect(note);
    return {upper.left + (upper.GetWidth() - BoxWidth()) / 2, 0};
}

ZRect KestruneIgnoreKeysView::GetBoxRect(std::int32_t note) const
{
    if (!mOnBitmap)
        return {};
    const std::int32_t left = GetBoxPos(note).x;
    return {left, 0, left + BoxWidth(), mOnBitmap->GetHeight()};
}

ZRect KestruneIgnoreKeysView::RectOfDegree(std::int32_t degree) const
{
    return GetBoxRect(mStartNote + degree);
}

std::int32_t KestruneIgnoreKeysView::BoxWidth() const
{
    return mOnBitmap ? mOnBitmap->GetWidth() : 0;
}

void KestruneIgnoreKeysView::Draw(const ZRect& /*rect*/)
{
    for (std::int32_t note = mStartNote; note < mStartNote + kNotesInOctave; ++note)
        DrawBox(note);
}

// Draws the box and an engraved line from it down to the key.
void KestruneIgnoreKeysView::DrawBox(std::int32_t note)
{
    const ZPoint pos = GetBoxPos(note);
    const auto& picture = IsIgnored(note - mStartNote) ? mOnBitmap : mOffBitmap;
    if (picture)
        DrawBitmap(*picture, pos.x, pos.y);
    const std::int32_t centre = pos.x + BoxWidth() / 2;
    const std::int32_t bottom = GetFrame().GetHeight();
    const std::int32_t top = mOffBitmap ? mOffBitmap->GetHeight() : 0;
    mPenColor = kGrooveShadow;
    DrawLine(centre - 1, bottom, centre - 1, top);
    mPenColor = kGrooveLight;
    DrawLine(centre, bottom, centre, top);
}

void KestruneIgnoreKeysView::MouseDown(const ZPoint& point, std::uint32_t /*mods*/)
{
    for (std::int32_t note = mStartNote; note < mEndNote; ++note) {
        if (IsInside(GetBoxRect(note), point))
            return FlipBox(note - mStartNote);
    }
}

void KestruneIgnoreKeysView::FlipBox(std::int32_t degree)
{
    assert(degree >= 0 && degree < kNotesInOctave);
    const auto place = static_cast<std::size_t>(degree);
    mIgnored.flip(place);
    WriteFlag(mIgnoreElement, degree, mIgnored[place]);
    Invalidate();
}

void KestruneIgnoreKeysView::MouseUp(const ZPoint& point, std::uint32_t mods)
{
    ZView::MouseUp(point, mods);
}

void KestruneIgnoreKeysView::MouseMoved(const ZPoint& point, std::uint32_t mods)
{
    ZView::MouseMoved(point, mods);
}

}  // namespace orvane
