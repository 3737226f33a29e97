// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/views/ZContentWindow.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace orvane
{

/// What a menu shows and how it is worked. A press, a drag to an item and the release there choose
/// as two clicks do; so do the arrow keys with Return, and an item's first letter finds it. Where
/// the window is lower than all items together, they scroll: by the wheel, and while the pointer
/// rests on the arrows at the ends.
class ZMenuContent : public ZWindowContent
{
public:
    explicit ZMenuContent(const ZMenu& menu);
    /// Where the pointer is as the menu opens; else it counts as being where it is first heard of.
    void StartAt(const ZPoint& pointer) { mStart = pointer; }

    /// What it takes to show all items.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    /// The size that it has got; the item with the check mark is in sight then.
    void SetSize(const ZPoint& size);
    /// Called once, at the end.
    void SetEnded(std::function<void()> ended) { mEnded = std::move(ended); }
    [[nodiscard]] bool HasEnded() const { return mHasEnded; }
    /// The index of the item that was chosen, none if the user went without.
    [[nodiscard]] std::optional<std::int32_t> GetChosen() const { return mChosen; }

    void Draw(ZDrawingContext& context) override;
    bool Mouse(const ZNativeMouseEvent& event) override;
    bool Key(const ZNativeKeyEvent& event) override;
    void FocusLost() override;
    void Dismiss() override;
    /// A beat of the clock by which it scrolls. True when there is something new to draw.
    bool Tick();

    /// Places in the list of items, -1 for none.
    [[nodiscard]] std::int32_t GetHighlight() const { return mHighlight; }
    [[nodiscard]] std::int32_t GetFirstInSight() const { return mFirst; }
    /// Where the item at a place is drawn; empty while it is out of sight.
    [[nodiscard]] ZRect GetItemRect(std::int32_t place) const;

private:
    static constexpr std::int32_t kNone = -1;

    [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(mItems.size()); }
    [[nodiscard]] bool Scrolls() const { return mInSight < Count(); }
    [[nodiscard]] ZRect Frame() const { return {0, 0, mSize.x, mSize.y}; }
    [[nodiscard]] ZRect UpperArrow() const;
    [[nodiscard]] ZRect LowerArrow() const;
    [[nodiscard]] std::int32_t PlaceAt(const ZPoint& point) const;
    bool ScrollTo(std::int32_t first);
    bool Highlight(std::int32_t place);
    bool HighlightInSight(std::int32_t place);
    void PointerAt(const ZPoint& point);
    bool Press(const ZPoint& point);
    bool Release(const ZPoint& point);
    bool Step(std::int32_t by);
    bool FindLetter(const ZString& text);
    void Choose(std::int32_t place);
    void End();
    void DrawItem(ZDrawingContext& context, std::int32_t place) const;
    void DrawArrows(ZDrawingContext& context) const;

    std::vector<ZMenu::Item> mItems;
    ZPoint mSize;
    std::int32_t mInSight;
    std::int32_t mFirst = 0;
    std::int32_t mHighlight = kNone;
    std::optional<ZPoint> mStart;  // where the pointer was when the menu opened
    ZPoint mPointer{kNone, kNone};
    // The pointer has moved, or a button has gone down here: a release counts from then on. The
    // release of the press that opened the menu does not.
    bool mArmed = false;
    bool mWasOverItem = false;
    std::function<void()> mEnded;
    bool mHasEnded = false;
    std::optional<std::int32_t> mChosen;
};

}  // namespace orvane
