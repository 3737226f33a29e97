// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZPopupMenu.h"

#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZViewTags.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

namespace
{

constexpr const char* kUnknown = "Unknown";
constexpr const char* kModifiedSign = "\"  ";
constexpr std::int32_t kTriangleSize = 6;

boost::shared_ptr<ZBitmap> readMenuBitmap(const ZXMLElement& view, ZApplication* application)
{
    const auto tag = view.GetChild("menubitmap");
    return tag ? boost::make_shared<ZBitmap>(*tag, application) : nullptr;
}

bool opensMenu(const ZNativeKeyEvent& key)
{
    return key.Is(kKeyReturn) || key.Is(kKeySpace) || key.Is(kKeyDown) || key.Is(kKeyUp);
}

/// Whether two texts begin with the same letter, in either case; false for a blank or no text.
bool beginAlike(ZString one, ZString other)
{
    one.ToUpper();
    other.ToUpper();
    return !one.IsEmpty() && !other.IsEmpty() && other.Chars()[0] > u' ' &&
           one.Chars()[0] == other.Chars()[0];
}

}  // namespace

ZPopupMenu::ZPopupMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
    , mMenuBitmap(readMenuBitmap(*xml, application))
    , mMenu(boost::make_shared<ZMenu>("popupmenu", ZMenu::Kind::kPopup))
    , mItemModifiedName(readElementName(*xml, "itemModified"))
    , mItemModifiedElement(*this)
{
    readNamedRect(*xml, "stringrect", mStringRect);
    SetNavigable(true);
}

bool ZPopupMenu::IsKindOf(std::string_view className) const
{
    return className == "ZPopupMenuClass" || ZView::IsKindOf(className);
}

const char* ZPopupMenu::GetClassName() const
{
    return "ZPopupMenuClass";
}

void ZPopupMenu::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZELEMENTCHANGED:
        Invalidate();
        mMenu->CheckItem(mCheckedIndex, false);
        if (mElement)
            mCheckedIndex = mElement->GetDiscrete();
        break;
    case ZELEMENTUPDATED:
        FillMenu();
        Invalidate();
        break;
    case ZTEXTINPUT:
        if (const auto found = FindByLetter(requireField<ZString>(*message, "Text")))
            editDiscrete(mElement, *found);
        break;
    default:
        ZView::HandleZMessage(message);
        break;
    }
}

void ZPopupMenu::ElementChanged(std::uint64_t /*elementId*/)
{
    Invalidate();
}

void ZPopupMenu::OnElementAttached()
{
    FillMenu();
}

void ZPopupMenu::FillMenu()
{
    mMenu->RemoveAllItems();
    for (std::int32_t i = 0; mElement && i < mElement->CountDiscreteValues(); ++i)
        mMenu->AddItem(*mElement->GetDiscreteString(i), i);
}

void ZPopupMenu::OnDocumentChanged()
{
    mItemModifiedElement.Observe(FindElement(mItemModifiedName));
}

void ZPopupMenu::DetachFromElements()
{
    mItemModifiedElement.Release();
    ZView::DetachFromElements();
}

ZPoint ZPopupMenu::MenuPosition(const ZPoint& click) const
{
    const ZPoint at =
        mStringRect.GetWidth() > 0 ? ZPoint{mStringRect.left, mStringRect.top} : click;
    const ZPoint inWindow{at.x + mWindowOrigin.x, at.y + mWindowOrigin.y};
    return mWindow ? mWindow->ToScreen(inWindow) : inWindow;
}

void ZPopupMenu::MouseDown(const ZPoint& point, std::uint32_t /*mods*/)
{
    Open(point);
}

void ZPopupMenu::Open(const ZPoint& at)
{
    if (!mElement)
        return;
    // The view may be destroyed while the menu is open, so only these copies are used after that.
    const auto element = mElement;
    const auto menu = mMenu;
    const std::int32_t current = element->GetDiscrete();
    menu->CheckItem(mCheckedIndex, false);
    menu->CheckItem(current, true);
    mCheckedIndex = current;
    std::int32_t chosen = 0;
    if (!menu->Popup(MenuPosition(at), mWindow, chosen))
        return;
    // A preset loaded while the menu was open may have removed the item.
    if (chosen >= element->CountDiscreteValues())
        return;
    menu->CheckItem(current, false);
    menu->CheckItem(chosen, true);
    editDiscrete(element, chosen);
}

void ZPopupMenu::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

bool ZPopupMenu::WantsKey(const ZNativeKeyEvent& key) const
{
    return mElement && (opensMenu(key) || FindByLetter(key.text));
}

void ZPopupMenu::KeyDown(const ZNativeKeyEvent& key)
{
    if (opensMenu(key))
        Open({mFrame.left, mFrame.top});
}

std::optional<std::int32_t> ZPopupMenu::FindByLetter(const ZString& text) const
{
    const std::int32_t count = mElement ? mElement->CountDiscreteValues() : 0;
    for (std::int32_t i = 1; i <= count; ++i) {
        const std::int32_t index = (mElement->GetDiscrete() + i) % count;
        if (beginAlike(*mElement->GetDiscreteString(index), text))
            return index;
    }
    return std::nullopt;
}

ZString ZPopupMenu::GetText() const
{
    if (!mElement)
        return kUnknown;
    if (mElement->CountDiscreteValues() == 0)
        return {};
    const bool isModified = mItemModifiedElement && mItemModifiedElement->GetDiscrete() == 1;
    ZString text = isModified ? kModifiedSign : "";
    text.Append(*mElement->GetDiscreteString(mElement->GetDiscrete()));
    return text;
}

void ZPopupMenu::Draw(const ZRect& /*update*/)
{
    if (mMenuBitmap) {
        mContext->SetAlphaBlend(true);
        DrawBitmap(*mMenuBitmap, 0, 0);
    } else {
        DrawTriangle();
    }
    mContext->SetTruncate(true);
    DrawString(GetText(), GetTextRect(), 0, kAlignBegin, 1);
    mContext->SetTruncate(false);
}

// The triangle is at the right end of the view and points down.
void ZPopupMenu::DrawTriangle()
{
    const std::int32_t right = mFrame.right - kTriangleSize;
    const std::int32_t top = mFrame.top + (mFrame.GetHeight() - kTriangleSize) / 2;
    ZPath triangle;
    triangle.MoveTo({right, top});
    triangle.LineTo({right - 2 * kTriangleSize, top});
    triangle.LineTo({right - kTriangleSize, top + kTriangleSize});
    triangle.LineTo({right, top});
    const ZSavedStateScope saved(*mContext);
    mContext->SetAntiAlias(true);
    mContext->SetBrushColor(GetStrokeColor());
    mContext->ResetPath();
    mContext->AddPath(triangle);
    mContext->FillPath();
    mContext->ResetPath();
}

}  // namespace orvane
