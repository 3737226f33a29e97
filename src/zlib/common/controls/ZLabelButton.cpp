// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZLabelButton.h"

#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/views/ZPanelStyle.h"

#include <utility>

namespace orvane
{

ZLabelButton::ZLabelButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZStringView(xml, application)
{
    SetNavigable(true);
}

bool ZLabelButton::IsKindOf(std::string_view className) const
{
    return className == "ZLabelButtonClass" || ZStringView::IsKindOf(className);
}

const char* ZLabelButton::GetClassName() const
{
    return "ZLabelButtonClass";
}

bool ZLabelButton::WantsKey(const ZNativeKeyEvent& key) const
{
    return key.Is(kKeyReturn) || key.Is(kKeySpace);
}

void ZLabelButton::KeyDown(const ZNativeKeyEvent& key)
{
    if (WantsKey(key))
        Act();
}

void ZLabelButton::Draw(const ZRect& /*rect*/)
{
    if (!mContext)
        return;
    const auto state = mOver && mMouseCaptured ? ZPanelStyle::ButtonState::kPressed
                       : mOver                 ? ZPanelStyle::ButtonState::kOver
                                               : ZPanelStyle::ButtonState::kNormal;
    ZPanelStyle::drawButton(*mContext, mText, GetFrame(), state);
    if (mFocused)
        ZPanelStyle::drawEdge(*mContext, GetFrame(), ZPanelStyle::kAccent);
}

void ZLabelButton::SetOver(bool over)
{
    if (std::exchange(mOver, over) != over)
        Invalidate();
}

void ZLabelButton::MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    mOver = true;
    SetMouseCapture(true, true);
    Invalidate();
}

void ZLabelButton::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

void ZLabelButton::MouseMoved(const ZPoint& point, std::uint32_t /*mods*/)
{
    SetOver(GetFrame().Contains(point));
}

void ZLabelButton::MouseUp(const ZPoint& point, std::uint32_t /*mods*/)
{
    if (!mMouseCaptured)
        return;
    SetMouseCapture(false, true);
    mOver = GetFrame().Contains(point);
    Invalidate();
    if (mOver)
        Act();
}

void ZLabelButton::Act() const
{
    // Runs a copy, since the action may destroy the button.
    if (const auto action = mAction)
        action();
}

void ZLabelButton::SetFocus(bool focus)
{
    mFocused = focus;
    Invalidate();
}

void ZLabelButton::MouseEntered(const ZPoint& /*point*/)
{
    SetOver(true);
}

void ZLabelButton::MouseLeft()
{
    SetOver(false);
}

}  // namespace orvane
