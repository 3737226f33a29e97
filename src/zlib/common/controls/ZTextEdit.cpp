// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZTextEdit.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZClipboard.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZPanelStyle.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

#include <algorithm>

namespace orvane
{

namespace
{

using Select = ZTextField::Select;

// In pixels.
constexpr std::int32_t kMarginX = 5;
constexpr std::int32_t kCaretInset = 3;

}  // namespace

ZTextEdit::ZTextEdit(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
{
    SetFont(ZPanelStyle::makeFont());
    SetNavigable(true);
}

bool ZTextEdit::IsKindOf(std::string_view className) const
{
    return className == "ZTextEditClass" || ZView::IsKindOf(className);
}

const char* ZTextEdit::GetClassName() const
{
    return "ZTextEditClass";
}

void ZTextEdit::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() != ZTEXTINPUT)
        return ZView::HandleZMessage(message);
    mField.Insert(requireField<ZString>(*message, "Text"));
    Edited();
}

void ZTextEdit::KeyDown(const ZNativeKeyEvent& key)
{
    if (HandleShortcut(key))
        return;
    const Select select = key.shift ? Select::kExtend : Select::kClear;
    switch (key.code) {
    case kKeyReturn:
        // Runs a copy, since the action may destroy the view.
        if (const auto action = mReturn)
            action();
        return;
    case kKeyBackspace:
        mField.EraseBefore();
        break;
    case kKeyDelete:
        mField.EraseAfter();
        break;
    default:
        MoveByKey(key.code, select, key.control);
    }
    Edited();
}

bool ZTextEdit::HandleShortcut(const ZNativeKeyEvent& key)
{
    const auto isControlWith = [&key](std::uint8_t code) {
        return key.control && !key.alt && key.code == code;
    };
    const auto isShiftWith = [&key](std::uint8_t code) { return key.shift && key.Is(code); };
    const bool cuts = isControlWith('X') || isShiftWith(kKeyDelete);
    if (isControlWith('V') || isShiftWith(kKeyInsert)) {
        Paste();
    } else if (isControlWith('A')) {
        mField.SelectAll();
        Edited();
    } else if (cuts || isControlWith('C') || isControlWith(kKeyInsert)) {
        Copy();
        if (cuts && mField.HasSelection())
            mField.EraseBefore();
        Edited();
    } else {
        return false;
    }
    return true;
}

void ZTextEdit::Copy() const
{
    ZClipboard* const clipboard = ZClipboard::Get();
    // Without a display there is nobody to copy for.
    if (clipboard && mField.HasSelection())
        static_cast<void>(clipboard->Write(mField.GetSelection().ToNarrow()));
}

// The view may be gone when another program has answered.
void ZTextEdit::Paste()
{
    ZClipboard* const clipboard = ZClipboard::Get();
    const auto life = GetLife();
    const auto text = clipboard ? clipboard->Read(GetApp()) : std::nullopt;
    if (!text || life.expired())
        return;
    mField.Insert(ZString(*text));
    Edited();
}

void ZTextEdit::MoveByKey(std::uint8_t key, Select select, bool control)
{
    switch (key) {
    case kKeyLeft:
        return control ? mField.MoveWordLeft(select) : mField.MoveLeft(select);
    case kKeyRight:
        return control ? mField.MoveWordRight(select) : mField.MoveRight(select);
    case kKeyHome:
        return mField.MoveTo(0, select);
    case kKeyEnd:
        return mField.MoveToEnd(select);
    default:
        return;
    }
}

void ZTextEdit::SetText(const ZString& text)
{
    mField.SetText(text);
    Edited();
}

void ZTextEdit::Edited()
{
    const std::int32_t caret = OffsetOf(mField.GetCaret());
    const std::int32_t width = std::max(TextArea().GetWidth() - 1, 0);
    // Keeps the caret visible, and leaves no empty space on the right that text could fill.
    mScroll = std::clamp(mScroll, caret - width, caret);
    mScroll = std::clamp(mScroll, 0, std::max(OffsetOf(mField.GetLength()) - width, 0));
    Invalidate();
}

ZRect ZTextEdit::TextArea() const
{
    return GetFrame().Inset(kMarginX, 1);
}

std::int32_t ZTextEdit::OffsetOf(std::size_t place) const
{
    return place == 0 ? 0 : StringWidth(mField.GetTextBefore(place));
}

std::size_t ZTextEdit::PlaceAt(std::int32_t x) const
{
    const std::int32_t wanted = x - TextArea().left + mScroll;
    std::size_t place = 0;
    while (place < mField.GetLength()) {
        const std::size_t next = mField.After(place);
        if ((OffsetOf(place) + OffsetOf(next)) / 2 > wanted)
            break;
        place = next;
    }
    return place;
}

void ZTextEdit::Draw(const ZRect& rect)
{
    if (!mContext)
        return;
    const ZRect frame = GetFrame();
    ZPanelStyle::fill(*mContext, frame, ZPanelStyle::kField);
    ZPanelStyle::drawEdge(*mContext, frame, mFocused ? ZPanelStyle::kAccent : ZPanelStyle::kEdge);

    const ZRect area = TextArea();
    const ZSavedStateScope saved(*mContext);
    mContext->SetClip(area.Inset(-1, 0).Intersection(rect));
    const std::int32_t left = area.left - mScroll;
    if (mFocused)
        ZPanelStyle::fill(*mContext,
                          {left + OffsetOf(mField.GetSelectionStart()), area.top + kCaretInset,
                           left + OffsetOf(mField.GetSelectionEnd()), area.bottom - kCaretInset},
                          ZPanelStyle::kAccent);
    const ZString text = mField.GetText();
    const std::int32_t top = (frame.top + frame.bottom - StringHeight(text)) / 2;
    SetPenColor(ZPanelStyle::kText);
    // The rectangle is wide enough that the text never wraps.
    DrawString(text, {left, top, left + StringWidth(text) + frame.GetWidth(), area.bottom}, 0,
               ZPanelStyle::kAlignLeft, 0);
    if (mFocused && !mField.HasSelection()) {
        const std::int32_t x = left + OffsetOf(mField.GetCaret());
        DrawLine(x, area.top + kCaretInset, x, area.bottom - kCaretInset - 1);
    }
}

void ZTextEdit::MouseDown(const ZPoint& point, std::uint32_t mods)
{
    if (mWindow)
        mWindow->SetFocusView(this);
    SetMouseCapture(true, true);
    mField.MoveTo(PlaceAt(point.x), (mods & kMouseShift) != 0 ? Select::kExtend : Select::kClear);
    Edited();
}

void ZTextEdit::MouseDoubleClick(const ZPoint& point, std::uint32_t /*mods*/)
{
    if (mWindow)
        mWindow->SetFocusView(this);
    mField.SelectWordAt(PlaceAt(point.x));
    Edited();
}

void ZTextEdit::MouseMoved(const ZPoint& point, std::uint32_t /*mods*/)
{
    mField.MoveTo(PlaceAt(point.x), Select::kExtend);
    Edited();
}

void ZTextEdit::MouseUp(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    if (mMouseCaptured)
        SetMouseCapture(false, true);
}

bool ZTextEdit::WantsKey(const ZNativeKeyEvent& key) const
{
    return !key.Is(kKeyTab);
}

void ZTextEdit::SetFocus(bool focus)
{
    mFocused = focus;
    Invalidate();
}

}  // namespace orvane
