#include "kestrune/common/KestruneClasses.h"

#include "kestrune/common/KestruneCentsSlider.h"
#include "kestrune/common/KestruneCorrectionMeter.h"
#include "kestrune/common/KestruneDocument.h"
#include "kestrune/common/KestruneIgnoreKeysView.h"
#include "kestrune/common/KestruneKeyboardLabel.h"
#include "kestrune/common/KestruneKeyboardView.h"
#include "kestrune/common/KestruneNameScaleDialog.h"
#include "kestrune/common/KestruneNameScaleWindow.h"
#include "kestrune/common/KestrunePitchGraph.h"
#include "kestrune/common/ZPsolaBay.h"
#include "zlib/common/ZClassRegistry.h"

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
