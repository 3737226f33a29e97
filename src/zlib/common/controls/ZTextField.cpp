// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZTextField.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

bool isHigh(char16_t unit)
{
    return (unit & 0xfc00) == 0xd800;
}

bool isLow(char16_t unit)
{
    return (unit & 0xfc00) == 0xdc00;
}

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7f && unit < 0xa0);
}

bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\u00a0';
}

/// The text without control characters, cut to a length that splits no surrogate pair.
std::u16string cleaned(const ZString& text, std::size_t maxUnits)
{
    const auto length = static_cast<std::size_t>(text.Length());
    std::u16string units = length == 0 ? std::u16string() : std::u16string(text.Chars(), length);
    std::erase_if(units, isControl);
    if (units.size() <= maxUnits)
        return units;
    units.resize(maxUnits);
    if (!units.empty() && isHigh(units.back()))
        units.pop_back();
    return units;
}

}  // namespace

void ZTextField::SetText(const ZString& text)
{
    mText = cleaned(text, kMaxUnits);
    SelectAll();
}

ZString ZTextField::GetTextBefore(std::size_t place) const
{
    assert(place <= mText.size());
    return ZString(mText.substr(0, place));
}

void ZTextField::Insert(const ZString& text)
{
    assert(mText.size() <= kMaxUnits);
    EraseSelection();
    const std::u16string units = cleaned(text, kMaxUnits - mText.size());
    mText.insert(mCaret, units);
    MoveTo(mCaret + units.size(), Select::kClear);
}

void ZTextField::EraseBefore()
{
    if (!HasSelection())
        mAnchor = Before(mCaret);
    EraseSelection();
}

void ZTextField::EraseAfter()
{
    if (!HasSelection())
        mAnchor = After(mCaret);
    EraseSelection();
}

void ZTextField::EraseSelection()
{
    const std::size_t start = GetSelectionStart();
    mText.erase(start, GetSelectionEnd() - start);
    MoveTo(start, Select::kClear);
}

void ZTextField::MoveLeft(Select select)
{
    const bool collapses = HasSelection() && select == Select::kClear;
    MoveTo(collapses ? GetSelectionStart() : Before(mCaret), select);
}

void ZTextField::MoveRight(Select select)
{
    const bool collapses = HasSelection() && select == Select::kClear;
    MoveTo(collapses ? GetSelectionEnd() : After(mCaret), select);
}

void ZTextField::MoveWordLeft(Select select)
{
    std::size_t place = mCaret;
    while (place > 0 && isBlank(mText[place - 1]))
        --place;
    while (place > 0 && !isBlank(mText[place - 1]))
        --place;
    MoveTo(place, select);
}

void ZTextField::MoveWordRight(Select select)
{
    std::size_t place = mCaret;
    while (place < mText.size() && !isBlank(mText[place]))
        ++place;
    while (place < mText.size() && isBlank(mText[place]))
        ++place;
    MoveTo(place, select);
}

void ZTextField::MoveTo(std::size_t place, Select select)
{
    mCaret = std::min(place, mText.size());
    if (select == Select::kClear)
        mAnchor = mCaret;
}

void ZTextField::SelectAll()
{
    mAnchor = 0;
    mCaret = mText.size();
}

void ZTextField::SelectWordAt(std::size_t place)
{
    assert(place <= mText.size());
    const std::size_t at = place == mText.size() ? Before(place) : place;
    if (at == mText.size())
        return SelectAll();  // of no text
    const auto isAlike = [this, blank = isBlank(mText[at])](std::size_t i) {
        return isBlank(mText[i]) == blank;
    };
    mAnchor = mCaret = at;
    while (mAnchor > 0 && isAlike(mAnchor - 1))
        --mAnchor;
    while (mCaret < mText.size() && isAlike(mCaret))
        ++mCaret;
}

ZString ZTextField::GetSelection() const
{
    return ZString(mText.substr(GetSelectionStart(), GetSelectionEnd() - GetSelectionStart()));
}

std::size_t ZTextField::GetSelectionStart() const
{
    return std::min(mCaret, mAnchor);
}

std::size_t ZTextField::GetSelectionEnd() const
{
    return std::max(mCaret, mAnchor);
}

std::size_t ZTextField::Before(std::size_t place) const
{
    if (place == 0)
        return 0;
    const bool isPair = place >= 2 && isLow(mText[place - 1]) && isHigh(mText[place - 2]);
    return place - (isPair ? 2 : 1);
}

std::size_t ZTextField::After(std::size_t place) const
{
    if (place >= mText.size())
        return mText.size();
    const bool isPair = place + 1 < mText.size() && isHigh(mText[place]) && isLow(mText[place + 1]);
    return place + (isPair ? 2 : 1);
}

}  // namespace orvane
