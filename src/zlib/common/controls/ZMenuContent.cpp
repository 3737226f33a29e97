// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuContent.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/views/ZPanelStyle.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <utility>

namespace orvane
{

namespace
{

// In units.
constexpr std::int32_t kBorder = 3;
constexpr std::int32_t kItemHeight = 19;
constexpr std::int32_t kArrowHeight = 13;
constexpr std::int32_t kCheckWidth = 22;
constexpr std::int32_t kRightMargin = 16;
constexpr std::int32_t kTextTop = 2;
constexpr std::int32_t kMinTextWidth = 40;
constexpr std::int32_t kMaxTextWidth = 400;
// A click that opens the menu may move the pointer by this much in each direction.
constexpr std::int32_t kStillRadius = 5;

constexpr std::int32_t kWheelItems = 3;

const ZColor& textColor(const ZMenu::Item& item, bool isHighlighted)
{
    // A line of information is not faint: it is there to be read.
    if (item.index == ZMenu::kNoIndex && !item.submenu)
        return ZPanelStyle::kQuietText;
    if (!item.enabled)
        return ZPanelStyle::kFaintText;
    return isHighlighted ? ZPanelStyle::kAccentText : ZPanelStyle::kText;
}

char16_t firstLetter(ZString text)
{
    text.ToUpper();
    return text.IsEmpty() ? u'\0' : text.Chars()[0];
}

/// Draws an arrowhead of horizontal lines that points up or down.
void drawArrow(ZDrawingContext& context, const ZRect& rect, bool up, const ZColor& color)
{
    const std::int32_t x = (rect.left + rect.right) / 2;
    const std::int32_t y = (rect.top + rect.bottom) / 2;
    context.SetPenColor(color);
    context.SetPenWidth(1.0f);
    for (std::int32_t i = 0; i < 4; ++i) {
        const std::int32_t row = up ? y - 2 + i : y + 1 - i;
        context.DrawLine(x - i, row, x + i, row);
    }
}

/// Draws an arrowhead of vertical lines that points right, at the end of an item.
void drawSubmenuArrow(ZDrawingContext& context, const ZRect& rect, const ZColor& color)
{
    const std::int32_t x = rect.right - kRightMargin / 2 - 2;
    const std::int32_t y = (rect.top + rect.bottom) / 2;
    context.SetPenColor(color);
    context.SetPenWidth(1.0f);
    for (std::int32_t i = 0; i < 4; ++i)
        context.DrawLine(x + i, y - 3 + i, x + i, y + 3 - i);
}

void drawCheck(ZDrawingContext& context, const ZRect& rect, const ZColor& color)
{
    const std::int32_t x = rect.left + kCheckWidth / 2 - 4;
    const std::int32_t y = (rect.top + rect.bottom) / 2;
    context.SetAntiAlias(true);
    context.SetPenColor(color);
    context.SetPenWidth(2.0f);
    context.DrawLine(x, y, x + 3, y + 3);
    context.DrawLine(x + 3, y + 3, x + 8, y - 4);
    context.SetAntiAlias(false);
}

}  // namespace

ZMenuContent::ZMenuContent(const ZMenu& menu)
    : mItems(menu.GetItems())
    , mInView(Count())
{
    std::int32_t width = kMinTextWidth;
    for (const ZMenu::Item& item : mItems)
        width = std::max(width, ZPanelStyle::measure(item.text, kMaxTextWidth).x);
    mSize = {width + kCheckWidth + kRightMargin, Count() * kItemHeight + 2 * kBorder};
}

void ZMenuContent::SetSize(const ZPoint& size)
{
    const std::int32_t wanted = mSize.y;
    assert(size.x > 0 && size.y > 0);
    mSize = size;
    if (size.y < wanted)
        mInView = std::max((size.y - 2 * (kBorder + kArrowHeight)) / kItemHeight, 1);
    // A menu with submenus is no list of choices, of which one is in force.
    if (std::ranges::any_of(mItems, [](const auto& item) { return item.submenu != nullptr; }))
        return;
    const auto checked =
        std::ranges::find_if(mItems, [](const auto& item) { return item.checked; });
    if (checked != mItems.end())
        static_cast<void>(HighlightInView(static_cast<std::int32_t>(checked - mItems.begin())));
}

ZRect ZMenuContent::UpperArrow() const
{
    return Scrolls() ? ZRect{0, 0, mSize.x, kBorder + kArrowHeight} : ZRect{};
}

ZRect ZMenuContent::LowerArrow() const
{
    return Scrolls() ? ZRect{0, UpperArrow().bottom + mInView * kItemHeight, mSize.x, mSize.y}
                     : ZRect{};
}

ZRect ZMenuContent::GetItemRect(std::int32_t place) const
{
    if (place < mFirst || place >= std::min(mFirst + mInView, Count()))
        return {};
    const std::int32_t top = Scrolls() ? UpperArrow().bottom : kBorder;
    const std::int32_t y = top + (place - mFirst) * kItemHeight;
    return {kBorder, y, mSize.x - kBorder, y + kItemHeight};
}

std::int32_t ZMenuContent::PlaceAt(const ZPoint& point) const
{
    for (std::int32_t place = mFirst; place < std::min(mFirst + mInView, Count()); ++place)
        if (GetItemRect(place).Contains(point))
            return place;
    return kNone;
}

bool ZMenuContent::ScrollTo(std::int32_t first)
{
    assert(mInView >= 0 && mInView <= Count());
    return std::exchange(mFirst, std::clamp(first, 0, Count() - mInView)) != mFirst;
}

bool ZMenuContent::Highlight(std::int32_t place)
{
    assert(place >= kNone && place < Count());
    const std::int32_t enabled = IsEnabled(place) ? place : kNone;
    return std::exchange(mHighlight, enabled) != enabled;
}

bool ZMenuContent::HighlightInView(std::int32_t place)
{
    if (place == kNone)
        return Highlight(kNone);
    const std::int32_t first = std::clamp(mFirst, place - mInView + 1, place);
    const bool scrolled = ScrollTo(first);
    return Highlight(place) || scrolled;
}

bool ZMenuContent::Mouse(const ZNativeMouseEvent& event)
{
    PointerAt(event.position);
    switch (event.action) {
    case ZNativeMouseEvent::kMove:
        // The pointer's place when the menu opens does not change the highlight.
        return mMoved && Highlight(PlaceAt(event.position));
    case ZNativeMouseEvent::kDown:
    case ZNativeMouseEvent::kDoubleClick:
    case ZNativeMouseEvent::kContext:
        return Press(event.position);
    case ZNativeMouseEvent::kUp:
    case ZNativeMouseEvent::kContextUp:
        return Release(event.position);
    case ZNativeMouseEvent::kWheel: {
        const bool scrolled = ScrollTo(mFirst - kWheelItems * event.wheelNotches);
        return Highlight(PlaceAt(event.position)) || scrolled;
    }
    case ZNativeMouseEvent::kLeave:
        return Highlight(kNone);
    }
    return false;
}

void ZMenuContent::PointerAt(const ZPoint& point)
{
    mPointer = point;
    if (!mStart)
        mStart = point;
    if (std::abs(point.x - mStart->x) > kStillRadius ||
        std::abs(point.y - mStart->y) > kStillRadius)
        mMoved = true;
    const std::int32_t place = PlaceAt(point);
    if (mFirstTouched == kNone)
        mFirstTouched = PlaceAt(*mStart);
    if (mFirstTouched == kNone)
        mFirstTouched = place;
    if (mMoved && place != kNone && place != mFirstTouched)
        mArmed = true;
}

bool ZMenuContent::Press(const ZPoint& point)
{
    if (!Frame().Contains(point)) {
        if (mMoved || mArmed)
            End();
        return false;
    }
    if (!mArmed)
        return false;
    mPressed = true;
    if (UpperArrow().Contains(point))
        return ScrollTo(mFirst - 1);
    if (LowerArrow().Contains(point))
        return ScrollTo(mFirst + 1);
    const std::int32_t place = PlaceAt(point);
    const bool isNew = Highlight(place);
    return OpenSubmenu(place, false) || isNew;
}

bool ZMenuContent::Release(const ZPoint& point)
{
    if (!mArmed || !(mMoved || mPressed))
        return false;
    const std::int32_t place = PlaceAt(point);
    if (GetSubmenu(place))
        return OpenSubmenu(place, false);
    if (place != kNone)
        Choose(place);
    else if (mFirstTouched != kNone && !Frame().Contains(point))
        End();
    return false;
}

bool ZMenuContent::ScrollByPointer()
{
    const std::int32_t by = UpperArrow().Contains(mPointer)   ? -1
                            : LowerArrow().Contains(mPointer) ? 1
                                                              : 0;
    return mMoved && ScrollTo(mFirst + by);
}

bool ZMenuContent::Key(const ZNativeKeyEvent& event)
{
    if (mItems.empty() || event.code == kKeyEscape) {
        End();
        return false;
    }
    switch (event.code) {
    case kKeyUp:
        return HighlightInView(Next(mHighlight == kNone ? Count() : mHighlight, -1));
    case kKeyDown:
        return HighlightInView(Next(mHighlight, 1));
    case kKeyHome:
        return HighlightInView(Next(kNone, 1));
    case kKeyEnd:
        return HighlightInView(Next(Count(), -1));
    case kKeyPageUp:
        return Step(-mInView);
    case kKeyPageDown:
        return Step(mInView);
    case kKeyReturn:
    case kKeySpace:
        if (mHighlight != kNone && !OpenSubmenu(mHighlight, true))
            Choose(mHighlight);
        return false;
    default:
        return FindLetter(event.text);
    }
}

bool ZMenuContent::Step(std::int32_t by)
{
    const std::int32_t place = std::clamp(std::max(mHighlight, 0) + by, 0, Count() - 1);
    return HighlightInView(IsEnabled(place) ? place : Next(place, by > 0 ? -1 : 1));
}

std::int32_t ZMenuContent::Next(std::int32_t place, std::int32_t direction) const
{
    assert(direction == 1 || direction == -1);
    std::int32_t next = place;
    for (std::int32_t i = 0; i < Count(); ++i) {
        next = (next + direction + Count()) % Count();
        if (IsEnabled(next))
            return next;
    }
    return std::clamp(place, kNone, Count() - 1);
}

bool ZMenuContent::IsEnabled(std::int32_t place) const
{
    return place != kNone && At(place).enabled;
}

const ZMenu::Item& ZMenuContent::At(std::int32_t place) const
{
    assert(place >= 0 && place < Count());
    return mItems[static_cast<std::size_t>(place)];
}

boost::shared_ptr<ZMenu> ZMenuContent::GetSubmenu(std::int32_t place) const
{
    return place != kNone && At(place).enabled ? At(place).submenu : nullptr;
}

bool ZMenuContent::OpenSubmenu(std::int32_t place, bool byKey)
{
    if (!GetSubmenu(place))
        return false;
    if (mOpenSubmenu)
        mOpenSubmenu(place, byKey);
    return true;
}

bool ZMenuContent::FindLetter(const ZString& text)
{
    const char16_t letter = firstLetter(text);
    if (letter == u'\0')
        return false;
    // Starts behind the highlighted item and ends with that item itself.
    for (std::int32_t i = 1; i <= Count(); ++i) {
        const std::int32_t place = (mHighlight + i) % Count();
        if (IsEnabled(place) && firstLetter(At(place).text) == letter)
            return HighlightInView(place);
    }
    return false;
}

void ZMenuContent::FocusLost()
{
    End();
}

void ZMenuContent::Dismiss()
{
    End();
}

void ZMenuContent::Choose(std::int32_t place)
{
    assert(place >= 0 && place < Count());
    if (!IsEnabled(place))
        return;
    if (!mHasEnded)
        mChosen = At(place).index;
    End();
}

void ZMenuContent::End()
{
    if (std::exchange(mHasEnded, true))
        return;
    if (mEnded)
        mEnded();
}

void ZMenuContent::Draw(ZDrawingContext& context)
{
    ZPanelStyle::drawGround(context, Frame());
    for (std::int32_t place = mFirst; place < std::min(mFirst + mInView, Count()); ++place)
        DrawItem(context, place);
    if (Scrolls())
        DrawArrows(context);
}

void ZMenuContent::DrawItem(ZDrawingContext& context, std::int32_t place) const
{
    const ZMenu::Item& item = At(place);
    const ZRect rect = GetItemRect(place);
    const bool isHighlighted = place == mHighlight;
    const ZColor& color = textColor(item, isHighlighted);
    if (isHighlighted)
        ZPanelStyle::fill(context, rect, ZPanelStyle::kAccent);
    if (item.beginsGroup)
        ZPanelStyle::fill(context, {rect.left, rect.top, rect.right, rect.top + 1},
                          ZPanelStyle::kHighlight);
    if (item.checked)
        drawCheck(context, rect, color);
    if (item.submenu)
        drawSubmenuArrow(context, rect, color);
    const ZRect text{rect.left + kCheckWidth, rect.top + kTextTop, rect.right, rect.bottom};
    ZPanelStyle::drawLine(context, item.text, text, ZPanelStyle::kAlignLeft, color);
}

void ZMenuContent::DrawArrows(ZDrawingContext& context) const
{
    const auto colorOf = [](bool isOpen) {
        return isOpen ? ZPanelStyle::kText : ZPanelStyle::kFaintText;
    };
    drawArrow(context, UpperArrow(), true, colorOf(mFirst > 0));
    drawArrow(context, LowerArrow(), false, colorOf(mFirst + mInView < Count()));
}

}  // namespace orvane
