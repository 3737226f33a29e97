#include "zlib/common/ZViewClasses.h"

#include "zlib/common/ZBWKeys.h"
#include "zlib/common/ZBevelView.h"
#include "zlib/common/ZBitmapButton.h"
#include "zlib/common/ZCheckBox.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZGraphAxisView.h"
#include "zlib/common/ZLabelButton.h"
#include "zlib/common/ZMetalPopupMenu.h"
#include "zlib/common/ZMetalSlider.h"
#include "zlib/common/ZPluginBackground.h"
#include "zlib/common/ZPluginLogoView.h"
#include "zlib/common/ZPluginWindow.h"
#include "zlib/common/ZPopupMenu.h"
#include "zlib/common/ZSlider.h"
#include "zlib/common/ZStringView.h"
#include "zlib/common/ZTextEdit.h"
#include "zlib/common/ZView.h"
#include "zlib/common/ZWindow.h"

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
