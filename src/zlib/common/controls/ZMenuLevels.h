// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace orvane
{

class ZContentWindow;
class ZMenu;
struct ZNativeKeyEvent;
struct ZNativeMouseEvent;

/// A popup menu with the submenus that are open, each in a window of its own. The first one has the
/// keyboard and captures the mouse; what the user does goes to the menu under the pointer, or by
/// key to the last one with a highlight.
///
/// A submenu opens by a click, by Right or Return, and where the pointer rests on its item; it
/// closes by Left or Escape and where the pointer rests on another item, so that the pointer may
/// cross other items on its way into the submenu. [interface thread, with the interface lock]
class ZMenuLevels
{
public:
    /// How many polls in a row the pointer rests on an item before its submenu opens.
    static constexpr int kRestPolls = 3;

    /// ended is called once, when the user has chosen an item or dismissed the menu. scale is that
    /// of all menus.
    ZMenuLevels(const ZDeviceScale& scale, std::function<void()> ended);
    ZMenuLevels(const ZMenuLevels&) = delete;
    ZMenuLevels& operator=(const ZMenuLevels&) = delete;
    ~ZMenuLevels();

    /// Makes the hidden window of the first menu, with its top left corner at a point of the
    /// screen; owner is the window of the system that it belongs to, monitor where it stays, and
    /// pointer where the mouse is, all in pixels. Returns null where there is no display.
    ZContentWindow* Open(const ZMenu& menu, const ZPoint& screenPosition, std::uintptr_t owner,
                         const ZRect& monitor, const ZPoint& pointer);
    /// Called at a fixed interval: scrolls, opens and closes submenus where the pointer rests.
    void Poll();
    /// Makes presses and releases count from now on.
    void ArmButtons();
    /// Ends the menu without a choice.
    void Dismiss();
    /// The index of the chosen item, or nothing if none was chosen.
    [[nodiscard]] std::optional<std::int32_t> GetChosen() const { return mChosen; }

private:
    class Level;

    Level* AddLevel(const ZMenu& menu);
    void OpenSubmenu(std::size_t depth, std::int32_t place, bool byKey);
    /// Closes the submenus from a depth on.
    void CloseFrom(std::size_t depth);
    /// The depth of the menu under a point of the screen; none outside of all.
    [[nodiscard]] std::optional<std::size_t> DepthAt(const ZPoint& screenPoint) const;
    void Mouse(const Level& from, const ZNativeMouseEvent& event);
    void Key(const ZNativeKeyEvent& event);
    [[nodiscard]] std::size_t KeyDepth() const;
    /// Highlights the items that the open submenus belong to.
    void HighlightParents(std::size_t depth);
    void End(const Level& level);

    const ZDeviceScale mScale;
    const std::function<void()> mEnded;
    ZRect mMonitor;
    std::vector<std::unique_ptr<Level>> mLevels;
    bool mHasEnded = false;
    std::optional<std::int32_t> mChosen;
    std::optional<std::size_t> mPointed;              // the depth of the menu under the pointer
    std::pair<std::size_t, std::int32_t> mRestPlace;  // depth and item that the pointer rests on
    int mRested = 0;                                  // for how many polls
};

}  // namespace orvane
