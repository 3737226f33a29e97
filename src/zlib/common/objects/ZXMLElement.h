// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLTag.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZString;

/// A tag and the raw text between it and its closing tag. Names are compared byte by byte.
///
/// Numbers have the form of the "C" locale; the process's locale belongs to the host and has no
/// effect. A text that does not start with a number reads as 0. A number out of range reads as the
/// nearest end of the range, so every number that is read is finite.
class ZXMLElement : public ZXMLDocument
{
public:
    ZXMLElement() = default;
    explicit ZXMLElement(std::string_view name);
    /// Copies the tag with its attributes. The text is empty.
    explicit ZXMLElement(const ZXMLTag& tag);
    /// Copies text and tag.
    ZXMLElement(const ZXMLElement&) = default;
    ZXMLElement& operator=(const ZXMLElement&) = delete;

    [[nodiscard]] const std::string& GetName() const { return mTag.Name(); }
    [[nodiscard]] bool IsNamed(std::string_view name) const { return mTag.Name() == name; }

    /// Attributes by index; null when there is no such attribute. Pointers are valid until the next
    /// AddAttribute.
    [[nodiscard]] std::int32_t GetAttributeCount() const { return mTag.AttributeCount(); }
    [[nodiscard]] const char* GetAttributeName(std::int32_t index) const;
    [[nodiscard]] const char* GetAttributeValue(std::int32_t index) const;

    [[nodiscard]] bool HasAttribute(std::string_view name) const;
    /// The value of the first attribute of that name; null when there is none.
    [[nodiscard]] const char* GetAttribute(std::string_view name) const;
    /// The same; the second argument when there is no such attribute.
    [[nodiscard]] const char* GetAttributeOr(std::string_view name, const char* absent) const;
    /// The value of the last attribute of that name; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZString> GetAttributeString(std::string_view name) const;
    /// True when the value is exactly "true".
    [[nodiscard]] bool GetAttributeBool(std::string_view name) const;
    /// False when there is no such attribute.
    [[nodiscard]] bool AttributeIs(std::string_view name, std::string_view value) const;

    /// An absent attribute gives 0 (GetInt8, GetFloat, GetDouble), else -1 converted to the type.
    /// All integers are read as signed 32-bit numbers and then converted to the type.
    [[nodiscard]] std::int8_t GetInt8(std::string_view name) const;
    [[nodiscard]] std::uint8_t GetUInt8(std::string_view name) const;
    [[nodiscard]] std::int16_t GetInt16(std::string_view name) const;
    [[nodiscard]] std::uint16_t GetUInt16(std::string_view name) const;
    [[nodiscard]] std::int32_t GetInt32(std::string_view name) const;
    [[nodiscard]] std::uint32_t GetUInt32(std::string_view name) const;
    [[nodiscard]] std::int64_t GetInt64(std::string_view name) const;
    [[nodiscard]] std::uint64_t GetUInt64(std::string_view name) const;
    [[nodiscard]] float GetFloat(std::string_view name) const;
    [[nodiscard]] double GetDouble(std::string_view name) const;

    /// These append an attribute, even if the name exists.
    void AddAttribute(std::string_view name, std::string_view value);
    /// Null is written as an empty value.
    void AddAttribute(std::string_view name, const char* value);
    void AddAttribute(std::string_view name, std::int32_t value);
    void AddAttribute(std::string_view name, std::int64_t value);
    /// Six significant digits, as "%g" writes them.
    void AddAttribute(std::string_view name, float value);
    /// The text as UTF-8. Null is written as an empty value.
    void AddAttribute(std::string_view name, const boost::shared_ptr<ZString>& value);

    /// The element as text, see ZXMLDocument::AddChild.
    [[nodiscard]] std::string Write(std::int32_t indent) const;

    void Dump() const override;

private:
    friend class ZXMLDocument;

    ZXMLElement(const boost::shared_ptr<ZXMLText>& text, std::int32_t tagPosition,
                const ZXMLText::Range& range);
    static boost::shared_ptr<ZXMLElement> FromText(const boost::shared_ptr<ZXMLText>& text,
                                                   std::int32_t tagPosition,
                                                   const ZXMLText::Range& range);

    [[nodiscard]] std::int32_t ReadInteger(std::string_view name, std::int32_t absent) const;

    ZXMLTag mTag;
};

/// A user's text with the characters " < and >, which attributes cannot contain, replaced by
/// similar ones. [any thread]
[[nodiscard]] std::string withoutMarkup(std::string_view text);

}  // namespace orvane
