// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLTag.h"

#include "zlib/common/objects/ZXMLTagReader.h"

#include <atomic>

namespace orvane
{

namespace
{

std::atomic<std::int64_t> charactersRead{0};

std::string_view untilNul(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

std::size_t readTag(ZXMLTag& tag, ZXMLTagReader::Reading reading, std::string_view text,
                    std::size_t position)
{
    const std::size_t end = ZXMLTagReader(tag, reading).Read(text, position);
    const std::size_t looked = (end ? end + 1 : text.size()) - position;
    charactersRead.fetch_add(static_cast<std::int64_t>(looked), std::memory_order_relaxed);
    return end;
}

}  // namespace

ZXMLTag::ZXMLTag(std::string_view name)
    : mName(untilNul(name).substr(0, kNameSize - 1))
    , mKind(kOpening)
{
}

std::size_t ZXMLTag::Read(std::string_view text, std::size_t position)
{
    return readTag(*this, ZXMLTagReader::Reading::kWhole, text, position);
}

std::size_t ZXMLTag::ReadHeading(std::string_view text, std::size_t position)
{
    return readTag(*this, ZXMLTagReader::Reading::kHeading, text, position);
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

std::int64_t ZXMLTag::CharactersRead()
{
    return charactersRead.load(std::memory_order_relaxed);
}

}  // namespace orvane
