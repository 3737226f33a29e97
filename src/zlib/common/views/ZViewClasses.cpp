// SPDX-License-Identifier: GPL-3.0-or-later
// The windows and views that descriptions name.
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/views/ZBevelView.h"
#include "zlib/common/views/ZPluginBackground.h"
#include "zlib/common/views/ZPluginLogoView.h"
#include "zlib/common/views/ZPluginWindow.h"
#include "zlib/common/views/ZStringView.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

namespace
{

void registerViewClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZBevelView>("ZBevelViewClass");
    registry.AddStandard<ZPluginBackground>("ZPluginBackgroundClass");
    registry.AddStandard<ZPluginLogoView>("ZPluginLogoViewClass");
    registry.AddStandard<ZPluginWindow>("ZPluginWindowClass");
    registry.AddStandard<ZStringView>("ZStringViewClass");
    registry.AddStandard<ZView>("ZViewClass");
    registry.AddStandard<ZWindow>("ZWindowClass");
}

[[maybe_unused]] const ZStandardClasses viewClasses{&registerViewClasses};

}  // namespace

}  // namespace orvane
