// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"

namespace orvane
{

class ZView;
class ZWindow;
struct ZNativeKeyEvent;

/// The keyboard of a window: the view that has the focus, the views that the Tab key reaches, and
/// the way of a key to one of them or to the command list. Views are not owned.
/// [interface thread, with the interface lock]
class ZWindowKeys
{
public:
    /// The window, which owns this object, gets ZKEYDOWN and ZTEXTINPUT for the focus view.
    explicit ZWindowKeys(ZWindow& window);

    /// Returns true when a view or a command has taken the key.
    bool Dispatch(const ZNativeKeyEvent& event);

    /// Moves the focus; null takes it from all views. Both the old view and the new one are told
    /// and repainted.
    void SetFocus(ZView* view);
    [[nodiscard]] ZView* GetFocus() const { return mFocus; }
    /// Adds a view behind those that the Tab key reaches already. Not null.
    void AddNavigable(ZView* view);
    /// Forgets a view that leaves the window, without telling it.
    void Forget(ZView* view);

private:
    bool MoveFocus(bool backwards);
    void TypeInFocus(const ZNativeKeyEvent& event);
    [[nodiscard]] bool DispatchHotKey(const ZNativeKeyEvent& event);

    ZWindow& mWindow;
    ZView* mFocus = nullptr;
    ZLockedList<ZView*> mNavigable{"navigable view list"};
};

}  // namespace orvane
