// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZShader.h"

#include "zlib/common/drawing/ZShadingFunction.h"

namespace orvane
{

ZShader::ZShader(const ZPoint& from, const ZPoint& to, const ZShadingFunction& function)
    : mBrush(function.MakeBrush(from, to))
{
}

}  // namespace orvane
