// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLDocument.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <iterator>
#include <numeric>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::string_view kDeclaration = R"(<?xml version="1.0" standalone="yes" ?>)";

std::string_view toView(const char* text, std::int32_t length)
{
    assert(length >= 0);
    if (!text || length <= 0)
        return {};
    return {text, static_cast<std::size_t>(length)};
}

/// Overwrites comments with spaces. A comment ends at the first `>`. If that does not end with
/// `-->`, it is no comment, and the search goes on behind it.
void blankComments(std::string& text)
{
    std::size_t begin = text.find('<');
    while (begin != std::string::npos) {
        const std::size_t end = text.find('>', begin);
        if (end == std::string::npos)
            return;
        const auto tag = std::string_view(text).substr(begin, end - begin);
        if (tag.starts_with("<!--") && tag.ends_with("--"))
            std::fill_n(text.begin() + static_cast<std::ptrdiff_t>(begin), end + 1 - begin, ' ');
        begin = text.find('<', end + 1);
    }
}

std::string readWhole(ZFile& file)
{
    file.Seek(0);
    const std::int64_t size = file.GetSize();
    ZXMLDocument::CheckSize(size);
    std::string characters(static_cast<std::size_t>(size), '\0');
    const std::int32_t got = file.Read(characters.data(), static_cast<std::int32_t>(size));
    characters.resize(static_cast<std::size_t>(got));
    return characters;
}

}  // namespace

void ZXMLDocument::CheckSize(std::int64_t bytes)
{
    if (bytes > kMaxBytes)
        throw ZException(ZException::kTooLarge, "This preset has " + std::to_string(bytes) +
                                                    " bytes. Presets of more than " +
                                                    std::to_string(kMaxBytes) +
                                                    " bytes are not read.");
}

ZXMLDocument::ZXMLDocument(const char* text, std::int32_t length, Comments comments)
{
    std::string characters(toView(text, length));
    if (comments == Comments::kBlanked)
        blankComments(characters);
    mText = boost::make_shared<ZXMLText>(std::move(characters));
}

ZXMLDocument::ZXMLDocument(const boost::shared_ptr<ZFile>& file)
    : mText(boost::make_shared<ZXMLText>(readWhole(*file)))
{
}

ZXMLDocument::ZXMLDocument(const ZXMLDocument& other)
    : mText(other.mText)
    , mRange(other.mRange)
    , mIsRange(other.mIsRange)
{
}

ZXMLDocument::ZXMLDocument(boost::shared_ptr<ZXMLText> text, const ZXMLText::Range& range)
    : mText(std::move(text))
    , mRange(range)
    , mIsRange(true)
{
}

ZXMLDocument::~ZXMLDocument()
{
    DropChildren();
}

std::string_view ZXMLDocument::GetText() const
{
    if (!mText)
        return {};
    return mIsRange ? mText->Characters(mRange) : mText->Characters();
}

std::int32_t ZXMLDocument::GetChildCount() const
{
    const auto lock = LockChildren();
    return static_cast<std::int32_t>(mChildren.size());
}

std::int32_t ZXMLDocument::GetChildCount(std::string_view name) const
{
    const auto lock = LockChildren();
    const auto [first, last] = FindChildren(name);
    return static_cast<std::int32_t>(last - first);
}

boost::shared_ptr<ZXMLElement> ZXMLDocument::GetChild(std::int32_t index) const
{
    const auto lock = LockChildren();
    if (index < 0 || static_cast<std::size_t>(index) >= mChildren.size())
        return {};
    return mChildren[static_cast<std::size_t>(index)];
}

boost::shared_ptr<ZXMLElement> ZXMLDocument::GetChild(std::string_view name,
                                                      std::int32_t index) const
{
    const auto lock = LockChildren();
    const auto [first, last] = FindChildren(name);
    if (index < 0 || index >= last - first)
        return {};
    return mChildren[static_cast<std::size_t>(first[index])];
}

void ZXMLDocument::AddChild(const ZXMLElement& element, std::int32_t indent)
{
    assert(indent >= 0);
    Append(element.Write(indent));
}

void ZXMLDocument::AppendText(const char* text)
{
    Append(text ? std::string_view(text) : std::string_view());
}

void ZXMLDocument::AppendBytes(const char* text, std::int32_t length)
{
    Append(toView(text, length));
}

void ZXMLDocument::AppendChar(char character)
{
    Append(std::string_view(&character, 1));
}

void ZXMLDocument::Dump() const
{
    ZTrace::Write(GetText());
}

void ZXMLDocument::Append(std::string_view text)
{
    // Drops the children's references to the text first, so that it can grow without a copy.
    DropChildren();
    mDirty = true;
    if (mText && mText.use_count() == 1 && !mIsRange) {
        mText->Append(text);
        return;
    }
    auto own = boost::make_shared<ZXMLText>(std::string(GetText()));
    own->Append(text);
    mText = std::move(own);
    mIsRange = false;
}

std::unique_lock<ZLock> ZXMLDocument::LockChildren() const
{
    if (!mText)
        return {};
    std::unique_lock<ZLock> lock(mText->ParsedChildrenLock());
    if (mDirty)
        SplitChildren();
    return lock;
}

void ZXMLDocument::SplitChildren() const
{
    DropChildren();
    mText->FindTags();
    SplitRange(mIsRange ? mRange : mText->Whole());
    mDirty = false;
}

void ZXMLDocument::SplitRange(const ZXMLText::Range& range) const
{
    // The depth at which children begin. After a closing tag too many the depth is below it.
    std::int32_t ground = range.firstTag < range.endTag ? mText->DepthBefore(range.firstTag) : 0;
    for (std::int32_t i = range.firstTag; i < range.endTag; ++i) {
        const std::int32_t kind = mText->Kind(i);
        const ZXMLText::Tag& tag = mText->GetTag(i);
        if (mText->IsDeclaration(i)) {
            ground += ZXMLTag::kOpening;  // one level is taken back, whatever the tag's kind
        } else if (kind == ZXMLTag::kOpening) {
            const std::int32_t end = mText->FindEnd(i, ground, range.endTag);
            const std::int32_t endPosition =
                end < range.endTag ? mText->GetTag(end).begin : range.end;
            mChildren.push_back(
                ZXMLElement::FromText(mText, tag.begin, {tag.end + 1, endPosition, i + 1, end}));
            i = end;
        } else if (kind == ZXMLTag::kComplete && tag.depth == ground) {
            mChildren.push_back(
                ZXMLElement::FromText(mText, tag.begin, {tag.end + 1, tag.end + 1, i + 1, i + 1}));
        }
    }
}

void ZXMLDocument::DropChildren() const
{
    mByName.reset();
    // Destroys one level after the other: recursive destructors would overflow the stack when tags
    // are nested deeply.
    Children pending = std::move(mChildren);
    mChildren.clear();
    while (!pending.empty()) {
        const auto child = std::move(pending.back());
        pending.pop_back();
        if (child.use_count() > 1)
            continue;
        std::move(child->mChildren.begin(), child->mChildren.end(), std::back_inserter(pending));
        child->mChildren.clear();
    }
}

std::pair<const std::int32_t*, const std::int32_t*>
ZXMLDocument::FindChildren(std::string_view name) const
{
    const auto nameAt = [this](std::int32_t place) -> std::string_view {
        return mChildren[static_cast<std::size_t>(place)]->GetName();
    };
    if (mChildren.empty())
        return {nullptr, nullptr};
    if (!mByName) {
        mByName = std::make_unique<std::vector<std::int32_t>>(mChildren.size());
        std::iota(mByName->begin(), mByName->end(), 0);
        std::stable_sort(mByName->begin(), mByName->end(),
                         [&](std::int32_t a, std::int32_t b) { return nameAt(a) < nameAt(b); });
    }
    const auto first = std::partition_point(
        mByName->begin(), mByName->end(), [&](std::int32_t place) { return nameAt(place) < name; });
    const auto last = std::partition_point(
        first, mByName->end(), [&](std::int32_t place) { return nameAt(place) <= name; });
    return {mByName->data() + (first - mByName->begin()),
            mByName->data() + (last - mByName->begin())};
}

bool HasValidDeclaration(const char* text, std::int32_t length)
{
    const std::string_view view = toView(text, length);
    return view.size() > kDeclaration.size() && view.starts_with(kDeclaration);
}

}  // namespace orvane
