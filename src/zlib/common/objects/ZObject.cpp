// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZObject.h"

#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

ZObject::ZObject(std::string_view name)
    : mName(name)
{
}

ZObject::ZObject(const boost::shared_ptr<ZXMLElement>& xml)
{
    const char* const name = xml ? xml->GetAttribute("name") : nullptr;
    if (name)
        mName = name;
}

bool ZObject::IsKindOf(std::string_view className) const
{
    return className == "ZObject";
}

const char* ZObject::GetClassName() const
{
    return "ZObject";
}

boost::shared_ptr<ZXMLElement> ZObject::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("ZObject");
    xml->AddAttribute("name", mName);
    xml->AddAttribute("class", "ZObject");
    return xml;
}

void ZObject::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
}

void ZObject::RestoreBody(const boost::shared_ptr<ZXMLElement>& /*xml*/)
{
}

boost::shared_ptr<ZXMLElement> ZObject::ExtractXML() const
{
    auto xml = ExtractHeader();
    assert(xml);
    ExtractBody(xml);
    return xml;
}

void ZObject::Dump() const
{
}

}  // namespace orvane
