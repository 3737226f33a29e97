// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZMessage.h"

#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessageRegistry.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"

#include <algorithm>
#include <iterator>

namespace orvane
{

namespace
{

using AddFunction = void (*)(ZMessage& message, std::string_view name, const ZXMLElement& xml);

template <ZMsgValue T, T (ZXMLElement::*kRead)(std::string_view) const>
void addValue(ZMessage& message, std::string_view name, const ZXMLElement& xml)
{
    message.Add<T>(name, (xml.*kRead)("value"));
}

template <ZMsgValue T, T (*kRead)(const ZXMLElement&)>
void addShape(ZMessage& message, std::string_view name, const ZXMLElement& xml)
{
    message.Add<T>(name, kRead(xml));
}

void addString(ZMessage& message, std::string_view name, const ZXMLElement& xml)
{
    const auto value = xml.GetAttributeString("value");
    message.Add<ZString>(name, value ? *value : ZString());
}

struct FieldType
{
    std::string_view tag;
    AddFunction add;
};

constexpr FieldType kFieldTypes[] = {
    {"int8", addValue<std::int8_t, &ZXMLElement::GetInt8>},
    {"uint8", addValue<std::uint8_t, &ZXMLElement::GetUInt8>},
    {"int16", addValue<std::int16_t, &ZXMLElement::GetInt16>},
    {"uint16", addValue<std::uint16_t, &ZXMLElement::GetUInt16>},
    {"int32", addValue<std::int32_t, &ZXMLElement::GetInt32>},
    {"uint32", addValue<std::uint32_t, &ZXMLElement::GetUInt32>},
    {"int64", addValue<std::int64_t, &ZXMLElement::GetInt64>},
    {"uint64", addValue<std::uint64_t, &ZXMLElement::GetUInt64>},
    {"float", addValue<float, &ZXMLElement::GetFloat>},
    {"zfloat", addValue<float, &ZXMLElement::GetFloat>},
    {"double", addValue<double, &ZXMLElement::GetDouble>},
    {"bool", addValue<bool, &ZXMLElement::GetAttributeBool>},
    {"ZString", addString},
    {"ZPoint", addShape<ZPoint, readPoint>},
    {"ZRect", addShape<ZRect, readRect>},
    {"ZColor", addShape<ZColor, readColor>},
};

}  // namespace

ZMessage::ZMessage(std::int32_t id)
    : mId(id)
{
}

ZMessage::ZMessage(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes)
    : ZObject(xml)
    , mId(ZMessageRegistry::Get().Find(xml->GetAttributeOr("id", "")))
{
    for (std::int32_t i = 0; i < xml->GetChildCount(); ++i)
        AddField(xml->GetChild(i), classes);
}

void ZMessage::AddField(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes)
{
    const char* const name = xml->GetAttributeOr("name", "");
    if (xml->IsNamed("ZObject")) {
        const char* const className = xml->GetAttributeOr("class", "");
        Add<boost::shared_ptr<ZObject>>(name, classes.Create(className, xml));
        return;
    }
    const auto* const type =
        std::find_if(std::begin(kFieldTypes), std::end(kFieldTypes),
                     [&](const FieldType& known) { return xml->IsNamed(known.tag); });
    if (type != std::end(kFieldTypes))
        type->add(*this, name, *xml);
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
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void ZMessage::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

boost::shared_ptr<ZMessage> ZMessage::Copy() const
{
    auto copy = boost::make_shared<ZMessage>(mId);
    copy->mItems = mItems;
    return copy;
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
