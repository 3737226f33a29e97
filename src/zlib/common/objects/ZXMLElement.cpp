// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLElement.h"

#include "zlib/common/objects/ZString.h"
#include "zlib/common/objects/ZTrace.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <limits>

namespace orvane
{

namespace
{

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// The text without leading white space, which the C library's number functions skip.
const char* skipBlanks(const char* text)
{
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    return text;
}

std::int32_t parseInteger(const char* text)
{
    text = skipBlanks(text);
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+')
        ++text;
    constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
    std::int64_t magnitude = 0;
    for (; isDigit(*text); ++text)
        magnitude = std::min(magnitude * 10 + (*text - '0'), kMax + 1);
    return static_cast<std::int32_t>(negative ? -magnitude : std::min(magnitude, kMax));
}

/// Lives as long as the library.
locale_t numberLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// True for a decimal number. strtod also reads words such as "nan" and base 16.
bool startsDecimal(const char* text)
{
    text = skipBlanks(text);
    if (*text == '-' || *text == '+')
        ++text;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        return false;
    return isDigit(*text) || *text == '.';
}

double parseDouble(const char* text)
{
    if (!startsDecimal(text))
        return 0.0;
    // Not from_chars, which does not say whether a number out of range is too large or too small.
    const double value = strtod_l(text, nullptr, numberLocale());
    constexpr double kMax = std::numeric_limits<double>::max();
    return std::clamp(value, -kMax, kMax);
}

float toFloat(double value)
{
    constexpr double kMax = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kMax, kMax));
}

template <class Number, class... Format>
std::string formatNumber(Number number, Format... format)
{
    std::array<char, 32> digits;  // enough for 64-bit integers and for six digits with an exponent
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, format...);
    return {digits.data(), result.ptr};
}

std::string writeTag(const ZXMLElement& element)
{
    std::string text = "<" + element.GetName();
    for (std::int32_t i = 0; i < element.GetAttributeCount(); ++i) {
        text.append(" ").append(element.GetAttributeName(i));
        text.append("=\"").append(element.GetAttributeValue(i)).append("\"");
    }
    return text + ">\n";
}

}  // namespace

ZXMLElement::ZXMLElement(std::string_view name)
    : mTag(name)
{
}

ZXMLElement::ZXMLElement(const ZXMLTag& tag)
    : mTag(tag)
{
}

ZXMLElement::ZXMLElement(const boost::shared_ptr<ZXMLText>& text, std::int32_t tagPosition,
                         const ZXMLText::Range& range)
    : ZXMLDocument(text, range)
{
    mTag.Read(text->Characters(), static_cast<std::size_t>(tagPosition));
}

boost::shared_ptr<ZXMLElement> ZXMLElement::FromText(const boost::shared_ptr<ZXMLText>& text,
                                                     std::int32_t tagPosition,
                                                     const ZXMLText::Range& range)
{
    assert(text && tagPosition >= 0);
    return boost::shared_ptr<ZXMLElement>(new ZXMLElement(text, tagPosition, range));
}

const char* ZXMLElement::GetAttributeName(std::int32_t index) const
{
    return mTag.AttributeName(index);
}

const char* ZXMLElement::GetAttributeValue(std::int32_t index) const
{
    return mTag.AttributeValue(index);
}

bool ZXMLElement::HasAttribute(std::string_view name) const
{
    return GetAttribute(name) != nullptr;
}

const char* ZXMLElement::GetAttribute(std::string_view name) const
{
    return mTag.FindValue(name);
}

const char* ZXMLElement::GetAttributeOr(std::string_view name, const char* absent) const
{
    const char* const value = GetAttribute(name);
    return value ? value : absent;
}

boost::shared_ptr<ZString> ZXMLElement::GetAttributeString(std::string_view name) const
{
    for (std::int32_t i = GetAttributeCount() - 1; i >= 0; --i)
        if (name == GetAttributeName(i))
            return boost::make_shared<ZString>(GetAttributeValue(i));
    return {};
}

bool ZXMLElement::GetAttributeBool(std::string_view name) const
{
    return AttributeIs(name, "true");
}

bool ZXMLElement::AttributeIs(std::string_view name, std::string_view value) const
{
    const char* const found = GetAttribute(name);
    return found && value == found;
}

std::int32_t ZXMLElement::ReadInteger(std::string_view name, std::int32_t absent) const
{
    const char* const value = GetAttribute(name);
    return value ? parseInteger(value) : absent;
}

std::int8_t ZXMLElement::GetInt8(std::string_view name) const
{
    return static_cast<std::int8_t>(ReadInteger(name, 0));
}

std::uint8_t ZXMLElement::GetUInt8(std::string_view name) const
{
    return static_cast<std::uint8_t>(ReadInteger(name, -1));
}

std::int16_t ZXMLElement::GetInt16(std::string_view name) const
{
    return static_cast<std::int16_t>(ReadInteger(name, -1));
}

std::uint16_t ZXMLElement::GetUInt16(std::string_view name) const
{
    return static_cast<std::uint16_t>(ReadInteger(name, -1));
}

std::int32_t ZXMLElement::GetInt32(std::string_view name) const
{
    return ReadInteger(name, -1);
}

std::uint32_t ZXMLElement::GetUInt32(std::string_view name) const
{
    return static_cast<std::uint32_t>(ReadInteger(name, -1));
}

std::int64_t ZXMLElement::GetInt64(std::string_view name) const
{
    return ReadInteger(name, -1);
}

std::uint64_t ZXMLElement::GetUInt64(std::string_view name) const
{
    return static_cast<std::uint64_t>(GetInt64(name));
}

float ZXMLElement::GetFloat(std::string_view name) const
{
    return toFloat(GetDouble(name));
}

double ZXMLElement::GetDouble(std::string_view name) const
{
    const char* const value = GetAttribute(name);
    return value ? parseDouble(value) : 0.0;
}

void ZXMLElement::AddAttribute(std::string_view name, std::string_view value)
{
    mTag.AddAttribute(name, value);
}

void ZXMLElement::AddAttribute(std::string_view name, const char* value)
{
    AddAttribute(name, value ? std::string_view(value) : std::string_view());
}

void ZXMLElement::AddAttribute(std::string_view name, std::int32_t value)
{
    AddAttribute(name, formatNumber(value));
}

void ZXMLElement::AddAttribute(std::string_view name, std::int64_t value)
{
    AddAttribute(name, formatNumber(value));
}

void ZXMLElement::AddAttribute(std::string_view name, float value)
{
    AddAttribute(name, formatNumber(value, std::chars_format::general, 6));
}

void ZXMLElement::AddAttribute(std::string_view name, const boost::shared_ptr<ZString>& value)
{
    AddAttribute(name, value ? value->ToNarrow() : std::string());
}

std::string ZXMLElement::Write(std::int32_t indent) const
{
    const std::string tabs(static_cast<std::size_t>(std::max(indent, 0)), '\t');
    std::string text = tabs + writeTag(*this);
    text.append(GetText()).append(tabs);
    return text.append("</").append(GetName()).append(">\n");
}

void ZXMLElement::Dump() const
{
    ZTrace::Write(Write(0));
}

std::string withoutMarkup(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '"':
            result += '\'';
            break;
        case '<':
            result += "\u2039";
            break;
        case '>':
            result += "\u203A";
            break;
        default:
            result += character;
        }
    }
    return result;
}

}  // namespace orvane
