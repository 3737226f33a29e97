#include "zlib/common/ZLabelButton.h"

#include "zlib/common/ZPanelStyle.h"

#include <utility>

namespace orvane
{

ZLabelButton::ZLabelButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZStringView(xml, application)
{
}

bool ZLabelButton::IsKindOf(std::string_view className) const
{
    return className == "ZLabelButtonClass" || ZStringView::IsKindOf(className);
}

const char* ZLabelButton::GetClassName() const
{
    return "ZLabelButtonClass";
}

void ZLabelButton::Draw(const ZRect& /*rect*/)
{
    if (!mContext)
        return;
    const auto state = mOver && mMouseCaptured ? ZPanelStyle::ButtonState::kPressed
                       : mOver                 ? ZPanelStyle::ButtonState::kOver
                                               : ZPanelStyle::ButtonState::kNormal;
    ZPanelStyle::drawButton(*mContext, mText, GetFrame(), state);
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
    // A copy, since the action may end the button.
    if (const auto action = mAction; mOver && action)
        action();
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
