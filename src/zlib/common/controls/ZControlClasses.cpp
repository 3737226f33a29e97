// SPDX-License-Identifier: GPL-3.0-or-later
// The controls that descriptions name.
#include "zlib/common/controls/ZBitmapButton.h"
#include "zlib/common/controls/ZCheckBox.h"
#include "zlib/common/controls/ZContextMenu.h"
#include "zlib/common/controls/ZLabelButton.h"
#include "zlib/common/controls/ZMetalPopupMenu.h"
#include "zlib/common/controls/ZMetalSlider.h"
#include "zlib/common/controls/ZTextEdit.h"
#include "zlib/common/objects/ZClassRegistry.h"

namespace orvane
{

namespace
{

void registerControlClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZBitmapButton>("ZBitmapButtonClass");
    registry.AddStandard<ZCheckBox>("ZCheckBoxClass");
    registry.AddStandard<ZContextMenu>("ZContextMenuClass");
    registry.AddStandard<ZLabelButton>("ZLabelButtonClass");
    registry.AddStandard<ZMetalPopupMenu>("ZMetalPopupMenuClass");
    registry.AddStandard<ZMetalSlider>("ZMetalSliderClass");
    registry.AddStandard<ZTextEdit>("ZTextEditClass");
}

[[maybe_unused]] const ZStandardClasses controlClasses{&registerControlClasses};

}  // namespace

}  // namespace orvane
