#include "zlib/common/ZShader.h"

#include "zlib/common/ZShadingFunction.h"

namespace orvane
{

ZShader::ZShader(const ZPoint& from, const ZPoint& to, const ZShadingFunction& function)
    : mBrush(function.MakeBrush(from, to))
{
}

}  // namespace orvane
