// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZBitmap;
class ZMessage;
class ZWindow;
class ZWindowHost;
struct ZNativeKeyEvent;

/// The editor behind every plug-in interface: between Open and Close it places the description's
/// window into a parent window of the host. Views keep their state while it is closed.
/// [host thread, under the interface lock]
class ZEditorWindow
{
public:
    /// window is not null. [setup]
    explicit ZEditorWindow(boost::shared_ptr<ZWindow> window);
    ZEditorWindow(const ZEditorWindow&) = delete;
    ZEditorWindow& operator=(const ZEditorWindow&) = delete;
    ~ZEditorWindow();

    /// The window's size in pixels, which does not depend on whether the editor is open.
    [[nodiscard]] std::int32_t GetWidth() const;
    [[nodiscard]] std::int32_t GetHeight() const;
    /// Sets whom the window asks for another size, not owned; null for nobody. [setup]
    void SetHost(ZWindowHost* host);
    /// Takes the number of pixels on a unit's side that the host wishes; the user's choice counts
    /// more. Asks the host for another size if the window is open.
    void SetHostScale(double scale);
    /// Asks the host for the size of the scale that counts now, if the window is open with another.
    void TakeScale();
    /// Moves the window into parent, from a previous parent if there is one. Returns false and
    /// changes nothing when there is no display or parent is not a window. Reports an exception,
    /// closes the window and returns false.
    bool Open(std::uintptr_t parent);
    /// Removes the window from its parent, which may have been destroyed already.
    void Close();
    [[nodiscard]] bool IsOpen() const { return mIsOpen; }
    /// Returns the window of the system; 0 while there is none.
    [[nodiscard]] std::uintptr_t GetHandle() const;
    /// Notifies the views of a new sample rate in Hz. [setup, any thread under the interface lock]
    void SampleRateChanged(float rate);
    /// Returns whether a view of the window has the keyboard focus.
    [[nodiscard]] bool HasFocus() const;
    /// Has the window handle a key if a view wants it, and returns whether one does. What may open
    /// a menu is handled later on the interface thread, where menus and dialogs run.
    [[nodiscard]] bool TakeKey(const ZNativeKeyEvent& key);
    /// Handles the message as the window does.
    void Send(const boost::shared_ptr<const ZMessage>& message);
    /// Draws the window at a scale above 0, whether it is open or not; the picture stays valid
    /// until the next call. Throws ZException for a window that cannot be drawn.
    [[nodiscard]] const ZBitmap& Draw(double scale);

private:
    boost::shared_ptr<ZWindow> mWindow;
    bool mIsOpen = false;
};

}  // namespace orvane
