// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/views/ZContentWindow.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace orvane
{

/// The content of a popup menu's window: it draws the items and turns mouse and keys into a choice.
/// The user chooses by a click, or by pressing on the control, dragging to an item and releasing
/// there; by keyboard, the arrow keys or an item's first letter highlight an item and Return or the
/// space bar chooses it. If the window is too low for all items, they scroll by the wheel and while
/// the pointer rests on the arrows at either end.
///
/// A hurried click or double click on the control must not choose the item that the menu opens
/// under the pointer. So buttons count only once the pointer has gone from one item to another, or
/// once ArmButtons() has been called. [interface thread]
class ZMenuContent : public ZWindowContent
{
public:
    /// How long a menu is open before the mouse buttons count.
    static constexpr std::chrono::milliseconds kArmingDelay{400};

    explicit ZMenuContent(const ZMenu& menu);
    /// Sets where the pointer is when the menu opens, in the content's coordinates. Without this,
    /// the first mouse event sets it.
    void StartAt(const ZPoint& pointer) { mStart = pointer; }

    /// The size that shows all items, until SetSize() has set another one.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    /// Sets the window's size and scrolls to the item with the check mark.
    void SetSize(const ZPoint& size);
    /// Sets the function to be called once, when the user has chosen or dismissed the menu.
    void SetEnded(std::function<void()> ended) { mEnded = std::move(ended); }
    /// The index of the chosen item, or nothing if none was chosen.
    [[nodiscard]] std::optional<std::int32_t> GetChosen() const { return mChosen; }

    void Draw(ZDrawingContext& context) override;
    bool Mouse(const ZNativeMouseEvent& event) override;
    bool Key(const ZNativeKeyEvent& event) override;
    void FocusLost() override;
    void Dismiss() override;
    /// Makes presses and releases count from now on; called when the menu has been open for
    /// kArmingDelay.
    void ArmButtons() { mArmed = true; }
    /// Scrolls by one item while the pointer rests on an arrow. Called at a fixed interval; returns
    /// true if a repaint is needed.
    bool ScrollByPointer();

    /// The rectangle of the item at a place in the list; empty while it is scrolled out of view.
    [[nodiscard]] ZRect GetItemRect(std::int32_t place) const;

protected:
    static constexpr std::int32_t kNone = -1;

    // Places in the list of items, or kNone.
    std::int32_t mFirst = 0;  // the first item in view
    std::int32_t mHighlight = kNone;

private:
    [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(mItems.size()); }
    [[nodiscard]] bool Scrolls() const { return mInView < Count(); }
    [[nodiscard]] ZRect Frame() const { return {0, 0, mSize.x, mSize.y}; }
    [[nodiscard]] ZRect UpperArrow() const;
    [[nodiscard]] ZRect LowerArrow() const;
    [[nodiscard]] std::int32_t PlaceAt(const ZPoint& point) const;
    bool ScrollTo(std::int32_t first);
    bool Highlight(std::int32_t place);
    bool HighlightInView(std::int32_t place);
    /// Follows the pointer, and arms the buttons once it has gone from one item to another.
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
    std::int32_t mInView;          // how many items the window has room for
    std::optional<ZPoint> mStart;  // where the pointer was when the menu opened
    ZPoint mPointer{kNone, kNone};
    bool mMoved = false;  // the pointer has left the place where it was when the menu opened
    std::int32_t mFirstTouched = kNone;  // the first item that the pointer was over
    bool mArmed = false;                 // presses and releases count
    std::function<void()> mEnded;
    bool mHasEnded = false;
    std::optional<std::int32_t> mChosen;
};

}  // namespace orvane
