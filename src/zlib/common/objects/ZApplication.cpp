// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZApplication.h"

#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZResources.h"

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
