#include "zlib/common/ZApplication.h"

#include "zlib/common/ZFile.h"
#include "zlib/common/ZResources.h"

namespace orvane
{

const ZResources& ZApplication::GetResources() const
{
    static constexpr ZResources kNone({});
    return kNone;
}

boost::shared_ptr<ZFile> ZApplication::GetResourceFile(const ZString& /*name*/)
{
    return nullptr;
}

}  // namespace orvane
