// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// The characters that a document shares with all its elements, and the positions of the tags in
/// them.
///
/// An element's text is a part of its parent's text, and the tags in it have the same positions.
/// So the tags are found once, and each element holds a range. If each element scanned a copy of
/// its own, a text of n nested tags would cost n scans and n copies.
class ZXMLText
{
public:
    struct Tag
    {
        std::int32_t begin;  // position of the <
        std::int32_t end;    // position of the >
        std::int32_t depth;  // sum of the kinds of all tags up to this one
        std::int32_t name;   // equal numbers for equal names
    };

    /// A range of characters and the range of tags in it; the ends are exclusive.
    struct Range
    {
        std::int32_t begin = 0;
        std::int32_t end = 0;
        std::int32_t firstTag = 0;
        std::int32_t endTag = 0;
    };

    /// Throws ZException when the text is too long for 32 bits.
    explicit ZXMLText(std::string characters);

    [[nodiscard]] std::string_view Characters() const { return mCharacters; }
    [[nodiscard]] std::string_view Characters(const Range& range) const;

    /// Appends and forgets the tags. No one else may share the text. Throws ZException, with the
    /// text unchanged, when it would be too long for 32 bits.
    void Append(std::string_view characters);

    /// Finds the tags, unless they are known. An unterminated tag ends the text for its readers.
    void FindTags();
    /// The range of all tags. FindTags has been called; this also holds for all functions below.
    [[nodiscard]] Range Whole() const;

    [[nodiscard]] const Tag& GetTag(std::int32_t index) const;
    [[nodiscard]] std::int32_t Kind(std::int32_t index) const;
    /// The depth in front of a tag.
    [[nodiscard]] std::int32_t DepthBefore(std::int32_t index) const;
    [[nodiscard]] bool IsDeclaration(std::int32_t index) const;
    /// The first tag in (index, endTag), of any kind, that has the name of the tag at index and the
    /// given depth; endTag when there is none.
    [[nodiscard]] std::int32_t FindEnd(std::int32_t index, std::int32_t depth,
                                       std::int32_t endTag) const;

    /// Guards the children of all elements of this text. Reading makes them, so several threads may
    /// read elements that no thread changes.
    [[nodiscard]] ZLock& ParsedChildrenLock() const { return mParsedChildrenLock; }

private:
    /// The order of mByName: by name, then depth, then index.
    [[nodiscard]] bool ComesBefore(std::int32_t a, std::int32_t b) const;

    std::string mCharacters;
    std::vector<Tag> mTags;
    std::vector<std::int32_t> mByName;  // indices into mTags, in the order of ComesBefore
    std::int32_t mReadableLength = 0;   // without an unterminated tag
    std::int32_t mDeclarationName = -1;
    bool mTagsFound = false;
    mutable ZLock mParsedChildrenLock{"parsed children"};
};

}  // namespace orvane
