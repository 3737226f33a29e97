#include "kestrune/common/KestruneClasses.h"

#include "kestrune/common/KestruneCentsSlider.h"
#include "kestrune/common/KestruneDocument.h"
#include "kestrune/common/ZPsolaBay.h"
#include "zlib/common/ZClassRegistry.h"

namespace orvane
{

void registerKestruneClasses(ZClassRegistry& registry)
{
    registry.AddStandard<KestruneCentsSlider>("KestruneCentsSliderClass");
    registry.AddStandard<KestruneDocument>("KestruneDocumentClass");
    registry.AddStandard<ZPsolaBay>("ZPsolaBayClass");
}

}  // namespace orvane
