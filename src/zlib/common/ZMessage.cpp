#include "zlib/common/ZMessage.h"

#include "zlib/common/ZException.h"

namespace orvane
{

ZMessage::ZMessage(std::int32_t id)
    : mId(id)
{
}

bool ZMessage::IsKindOf(std::string_view className) const
{
    return className == "ZMessageClass" || ZObject::IsKindOf(className);
}

const char* ZMessage::GetClassName() const
{
    return "ZMessageClass";
}

boost::shared_ptr<ZXMLElement> ZMessage::ExtractHeader() const
{
    throw ZException(-2, "Implement ExtractHeader\n");
}

void ZMessage::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(-2, "Implement ExtractBody\n");
}

ZDictionary::ZDictionary()
    : ZMessage(0)
{
}

ZDictionary::~ZDictionary()
{
    RemoveItems();
}

std::uint64_t elementIdOf(const ZObject* object)
{
    return reinterpret_cast<std::uintptr_t>(object);
}

}  // namespace orvane
