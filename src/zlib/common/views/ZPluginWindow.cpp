// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZPluginWindow.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"

namespace orvane
{

bool ZPluginWindow::IsKindOf(std::string_view className) const
{
    return className == "ZPluginWindowClass" || ZWindow::IsKindOf(className);
}

const char* ZPluginWindow::GetClassName() const
{
    return "ZPluginWindowClass";
}

void ZPluginWindow::Detach()
{
    if (!IsAttached())
        return;
    GetRootView()->HandleZMessage(makeMessage<ZWindow*>(ZDETACHED, "DetachedWindow", this));
    SetAttached(false);
}

bool ZPluginWindow::NativeKey(const ZNativeKeyEvent& event)
{
    ZWindow::NativeKey(event);
    return true;
}

}  // namespace orvane
