// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// A tag: its name, its kind and its attributes in order. Names and values are byte strings without
/// NUL.
class ZXMLTag
{
public:
    /// The number that a tag adds to the depth.
    enum Kind : std::int32_t
    {
        kClosing = -1,
        kComplete = 0,  // a tag that closes itself, or a comment
        kOpening = 1,
    };

    // Sizes of the name, an attribute's name and a value, each with a terminator. The format has no
    // longer ones: reading cuts them.
    static constexpr std::size_t kNameSize = 64;
    static constexpr std::size_t kAttributeNameSize = 512;
    static constexpr std::size_t kAttributeValueSize = 40000;

    ZXMLTag() = default;
    /// An opening tag without attributes. A long name is cut.
    explicit ZXMLTag(std::string_view name);

    /// Reads the tag whose `<` is at position. Returns the position of its `>`, or 0, with the tag
    /// incomplete, when the text ends before it. Reads each character once and accepts any text.
    std::size_t Read(std::string_view text, std::size_t position);

    /// Reads only name and kind, without trace lines, to find out where the tag ends.
    std::size_t ReadHeading(std::string_view text, std::size_t position);

    [[nodiscard]] const std::string& Name() const { return mName; }
    [[nodiscard]] std::int32_t GetKind() const { return mKind; }
    [[nodiscard]] std::int32_t AttributeCount() const;
    /// Null when there is no such attribute. Pointers are valid until the tag changes.
    [[nodiscard]] const char* AttributeName(std::int32_t index) const;
    [[nodiscard]] const char* AttributeValue(std::int32_t index) const;
    /// The value of the first attribute of that name; null when there is none.
    [[nodiscard]] const char* FindValue(std::string_view name) const;

    /// Appends an attribute, even if the name exists. Name and value end at their first NUL.
    void AddAttribute(std::string_view name, std::string_view value);

private:
    friend class ZXMLTagReader;

    struct Attribute
    {
        std::uint32_t name;  // indices into mBlock
        std::uint32_t value;
    };

    std::string mName;
    std::string mBlock;  // for each attribute: name, NUL, value, NUL
    std::vector<Attribute> mAttributes;
    std::int32_t mKind = kComplete;
};

}  // namespace orvane
