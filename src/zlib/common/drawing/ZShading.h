// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/shared_ptr.hpp>

namespace orvane
{

class ZShadingFunction;
class ZString;

/// Makes the shading function that a description names: "ZNyquistBkgdShader" or
/// "ZNyquistTitleShader". Throws ZException kGeneral "Unimplemented Shader Function" for any other
/// name.
[[nodiscard]] boost::shared_ptr<ZShadingFunction> MakeShadingFunction(const ZString& name);

}  // namespace orvane
