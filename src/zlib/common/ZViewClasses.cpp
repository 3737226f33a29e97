#include "zlib/common/ZViewClasses.h"

#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZStringView.h"
#include "zlib/common/ZView.h"

namespace orvane
{

void registerViewClasses(ZClassRegistry& registry)
{
    registry.AddStandard<ZStringView>("ZStringViewClass");
    registry.AddStandard<ZView>("ZViewClass");
}

}  // namespace orvane
