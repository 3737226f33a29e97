// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/views/ZContentWindow.h"

#include <boost/smart_ptr/shared_ptr.hpp>

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
/// space bar chooses it. Items that are disabled are passed over. If the window is too low for all
/// items, they scroll by the wheel and while the pointer rests on the arrows at either end.
///
/// A hurried click or double click on the control must not choose the item that the menu opens
/// under the pointer. So buttons count only once the pointer has gone from one item to another, or
/// once ArmButtons() has been called; and the release of the press that opened the menu counts only
/// if the pointer has moved. [interface thread]
class ZMenuContent : public ZWindowContent
{
public:
    /// How long a menu is open before the mouse buttons count.
    static constexpr std::chrono::milliseconds kArmingDelay{400};

    static constexpr std::int32_t kNone = -1;

    explicit ZMenuContent(const ZMenu& menu);
    /// Sets where the pointer is when the menu opens, in the content's coordinates. Without this,
    /// the first mouse event sets it.
    void StartAt(const ZPoint& pointer) { mStart = pointer; }

    /// The size that shows all items, until SetSize() has set another one.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    /// Sets the window's size and, in a menu without submenus, goes to the item with the check
    /// mark.
    void SetSize(const ZPoint& size);
    /// Sets the function to be called once, when the user has chosen or dismissed the menu.
    void SetEnded(std::function<void()> ended) { mEnded = std::move(ended); }
    /// Sets the function that opens the submenu of the item at a place when the user asks for it by
    /// a click or a key; byKey says which.
    void SetSubmenuOpener(std::function<void(std::int32_t place, bool byKey)> open)
    {
        mOpenSubmenu = std::move(open);
    }
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
    /// For a submenu, which the user has opened on purpose.
    void BeginAsSubmenu()
    {
        mArmed = true;
        mMoved = true;
    }
    /// Scrolls by one item while the pointer rests on an arrow. Called at a fixed interval; returns
    /// true if a repaint is needed.
    bool ScrollByPointer();

    /// The place of the highlighted item; kNone for none. Returns true if a repaint is needed.
    [[nodiscard]] std::int32_t GetHighlight() const { return mHighlight; }
    bool SetHighlight(std::int32_t place) { return Highlight(place); }
    bool HighlightFirst() { return HighlightInView(Next(kNone, 1)); }
    /// The menu that the item at a place opens; null for none, also for kNone.
    [[nodiscard]] boost::shared_ptr<ZMenu> GetSubmenu(std::int32_t place) const;

    /// The rectangle of the item at a place in the list; empty while it is scrolled out of view.
    [[nodiscard]] ZRect GetItemRect(std::int32_t place) const;

protected:
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
    /// The next place in a direction, 1 or -1, whose item is enabled, round the ends; place itself
    /// if there is no other.
    [[nodiscard]] std::int32_t Next(std::int32_t place, std::int32_t direction) const;
    [[nodiscard]] bool IsEnabled(std::int32_t place) const;
    bool OpenSubmenu(std::int32_t place, bool byKey);
    bool FindLetter(const ZString& text);
    void Choose(std::int32_t place);
    void End();
    void DrawItem(ZDrawingContext& context, std::int32_t place) const;
    void DrawArrows(ZDrawingContext& context) const;
    [[nodiscard]] const ZMenu::Item& At(std::int32_t place) const;

    std::vector<ZMenu::Item> mItems;
    ZPoint mSize;
    std::int32_t mInView;          // how many items the window has room for
    std::optional<ZPoint> mStart;  // where the pointer was when the menu opened
    ZPoint mPointer{kNone, kNone};
    bool mMoved = false;  // the pointer has left the place where it was when the menu opened
    std::int32_t mFirstTouched = kNone;  // the first item that the pointer was over
    bool mArmed = false;                 // presses and releases count
    bool mPressed = false;               // a press has counted
    std::function<void(std::int32_t, bool)> mOpenSubmenu;
    std::function<void()> mEnded;
    bool mHasEnded = false;
    std::optional<std::int32_t> mChosen;
};

}  // namespace orvane
