// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZCheckBox.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>

namespace orvane
{

namespace
{

constexpr std::int32_t kGapToTitle = 2;

}  // namespace

ZCheckBox::ZCheckBox(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
    , mOffBitmap(readBitmap(*xml, "off", application))
    , mOnBitmap(readBitmap(*xml, "on", application))
    , mTitle(xml->GetAttribute("title"))
{
    SetNavigable(true);
}

bool ZCheckBox::IsKindOf(std::string_view className) const
{
    return className == "ZCheckBoxClass" || ZView::IsKindOf(className);
}

const char* ZCheckBox::GetClassName() const
{
    return "ZCheckBoxClass";
}

void ZCheckBox::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() == ZELEMENTCHANGED)
        Invalidate();
    else
        ZView::HandleZMessage(message);
}

void ZCheckBox::OnAttached()
{
    if (mOffBitmap)
        Resize(mFrame.GetWidth(), mOffBitmap->GetHeight());
}

void ZCheckBox::MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    Flip();
}

bool ZCheckBox::WantsKey(const ZNativeKeyEvent& key) const
{
    return key.Is(kKeySpace);
}

void ZCheckBox::KeyDown(const ZNativeKeyEvent& key)
{
    if (WantsKey(key))
        Flip();
}

void ZCheckBox::Flip()
{
    if (mElement)
        editDiscrete(mElement, mElement->GetDiscrete() > 0 ? 0 : 1);
}

void ZCheckBox::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

void ZCheckBox::Draw(const ZRect& /*update*/)
{
    const bool isOn = mElement && mElement->GetDiscrete() == 1;
    if (const auto& bitmap = isOn ? mOnBitmap : mOffBitmap)
        DrawBitmap(*bitmap, 0, 0);
    DrawTitle();
}

// The title stands to the right of the picture, centred on its height.
void ZCheckBox::DrawTitle()
{
    const std::int32_t width = mOffBitmap ? mOffBitmap->GetWidth() : 0;
    const std::int32_t height = mOffBitmap ? mOffBitmap->GetHeight() : 0;
    const std::int32_t lower = (height - StringHeight(mTitle)) / 2;
    ZRect title = mFrame;
    title.left += width + kGapToTitle;
    title.top += std::max(lower, 0);
    DrawString(mTitle, title, 0, kAlignBegin, 1);
}

}  // namespace orvane
