// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowFold.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewFactory.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

ZWindowFold::ZWindowFold(const ZXMLElement& windowType)
    : mXml(windowType.GetChild("fold"))
{
    if (!mXml)
        return;
    mSetting = mXml->GetAttributeOr("setting", "");
    mHeight = std::max(mXml->GetInt32("height"), 0);
}

bool ZWindowFold::IsWanted(const ZApp* app) const
{
    std::int32_t value = 0;
    return Exists() && app && app->GetRegistryInt(ZString(mSetting), value) && value != 0;
}

bool ZWindowFold::SetWanted(ZApp& app, bool isWanted) const
{
    return Exists() && app.SetRegistryInt(ZString(mSetting), isWanted ? 1 : 0);
}

void ZWindowFold::Open(ZView& root, ZApplication* application)
{
    assert(Exists() && !mIsOpen);
    mViews = makeSubviews(*mXml, "fold", application);
    mIsOpen = true;
    for (const auto& view : mViews)
        root.AddSubview(view, false);
}

void ZWindowFold::Close(ZView& root)
{
    assert(mIsOpen);
    mIsOpen = false;
    for (const auto& view : std::exchange(mViews, {}))
        root.RemoveSubview(view);
}

}  // namespace orvane
