#include "zlib/common/ZObject.h"

namespace orvane
{

ZObject::ZObject(std::string_view name)
    : mName(name)
{
}

bool ZObject::IsKindOf(std::string_view className) const
{
    return className == "ZObject";
}

const char* ZObject::GetClassName() const
{
    return "ZObject";
}

void ZObject::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
}

void ZObject::RestoreBody(const boost::shared_ptr<ZXMLElement>& /*xml*/)
{
}

void ZObject::Dump() const
{
}

}  // namespace orvane
