// SPDX-License-Identifier: GPL-3.0-or-later
// What the library knows of the product once it is loaded: classes, dialogs, version.
#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/pitch/KestruneDocument.h"
#include "kestrune/common/pitch/KestruneNameScaleDialog.h"
#include "kestrune/common/pitch/ZPsolaBay.h"
#include "kestrune/common/views/KestruneCentsSlider.h"
#include "kestrune/common/views/KestruneCorrectionMeter.h"
#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "kestrune/common/views/KestruneKeyboardLabel.h"
#include "kestrune/common/views/KestruneKeyboardView.h"
#include "kestrune/common/views/KestruneNameScaleWindow.h"
#include "kestrune/common/views/KestrunePitchGraph.h"
#include "kestrune/common/views/KestruneWindowMenu.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/objects/ZClassRegistry.h"

namespace orvane
{

namespace
{

void registerKestruneClasses(ZClassRegistry& registry)
{
    registry.AddStandard<KestruneCentsSlider>("KestruneCentsSliderClass");
    registry.AddStandard<KestruneCorrectionMeter>("KestruneCorrectionMeterClass");
    registry.AddStandard<KestruneDocument>("KestruneDocumentClass");
    registry.AddStandard<KestruneIgnoreKeysView>("KestruneIgnoreKeysViewClass");
    registry.AddStandard<KestruneKeyboardLabel>("KestruneKeyboardLabelClass");
    registry.AddStandard<KestruneKeyboardView>("KestruneKeyboardViewClass");
    registry.AddStandard<KestrunePitchGraph>("KestrunePitchGraphClass");
    registry.AddStandard<KestruneWindowMenu>("KestruneWindowMenuClass");
    registry.AddStandard<ZPsolaBay>("ZPsolaBayClass");
}

bool setUpProduct()
{
    KestruneNameScaleDialog::SetRunner(&KestruneNameScaleWindow::Run);
    ZApp::SetVersion(productVersion());
    return true;
}

[[maybe_unused]] const ZStandardClasses kestruneClasses{&registerKestruneClasses};
[[maybe_unused]] const bool isProductSetUp = setUpProduct();

}  // namespace

}  // namespace orvane
