#include "kestrune/common/KestruneClasses.h"

#include "kestrune/common/KestruneCentsSlider.h"
#include "kestrune/common/KestruneCorrectionMeter.h"
#include "kestrune/common/KestruneDocument.h"
#include "kestrune/common/KestruneIgnoreKeysView.h"
#include "kestrune/common/KestruneKeyboardLabel.h"
#include "kestrune/common/KestruneKeyboardView.h"
#include "kestrune/common/KestrunePitchGraph.h"
#include "kestrune/common/ZPsolaBay.h"
#include "zlib/common/ZClassRegistry.h"

namespace orvane
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
    registry.AddStandard<ZPsolaBay>("ZPsolaBayClass");
}

}  // namespace orvane
