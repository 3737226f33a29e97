// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstddef>
#include <string>

namespace orvane
{

/// A line of text that is being edited: a caret, and from it to the anchor the selection. A pair of
/// surrogates is one character. A value, and no view.
class ZTextField
{
public:
    static constexpr std::size_t kMaxUnits = 256;

    enum class Select
    {
        kNothing,
        kOn,  // from the anchor on
    };

    /// The whole text, cut to kMaxUnits, all selected.
    void SetText(const ZString& text);
    [[nodiscard]] ZString GetText() const { return ZString(mText); }
    /// The text up to a place.
    [[nodiscard]] ZString GetTextBefore(std::size_t place) const;

    /// In the place of the selection; control characters are left out, and what has no room.
    void Insert(const ZString& text);
    /// The selection, or the character before or after the caret.
    void EraseBefore();
    void EraseAfter();

    void MoveLeft(Select select);
    void MoveRight(Select select);
    void MoveWordLeft(Select select);
    void MoveWordRight(Select select);
    void MoveTo(std::size_t place, Select select);
    void MoveToEnd(Select select) { MoveTo(mText.size(), select); }
    void SelectAll();

    /// In units from the start.
    [[nodiscard]] std::size_t GetCaret() const { return mCaret; }
    [[nodiscard]] std::size_t GetSelectionStart() const;
    [[nodiscard]] std::size_t GetSelectionEnd() const;
    [[nodiscard]] bool HasSelection() const { return mCaret != mAnchor; }
    [[nodiscard]] std::size_t GetLength() const { return mText.size(); }
    /// The places that are between characters, from one of them on.
    [[nodiscard]] std::size_t Before(std::size_t place) const;
    [[nodiscard]] std::size_t After(std::size_t place) const;

private:
    void EraseSelection();

    std::u16string mText;
    std::size_t mCaret = 0;
    std::size_t mAnchor = 0;
};

}  // namespace orvane
