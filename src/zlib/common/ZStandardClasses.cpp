#include "zlib/common/ZStandardClasses.h"

#include "zlib/common/ZAudioDocument.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZElement.h"
#include "zlib/common/ZSignalBay.h"

namespace orvane
{

void registerStandardClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZAudioDocument>("ZAudioDocumentClass");
    registry.AddStandard<ZElement>("ZElementClass");
    registry.AddStandard<ZSignalBay>("ZSignalBayClass");
}

}  // namespace orvane
