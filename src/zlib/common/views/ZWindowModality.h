// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cassert>

namespace orvane
{

class ZMessage;
class ZWindow;

/// Dialogs block the other windows of their application while they are open. This is one window's
/// share of that: whether it is a dialog and blocks, and which dialog blocks it.
/// [interface thread, with the interface lock]
class ZWindowModality
{
public:
    /// The window owns this object.
    explicit ZWindowModality(ZWindow& window);
    ZWindowModality(const ZWindowModality&) = delete;
    ZWindowModality& operator=(const ZWindowModality&) = delete;
    ~ZWindowModality() { assert(!mBlocking); }

    /// Comes before Block.
    void MakeDialog() { mDialog = true; }
    [[nodiscard]] bool IsDialog() const { return mDialog; }
    /// Called when the window opens: a dialog blocks the others until Unblock.
    void Block();
    void Unblock();

    /// Returns the open dialog that blocks this window; null when none does.
    [[nodiscard]] ZWindow* FindBlocker() const;
    /// Returns whether a dialog keeps the message from the window.
    [[nodiscard]] bool Drops(const ZMessage& message) const;
    /// Gives the keyboard to the dialog that blocks this window; false when none does.
    bool PassFocus() const;
    /// Ends menus and dialogs above the window, which go with it; a dialog would wait for an answer
    /// that cannot come any more.
    void EndRuns() const;

private:
    ZWindow& mWindow;
    bool mDialog = false;
    bool mBlocking = false;  // the window is among the application's modal windows
};

}  // namespace orvane
