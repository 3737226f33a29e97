// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZXMLText.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane
{

class ZFile;
class ZXMLElement;

/// A run of raw text that is split into children when somebody asks for them. Not a general XML
/// reader: the description and all stored presets depend on exactly these rules. Nothing is
/// refused; what is not a tag is passed over.
///
/// The text is a byte string; no entity is decoded or encoded. Reading is linear in the text's
/// length, however its tags are nested. Built on one thread, then read on any.
class ZXMLDocument
{
public:
    enum class Comments
    {
        kBlanked,  // overwritten with spaces
        kKept,     // as they stand: each reads as a tag
    };

    ZXMLDocument() = default;
    /// Copies the text. A null text is empty.
    ZXMLDocument(const char* text, std::int32_t length, Comments comments = Comments::kBlanked);
    /// Reads the whole of an open file, whose comments are kept. Throws ZException -1 when it
    /// cannot be read, or its text would outgrow 32 bits.
    explicit ZXMLDocument(const boost::shared_ptr<ZFile>& file);
    /// Copies the text; the children are split out anew.
    ZXMLDocument(const ZXMLDocument& other);
    ZXMLDocument& operator=(const ZXMLDocument&) = delete;
    virtual ~ZXMLDocument();

    /// The raw text, without a terminator. Lives until the next append.
    [[nodiscard]] std::string_view GetText() const;

    /// Number of direct children, and of those with the name.
    [[nodiscard]] std::int32_t GetChildCount() const;
    [[nodiscard]] std::int32_t GetChildCount(std::string_view name) const;
    /// The child at a position, or the one at a position among those with the name; null when
    /// there is none. It stays as it is when this text changes.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetChild(std::int32_t index) const;
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetChild(std::string_view name,
                                                          std::int32_t index = 0) const;

    /// Appends the element as text: indent tabs, its tag, its text, indent tabs, its closing tag.
    /// A quote or > in an attribute's value makes the output unreadable; there is no escape.
    void AddChild(const ZXMLElement& element, std::int32_t indent = 0);
    void AppendText(const char* text);
    void AppendBytes(const char* text, std::int32_t length);
    void AppendChar(char character);

    /// Writes the document as trace lines.
    virtual void Dump() const;

protected:
    /// A stretch of a text that others read too.
    ZXMLDocument(boost::shared_ptr<ZXMLText> text, const ZXMLText::Range& range);

private:
    using Children = std::vector<boost::shared_ptr<ZXMLElement>>;

    void Append(std::string_view text);
    /// Sees to it that the children are there; they stay while the lock is held.
    [[nodiscard]] std::unique_lock<std::mutex> LockChildren() const;
    void SplitChildren() const;
    void SplitRange(const ZXMLText::Range& range) const;
    void DropChildren() const;
    /// Places of the children with the name among all children, in order.
    [[nodiscard]] std::pair<const std::int32_t*, const std::int32_t*>
    FindChildren(std::string_view name) const;

    boost::shared_ptr<ZXMLText> mText;  // null while there is none
    ZXMLText::Range mRange;             // of mText, when it is not the whole of it
    bool mIsStretch = false;

    // Made while reading.
    mutable bool mDirty = true;  // mChildren does not reflect the text
    mutable Children mChildren;
    mutable std::unique_ptr<std::vector<std::int32_t>> mByName;  // places of mChildren, by name
};

/// True when the text begins with exactly the declaration that this system writes, and goes on.
[[nodiscard]] bool HasValidDeclaration(const char* text, std::int32_t length);

}  // namespace orvane
