// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// The characters that a document and all elements split out of it share, with the places of the
/// tags in them.
///
/// An element's text is a stretch of its parent's, and the tags in it begin and end where they do
/// in the parent. So the tags are found once, and an element holds a range. Were each element to
/// scan its own copy, a text of n tags within one another would cost n scans and n copies.
class ZXMLText
{
public:
    struct Tag
    {
        std::int32_t begin;  // position of the <
        std::int32_t end;    // position of the >
        std::int32_t depth;  // sum of the kinds of all tags so far, this one included
        std::int32_t name;   // equal numbers for equal names
    };

    /// A stretch of characters and the tags that stand in it, ends excluded.
    struct Range
    {
        std::int32_t begin = 0;
        std::int32_t end = 0;
        std::int32_t firstTag = 0;
        std::int32_t endTag = 0;
    };

    explicit ZXMLText(std::string characters);

    [[nodiscard]] std::string_view Characters() const { return mCharacters; }
    [[nodiscard]] std::string_view Characters(const Range& range) const;

    /// Appends, and forgets the tags. Throws ZException -1, with the text as it was, when the
    /// text would outgrow 32 bits. Only while nothing else shares the text.
    void Append(std::string_view characters);

    /// Finds the tags, unless it has been done. An unterminated tag ends the text for its readers.
    void FindTags();
    [[nodiscard]] Range Whole() const;

    [[nodiscard]] const Tag& GetTag(std::int32_t index) const;
    [[nodiscard]] std::int32_t Kind(std::int32_t index) const;
    /// The depth in front of a tag.
    [[nodiscard]] std::int32_t DepthBefore(std::int32_t index) const;
    [[nodiscard]] bool IsDeclaration(std::int32_t index) const;
    /// The first tag in (index, endTag) that has the name of the tag at index and brings the depth
    /// to what is asked; endTag when there is none. Its kind does not matter.
    [[nodiscard]] std::int32_t FindEnd(std::int32_t index, std::int32_t depth,
                                       std::int32_t endTag) const;

    /// Guards the "parsed children" lists of all elements of this text, which are made while
    /// reading: elements that nobody changes may be read on several threads.
    [[nodiscard]] std::mutex& ParsedChildrenLock() const { return mParsedChildrenLock; }

private:
    /// Order in which the end of a child is looked up: by name, then depth, then place.
    [[nodiscard]] bool ComesBefore(std::int32_t a, std::int32_t b) const;

    std::string mCharacters;
    std::vector<Tag> mTags;
    std::vector<std::int32_t> mByName;  // places in mTags, in the order of ComesBefore
    std::int32_t mReadableLength = 0;   // without an unterminated tag
    std::int32_t mDeclarationName = -1;
    bool mTagsFound = false;
    mutable std::mutex mParsedChildrenLock;
};

}  // namespace orvane
