// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLTag.h"

#include "zlib/common/objects/ZXMLTagReader.h"

namespace orvane
{

namespace
{

std::string_view untilNul(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

}  // namespace

ZXMLTag::ZXMLTag(std::string_view name)
    : mName(untilNul(name).substr(0, kNameSize - 1))
    , mKind(kOpening)
{
}

std::size_t ZXMLTag::Read(std::string_view text, std::size_t position)
{
    return ZXMLTagReader(*this, ZXMLTagReader::Reading::kWhole).Read(text, position);
}

std::size_t ZXMLTag::ReadHeading(std::string_view text, std::size_t position)
{
    return ZXMLTagReader(*this, ZXMLTagReader::Reading::kHeading).Read(text, position);
}

std::int32_t ZXMLTag::AttributeCount() const
{
    return static_cast<std::int32_t>(mAttributes.size());
}

const char* ZXMLTag::AttributeName(std::int32_t index) const
{
    if (index < 0 || index >= AttributeCount())
        return nullptr;
    return mBlock.c_str() + mAttributes[static_cast<std::size_t>(index)].name;
}

const char* ZXMLTag::AttributeValue(std::int32_t index) const
{
    if (index < 0 || index >= AttributeCount())
        return nullptr;
    return mBlock.c_str() + mAttributes[static_cast<std::size_t>(index)].value;
}

const char* ZXMLTag::FindValue(std::string_view name) const
{
    for (const Attribute& attribute : mAttributes)
        if (name == mBlock.c_str() + attribute.name)
            return mBlock.c_str() + attribute.value;
    return nullptr;
}

void ZXMLTag::AddAttribute(std::string_view name, std::string_view value)
{
    Attribute attribute{};
    attribute.name = static_cast<std::uint32_t>(mBlock.size());
    mBlock.append(untilNul(name)).push_back('\0');
    attribute.value = static_cast<std::uint32_t>(mBlock.size());
    mBlock.append(untilNul(value)).push_back('\0');
    mAttributes.push_back(attribute);
}

}  // namespace orvane
