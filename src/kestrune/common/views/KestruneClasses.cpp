// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneClasses.h"

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
#include "zlib/common/objects/ZClassRegistry.h"

namespace orvane
{

namespace
{

/// Once a process: other instances may have the dialog open when a further one registers.
void setNameScaleRunner()
{
    static const bool once = [] {
        KestruneNameScaleDialog::SetRunner(&KestruneNameScaleWindow::Run);
        return true;
    }();
    static_cast<void>(once);
}

}  // namespace

void registerKestruneClasses(ZClassRegistry& registry)
{
    setNameScaleRunner();
    registry.AddStandard<KestruneCentsSlider>("KestruneCentsSliderClass");
    registry.AddStandard<KestruneCorrectionMeter>("KestruneCorrectionMeterClass");
    registry.AddStandard<KestruneDocument>("KestruneDocumentClass");
    registry.AddStandard<KestruneIgnoreKeysView>("KestruneIgnoreKeysViewClass");
    registry.AddStandard<KestruneKeyboardLabel>("KestruneKeyboardLabelClass");
    registry.AddStandard<KestruneKeyboardView>("KestruneKeyboardViewClass");
    registry.AddStandard<KestrunePitchGraph>("KestrunePitchGraphClass");
    registry.AddStandard<ZPsolaBay>("ZPsolaBayClass");
}

}  // namespace orvane
