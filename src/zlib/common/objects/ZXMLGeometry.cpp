// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLGeometry.h"

#include "zlib/common/objects/ZXMLElement.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvane
{

namespace
{

std::int32_t addWithin(std::int32_t edge, std::int32_t size)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t sum = std::int64_t{edge} + size;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, Limits::min(), Limits::max()));
}

std::uint8_t readByte(const ZXMLElement& xml, const char* name)
{
    return static_cast<std::uint8_t>(xml.GetInt32(name));
}

}  // namespace

ZPoint readPoint(const ZXMLElement& xml)
{
    return {xml.GetInt32("x"), xml.GetInt32("y")};
}

ZRect readRect(const ZXMLElement& xml)
{
    const std::int32_t left = xml.GetInt32("left");
    const std::int32_t top = xml.GetInt32("top");
    return {left, top, addWithin(left, xml.GetInt32("width")),
            addWithin(top, xml.GetInt32("height"))};
}

ZColor readColor(const ZXMLElement& xml)
{
    return {readByte(xml, "red"), readByte(xml, "green"), readByte(xml, "blue"),
            readByte(xml, "alpha")};
}

}  // namespace orvane
