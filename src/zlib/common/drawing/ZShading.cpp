// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZShading.h"

#include "zlib/common/drawing/ZNyquistBkgdShader.h"
#include "zlib/common/drawing/ZNyquistTitleShader.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZString.h"

#include <boost/make_shared.hpp>

namespace orvane
{

boost::shared_ptr<ZShadingFunction> MakeShadingFunction(const ZString& name)
{
    constexpr ZColor kBlack{0, 0, 0, 255};
    constexpr ZColor kWhite{255, 255, 255, 255};
    if (name == ZString("ZNyquistBkgdShader"))
        return boost::make_shared<ZNyquistBkgdShader>(kBlack, kWhite, 0.5f, 0.5f);
    if (name == ZString("ZNyquistTitleShader"))
        return boost::make_shared<ZNyquistTitleShader>(kBlack, kWhite, 0.5f, 0.5f);
    throw ZException("Unimplemented Shader Function");
}

}  // namespace orvane
