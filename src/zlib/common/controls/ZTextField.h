// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstddef>
#include <string>

namespace orvane
{

/// The text of a field of one line, with a caret and a selection, which reaches from the anchor to
/// the caret. Places are counted in UTF-16 units from the start; a surrogate pair is one character,
/// and no place lies inside it. A plain value without a view. [any thread]
class ZTextField
{
public:
    /// The greatest length of the text, in UTF-16 units.
    static constexpr std::size_t kMaxUnits = 256;

    /// What a move of the caret does to the selection.
    enum class Select
    {
        kClear,
        kExtend,  // the anchor stays where it is
    };

    /// Sets the text without its control characters, cut to kMaxUnits, and selects all of it.
    void SetText(const ZString& text);
    [[nodiscard]] ZString GetText() const { return ZString(mText); }
    /// The text from its start to a place.
    [[nodiscard]] ZString GetTextBefore(std::size_t place) const;

    /// Replaces the selection by a text, without its control characters and without what exceeds
    /// kMaxUnits.
    void Insert(const ZString& text);
    /// Erases the selection or, without one, the character before the caret.
    void EraseBefore();
    /// Erases the selection or, without one, the character after the caret.
    void EraseAfter();

    void MoveLeft(Select select);
    void MoveRight(Select select);
    void MoveWordLeft(Select select);
    void MoveWordRight(Select select);
    void MoveTo(std::size_t place, Select select);
    void MoveToEnd(Select select) { MoveTo(mText.size(), select); }
    void SelectAll();
    /// Selects the word around a place, or the blanks around it.
    void SelectWordAt(std::size_t place);
    [[nodiscard]] ZString GetSelection() const;

    [[nodiscard]] std::size_t GetCaret() const { return mCaret; }
    [[nodiscard]] std::size_t GetSelectionStart() const;
    [[nodiscard]] std::size_t GetSelectionEnd() const;
    [[nodiscard]] bool HasSelection() const { return mCaret != mAnchor; }
    [[nodiscard]] std::size_t GetLength() const { return mText.size(); }
    /// The place one character before a place, or 0 at the start.
    [[nodiscard]] std::size_t Before(std::size_t place) const;
    /// The place one character after a place, or the end at the end.
    [[nodiscard]] std::size_t After(std::size_t place) const;

private:
    void EraseSelection();

    std::u16string mText;
    std::size_t mCaret = 0;
    std::size_t mAnchor = 0;
};

}  // namespace orvane
