// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/views/ZFocusRing.h"

#include <vector>

namespace orvane
{

class ZDrawingContext;
class ZView;
class ZWindow;
struct ZNativeKeyEvent;

/// The keyboard of a window: the view that has the focus, the views that the Tab key reaches, and
/// the way of a key to one of them or to the command list. Tab and Shift+Tab go through the views
/// in reading order, from none to the first or the last one, and show a ring around them; Escape
/// and everything that gives the focus by other means hide the ring. Views are not owned.
/// [interface thread, with the interface lock]
class ZWindowKeys
{
public:
    /// The window, which owns this object, gets ZKEYDOWN and ZTEXTINPUT for the focus view.
    explicit ZWindowKeys(ZWindow& window);

    /// Returns true when a view or a command has taken the key.
    bool Dispatch(const ZNativeKeyEvent& event);
    /// Returns whether a view would take the key now.
    [[nodiscard]] bool Wants(const ZNativeKeyEvent& event) const;

    /// Moves the focus; null takes it from all views. Both the old view and the new one are told
    /// and repainted.
    void SetFocus(ZView* view);
    [[nodiscard]] ZView* GetFocus() const { return mFocus; }
    /// Adds a view behind those that the Tab key reaches already. Not null.
    void AddNavigable(ZView* view);
    /// Forgets a view that leaves the window, without telling it.
    void Forget(ZView* view);

    /// Takes the focus from a view that the ring is around.
    void LeaveRing();
    /// Follows a view that has the ring and has moved its part of it.
    void UpdateRing();
    void DrawRing(ZDrawingContext& context, const ZRect& update) const
    {
        mRing.Draw(context, update);
    }

private:
    void Give(ZView* view, bool withRing);
    /// The views that Tab reaches now and the one that has the focus, in reading order.
    [[nodiscard]] std::vector<ZView*> FindStops() const;
    [[nodiscard]] bool LeavesRing(const ZNativeKeyEvent& event) const;
    bool MoveFocus(bool backwards);
    void TypeInFocus(const ZNativeKeyEvent& event);
    [[nodiscard]] bool DispatchHotKey(const ZNativeKeyEvent& event);

    ZWindow& mWindow;
    ZView* mFocus = nullptr;
    bool mHasRing = false;  // implies a focus
    ZFocusRing mRing;
    ZLockedList<ZView*> mNavigable{"navigable view list"};
};

}  // namespace orvane
