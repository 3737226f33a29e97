// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// One tag: its name, what it does to the depth, and its attributes in the order they stand.
/// Names and values are byte strings; none holds a NUL.
class ZXMLTag
{
public:
    /// What a tag adds to the depth.
    enum Kind : std::int32_t
    {
        kClosing = -1,
        kComplete = 0,  // closes itself, or is a comment
        kOpening = 1,
    };

    // Room for a name, an attribute's name and a value, each with its terminator. A tag that is
    // read keeps what fits; the format has no longer ones.
    static constexpr std::size_t kNameSize = 64;
    static constexpr std::size_t kAttributeNameSize = 512;
    static constexpr std::size_t kAttributeValueSize = 40000;

    ZXMLTag() = default;
    /// An opening tag without attributes; the name is cut to its room.
    explicit ZXMLTag(std::string_view name);

    /// Reads the tag that starts with the `<` at position and gives back the position of its `>`,
    /// or 0, with the tag unfinished, when the text ends first. Looks at each character once.
    /// Anything is accepted: what is no tag by other readers' rules is one by these.
    std::size_t Read(std::string_view text, std::size_t position);

    /// The same for name and kind alone, in silence: for finding where tags stand.
    std::size_t ReadHeading(std::string_view text, std::size_t position);

    [[nodiscard]] const std::string& Name() const { return mName; }
    [[nodiscard]] std::int32_t GetKind() const { return mKind; }
    [[nodiscard]] std::int32_t AttributeCount() const;
    /// The texts live until the tag changes; null when there is no such attribute.
    [[nodiscard]] const char* AttributeName(std::int32_t index) const;
    [[nodiscard]] const char* AttributeValue(std::int32_t index) const;
    /// The value of the first attribute of that name, null when there is none.
    [[nodiscard]] const char* FindValue(std::string_view name) const;

    /// Appends an attribute, also when the name exists. Each text ends at its first NUL.
    void AddAttribute(std::string_view name, std::string_view value);

    /// Characters that all readings of this process have looked at since it started: reading has
    /// to stay linear in the text's length, and this shows it. [any thread]
    static std::int64_t CharactersRead();

private:
    friend class ZXMLTagReader;

    struct Attribute
    {
        std::uint32_t name;  // positions in the block
        std::uint32_t value;
    };

    std::string mName;
    std::string mBlock;  // for each attribute its name, a NUL, its value, a NUL
    std::vector<Attribute> mAttributes;
    std::int32_t mKind = kComplete;
};

}  // namespace orvane
