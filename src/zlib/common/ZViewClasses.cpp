#include "zlib/common/ZViewClasses.h"

namespace orvane
{

void registerViewClasses(ZClassRegistry& /*registry*/)
{
}

}  // namespace orvane
