#include "zlib/common/ZStandardClasses.h"

#include "zlib/common/ZAudioDocument.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZElement.h"
#include "zlib/common/ZElementBay.h"
#include "zlib/common/ZMeterBay.h"
#include "zlib/common/ZSignalBay.h"
#include "zlib/common/ZThruBay.h"

namespace orvane
{

void registerStandardClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZAudioDocument>("ZAudioDocumentClass");
    registry.AddStandard<ZElement>("ZElementClass");
    registry.AddStandard<ZSignalBay>("ZSignalBayClass");
    registry.AddStandard<ZElementBay>("ZElementBayClass");
    registry.AddStandard<ZThruBay>("ZThruBayClass");
    registry.AddStandard<ZMeterBay>("ZMeterBayClass");
}

}  // namespace orvane
