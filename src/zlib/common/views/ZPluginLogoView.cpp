// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZPluginLogoView.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <string>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::int64_t kVersionMicroseconds = 10'000'000;

std::string readVersion(const ZXMLElement& view)
{
    const auto version = view.GetChild("version");
    if (!version)
        return "X.Y.Z.bbb";
    std::string text = version->GetAttributeOr("major", "X");
    text.append(".").append(version->GetAttributeOr("minor", "Y"));
    text.append(".").append(version->GetAttributeOr("sub", "Z"));
    text.append(".").append(version->GetAttributeOr("build", "bbbb"));
    return text;
}

}  // namespace

ZPluginLogoView::ZPluginLogoView(const boost::shared_ptr<ZXMLElement>& xml,
                                 ZApplication* application)
    : ZStringView(xml, application)
    , mVersionTimer(ZWindow::kNoTimer)
{
    mText = ZString(readVersion(*xml));
    if (const auto name = xml->GetChild("productnamebitmap"))
        mProductNameBitmap = boost::make_shared<ZBitmap>(*name, application);
}

ZPluginLogoView::~ZPluginLogoView()
{
    StopVersionTimer();
}

bool ZPluginLogoView::IsKindOf(std::string_view className) const
{
    return className == "ZPluginLogoViewClass" || ZStringView::IsKindOf(className);
}

const char* ZPluginLogoView::GetClassName() const
{
    return "ZPluginLogoViewClass";
}

void ZPluginLogoView::OnDetached()
{
    StopVersionTimer();
    mShowVersion = false;  // no timer runs without a window
    ZStringView::OnDetached();
}

void ZPluginLogoView::StopVersionTimer()
{
    const std::int64_t timer = std::exchange(mVersionTimer, ZWindow::kNoTimer);
    if (mWindow && timer != ZWindow::kNoTimer)
        mWindow->StopTimer(timer);
}

void ZPluginLogoView::MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    mShowVersion = !mShowVersion;
    Invalidate();
    StopVersionTimer();
    if (mWindow)
        mVersionTimer = mWindow->StartTimer(kVersionMicroseconds, *this);
}

// Two quick clicks count as two clicks.
void ZPluginLogoView::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

bool ZPluginLogoView::OnTimer(std::int64_t timerId)
{
    if (mVersionTimer == ZWindow::kNoTimer || timerId != mVersionTimer)
        return false;
    StopVersionTimer();
    mShowVersion = false;
    Invalidate();
    return true;
}

void ZPluginLogoView::Draw(const ZRect& /*update*/)
{
    if (mShowVersion)
        DrawString(mText, mFrame, 0, mAlign, 1);
    else if (mProductNameBitmap)
        DrawBitmap(*mProductNameBitmap, 0, 0);
}

}  // namespace orvane
