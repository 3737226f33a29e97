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

/// A piece of raw text that is split into children at the first request for them. This is not a
/// general XML reader: the description and all stored presets depend on exactly these rules. No
/// text is refused; characters outside tags are skipped.
///
/// The text is a byte string in which no entity is decoded or encoded. The time of reading is
/// linear in the text's length, however deep its tags are nested. One thread builds a document;
/// then any thread may read it.
class ZXMLDocument
{
public:
    enum class Comments
    {
        kBlanked,  // overwritten with spaces
        kKept,     // read as tags
    };

    /// The size in bytes of the largest text that is read from a file or a host. It is far above
    /// that of any preset or bank.
    static constexpr std::int64_t kMaxBytes = std::int64_t{16} << 20;
    /// Throws ZException kTooLarge for a text of more bytes. Callers check the size of what comes
    /// from outside before they take memory for it. [any thread but the audio thread]
    static void CheckSize(std::int64_t bytes);

    ZXMLDocument() = default;
    /// Copies the text; null is the empty text. length >= 0.
    ZXMLDocument(const char* text, std::int32_t length, Comments comments = Comments::kBlanked);
    /// Reads an open file from its start and keeps its comments. Throws ZException when the file
    /// cannot be read, and kTooLarge when it has more than kMaxBytes.
    explicit ZXMLDocument(const boost::shared_ptr<ZFile>& file);
    /// Copies the text. The copy has children of its own.
    ZXMLDocument(const ZXMLDocument& other);
    ZXMLDocument& operator=(const ZXMLDocument&) = delete;
    virtual ~ZXMLDocument();

    /// The raw text, without a terminator. Valid until the next append.
    [[nodiscard]] std::string_view GetText() const;

    /// The number of direct children, and of those with the name.
    [[nodiscard]] std::int32_t GetChildCount() const;
    [[nodiscard]] std::int32_t GetChildCount(std::string_view name) const;
    /// The child at an index, or at an index among those with the name; null when there is none. It
    /// does not change when this text changes.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetChild(std::int32_t index) const;
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetChild(std::string_view name,
                                                          std::int32_t index = 0) const;

    /// Appends the element as text: indent tabs, its tag, its text, indent tabs, its closing tag.
    /// An attribute's value must contain neither a quote nor ">", because nothing is escaped.
    void AddChild(const ZXMLElement& element, std::int32_t indent = 0);
    /// These three append to the raw text. Null appends nothing.
    void AppendText(const char* text);
    void AppendBytes(const char* text, std::int32_t length);
    void AppendChar(char character);

    /// Writes the raw text as a trace line.
    virtual void Dump() const;

protected:
    /// A range of a text that is shared with other documents.
    ZXMLDocument(boost::shared_ptr<ZXMLText> text, const ZXMLText::Range& range);

private:
    using Children = std::vector<boost::shared_ptr<ZXMLElement>>;

    void Append(std::string_view text);
    /// Splits the children if that has not been done, and gives the lock that guards them.
    [[nodiscard]] std::unique_lock<ZLock> LockChildren() const;
    void SplitChildren() const;
    void SplitRange(const ZXMLText::Range& range) const;
    void DropChildren() const;
    /// The indices of the children with the name, in order, as a range of pointers.
    [[nodiscard]] std::pair<const std::int32_t*, const std::int32_t*>
    FindChildren(std::string_view name) const;

    boost::shared_ptr<ZXMLText> mText;  // null while there is none
    ZXMLText::Range mRange;             // of mText, when mIsRange is true
    bool mIsRange = false;

    // Made while reading, under the lock.
    mutable bool mDirty = true;  // mChildren are not those of the text
    mutable Children mChildren;
    mutable std::unique_ptr<std::vector<std::int32_t>>
        mByName;  // indices into mChildren, sorted by name
};

/// True when the text begins with exactly the declaration that this system writes and is longer
/// than it. [any thread]
[[nodiscard]] bool HasValidDeclaration(const char* text, std::int32_t length);

}  // namespace orvane
