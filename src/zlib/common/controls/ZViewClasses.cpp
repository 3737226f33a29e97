// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZViewClasses.h"

#include "zlib/common/controls/ZBWKeys.h"
#include "zlib/common/controls/ZBitmapButton.h"
#include "zlib/common/controls/ZCheckBox.h"
#include "zlib/common/controls/ZLabelButton.h"
#include "zlib/common/controls/ZMetalPopupMenu.h"
#include "zlib/common/controls/ZMetalSlider.h"
#include "zlib/common/controls/ZPopupMenu.h"
#include "zlib/common/controls/ZSlider.h"
#include "zlib/common/controls/ZTextEdit.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/views/ZBevelView.h"
#include "zlib/common/views/ZGraphAxisView.h"
#include "zlib/common/views/ZPluginBackground.h"
#include "zlib/common/views/ZPluginLogoView.h"
#include "zlib/common/views/ZPluginWindow.h"
#include "zlib/common/views/ZStringView.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

void registerViewClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZBWKeys>("ZBWKeysClass");
    registry.AddStandard<ZBevelView>("ZBevelViewClass");
    registry.AddStandard<ZBitmapButton>("ZBitmapButtonClass");
    registry.AddStandard<ZCheckBox>("ZCheckBoxClass");
    registry.AddStandard<ZGraphAxisView>("ZGraphAxisViewClass");
    registry.AddStandard<ZLabelButton>("ZLabelButtonClass");
    registry.AddStandard<ZMetalPopupMenu>("ZMetalPopupMenuClass");
    registry.AddStandard<ZMetalSlider>("ZMetalSliderClass");
    registry.AddStandard<ZPluginBackground>("ZPluginBackgroundClass");
    registry.AddStandard<ZPluginLogoView>("ZPluginLogoViewClass");
    registry.AddStandard<ZPluginWindow>("ZPluginWindowClass");
    registry.AddStandard<ZPopupMenu>("ZPopupMenuClass");
    registry.AddStandard<ZSlider>("ZSliderClass");
    registry.AddStandard<ZStringView>("ZStringViewClass");
    registry.AddStandard<ZTextEdit>("ZTextEditClass");
    registry.AddStandard<ZView>("ZViewClass");
    registry.AddStandard<ZWindow>("ZWindowClass");
}

}  // namespace orvane
