// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLText.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLTag.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <limits>
#include <map>
#include <numeric>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::size_t kLongestText = std::numeric_limits<std::int32_t>::max() - 1;

void checkLength(std::size_t length)
{
    if (length > kLongestText)
        throw ZException("XML text is longer than 2 gigabytes.");
}

/// Numbers for names. A tree, because a hash table is slow for names chosen to collide.
class NameTable
{
public:
    std::int32_t NumberOf(const std::string& name)
    {
        const auto next = static_cast<std::int32_t>(mNumbers.size());
        return mNumbers.try_emplace(name, next).first->second;
    }

private:
    std::map<std::string, std::int32_t> mNumbers;
};

}  // namespace

ZXMLText::ZXMLText(std::string characters)
    : mCharacters(std::move(characters))
{
    checkLength(mCharacters.size());
}

std::string_view ZXMLText::Characters(const Range& range) const
{
    assert(0 <= range.begin && range.begin <= range.end);
    return Characters().substr(static_cast<std::size_t>(range.begin),
                               static_cast<std::size_t>(range.end - range.begin));
}

void ZXMLText::Append(std::string_view characters)
{
    checkLength(mCharacters.size() + characters.size());
    mCharacters += characters;
    mTagsFound = false;
}

void ZXMLText::FindTags()
{
    if (mTagsFound)
        return;
    mTags.clear();
    NameTable names;
    mDeclarationName = names.NumberOf("?xml");
    ZXMLTag heading;
    std::int32_t depth = 0;
    std::size_t begin = mCharacters.find('<');
    while (begin != std::string::npos) {
        const std::size_t end = heading.ReadHeading(mCharacters, begin);
        if (end == 0)
            break;
        depth += heading.GetKind();
        mTags.push_back({static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end), depth,
                         names.NumberOf(heading.Name())});
        begin = mCharacters.find('<', end + 1);
    }
    mReadableLength = static_cast<std::int32_t>(std::min(begin, mCharacters.size()));
    mTagsFound = true;

    mByName.resize(mTags.size());
    std::iota(mByName.begin(), mByName.end(), 0);
    std::sort(mByName.begin(), mByName.end(),
              [this](std::int32_t a, std::int32_t b) { return ComesBefore(a, b); });
}

ZXMLText::Range ZXMLText::Whole() const
{
    assert(mTagsFound);
    return {0, mReadableLength, 0, static_cast<std::int32_t>(mTags.size())};
}

const ZXMLText::Tag& ZXMLText::GetTag(std::int32_t index) const
{
    assert(mTagsFound && index >= 0 && index < std::ssize(mTags));
    return mTags[static_cast<std::size_t>(index)];
}

std::int32_t ZXMLText::Kind(std::int32_t index) const
{
    return GetTag(index).depth - DepthBefore(index);
}

std::int32_t ZXMLText::DepthBefore(std::int32_t index) const
{
    return index == 0 ? 0 : GetTag(index - 1).depth;
}

bool ZXMLText::IsDeclaration(std::int32_t index) const
{
    return GetTag(index).name == mDeclarationName;
}

bool ZXMLText::ComesBefore(std::int32_t a, std::int32_t b) const
{
    const Tag& first = GetTag(a);
    const Tag& second = GetTag(b);
    if (first.name != second.name)
        return first.name < second.name;
    if (first.depth != second.depth)
        return first.depth < second.depth;
    return a < b;
}

std::int32_t ZXMLText::FindEnd(std::int32_t index, std::int32_t depth, std::int32_t endTag) const
{
    assert(index < endTag);
    const std::int32_t name = GetTag(index).name;
    const auto liesBehind = [&](std::int32_t candidate) {
        const Tag& tag = GetTag(candidate);
        if (tag.name != name)
            return tag.name > name;
        if (tag.depth != depth)
            return tag.depth > depth;
        return candidate > index;
    };
    const auto found =
        std::partition_point(mByName.begin(), mByName.end(),
                             [&](std::int32_t candidate) { return !liesBehind(candidate); });
    if (found == mByName.end() || *found >= endTag)
        return endTag;
    const Tag& end = GetTag(*found);
    return end.name == name && end.depth == depth ? *found : endTag;
}

}  // namespace orvane
