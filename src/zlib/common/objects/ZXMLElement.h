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
/// Numbers have the form of the "C" locale, whatever the process's locale is: that belongs to the
/// host. A text that does not start with a number reads as 0; one that is out of range reads as
/// the end of the range, so that every number read is finite.
class ZXMLElement : public ZXMLDocument
{
public:
    ZXMLElement() = default;
    explicit ZXMLElement(std::string_view name);
    /// Takes the tag with its attributes; no text.
    explicit ZXMLElement(const ZXMLTag& tag);
    /// Text and tag.
    ZXMLElement(const ZXMLElement&) = default;
    ZXMLElement& operator=(const ZXMLElement&) = delete;

    [[nodiscard]] const std::string& GetName() const { return mTag.Name(); }
    [[nodiscard]] bool IsNamed(std::string_view name) const { return mTag.Name() == name; }

    /// By position; null when there is no such attribute. Pointers live until the next
    /// AddAttribute.
    [[nodiscard]] std::int32_t GetAttributeCount() const { return mTag.AttributeCount(); }
    [[nodiscard]] const char* GetAttributeName(std::int32_t index) const;
    [[nodiscard]] const char* GetAttributeValue(std::int32_t index) const;

    [[nodiscard]] bool HasAttribute(std::string_view name) const;
    /// The value of the first attribute of that name; null when there is none.
    [[nodiscard]] const char* GetAttribute(std::string_view name) const;
    /// The same; absent where there is none.
    [[nodiscard]] const char* GetAttributeOr(std::string_view name, const char* absent) const;
    /// The value of the last attribute of that name; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZString> GetAttributeString(std::string_view name) const;
    /// True when the value is exactly "true".
    [[nodiscard]] bool GetAttributeBool(std::string_view name) const;
    /// False when there is no such attribute.
    [[nodiscard]] bool AttributeIs(std::string_view name, std::string_view value) const;

    /// An absent attribute reads as 0 (GetInt8, GetFloat, GetDouble), else as -1 in the type's
    /// own bits. All whole numbers are read within 32 bits with sign and then take the type.
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

    /// Appends an attribute, also when the name exists.
    void AddAttribute(std::string_view name, std::string_view value);
    /// A null value is written as an empty one.
    void AddAttribute(std::string_view name, const char* value);
    void AddAttribute(std::string_view name, std::int32_t value);
    void AddAttribute(std::string_view name, std::int64_t value);
    /// Six significant digits, as "%g" writes them.
    void AddAttribute(std::string_view name, float value);
    /// The text as UTF-8; a null pointer writes an empty value.
    void AddAttribute(std::string_view name, const boost::shared_ptr<ZString>& value);

    /// The element as ZXMLDocument::AddChild appends it.
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

/// A user's text for an attribute, which has no way to hold " < and >: each is written as a sign
/// that looks much like it.
[[nodiscard]] std::string withoutMarkup(std::string_view text);

}  // namespace orvane
