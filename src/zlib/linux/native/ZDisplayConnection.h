// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/linux/native/ZBlitter.h"
#include "zlib/linux/native/ZKeyboard.h"
#include "zlib/linux/native/ZPipeSignalBlock.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>

namespace orvane
{

/// A window on the connection, as the connection sees it. All calls come on the interface thread,
/// under the interface lock. It may be destroyed inside any of them.
class ZDisplayClient
{
public:
    virtual ~ZDisplayClient() = default;

    virtual void HandleEvent(const xcb_generic_event_t& event) = 0;
    /// What ZDisplayConnection::PostTo asked for.
    virtual void HandlePosted() = 0;
    /// The display is gone, and with it the window.
    virtual void HandleDisplayLost() = 0;
};

/// The one connection to the display that all windows share: it comes with the first of them and
/// goes with the last. The interface thread reads its events. After the server's end it stays as it
/// is until its windows let it go, while new windows find another one.
///
/// Whoever makes requests does so inside the life of a ZDisplayUse. [under the interface lock]
class ZDisplayConnection : public std::enable_shared_from_this<ZDisplayConnection>
{
public:
    /// Of the windows: 8 bits a colour and 4 bytes a pixel, as drawn pixels have it.
    struct Format
    {
        std::uint8_t depth = 0;
        xcb_visualid_t visual = XCB_NONE;
        xcb_colormap_t colormap = XCB_NONE;
    };

    /// The connection in use or a new one; null where there is no display or one with too few
    /// colours, which the first of such calls in a row tells in a line on standard error.
    [[nodiscard]] static std::shared_ptr<ZDisplayConnection> Get();

    /// For Get.
    ZDisplayConnection(XcbConnection connection, const xcb_screen_t& screen, const Format& format);
    ZDisplayConnection(const ZDisplayConnection&) = delete;
    ZDisplayConnection& operator=(const ZDisplayConnection&) = delete;
    ~ZDisplayConnection();

    [[nodiscard]] xcb_connection_t* GetNative() const { return mConnection.get(); }
    [[nodiscard]] bool IsBroken() const;
    [[nodiscard]] xcb_window_t GetRoot() const { return mScreen.root; }
    /// The size of the whole screen, which may span several monitors.
    [[nodiscard]] ZRect GetScreenRect() const;
    [[nodiscard]] const Format& GetFormat() const { return mFormat; }
    [[nodiscard]] ZBlitter& GetPixels() { return mPixels; }
    [[nodiscard]] ZKeyboard& GetKeyboard() { return mKeyboard; }
    /// XCB_ATOM_NONE when the display is gone.
    [[nodiscard]] xcb_atom_t GetAtom(const std::string& name);

    void AddClient(xcb_window_t window, ZDisplayClient& client);
    void RemoveClient(xcb_window_t window);
    [[nodiscard]] bool HasClient(xcb_window_t window) const
    {
        return FindClient(window) != nullptr;
    }
    /// Has the interface thread call HandlePosted of the window's client, if it is there by then.
    void PostTo(xcb_window_t window);

private:
    friend class ZDisplayUse;

    void EndUse();
    void PostDrain();
    void Drain();
    void ReadEvents();
    [[nodiscard]] XcbPointer<xcb_generic_event_t> TakeEvent();
    void Dispatch(const xcb_generic_event_t& event);
    void TellLoss();
    [[nodiscard]] ZDisplayClient* FindClient(xcb_window_t window) const;

    const ZInterfaceThread mThread;
    const XcbConnection mConnection;
    const xcb_screen_t mScreen;
    const Format mFormat;
    ZBlitter mPixels;
    ZKeyboard mKeyboard;
    std::map<std::string, xcb_atom_t> mAtoms;
    std::map<xcb_window_t, ZDisplayClient*> mClients;
    std::deque<XcbPointer<xcb_generic_event_t>> mEvents;  // read and not yet dispatched
    bool mDrainPosted = false;
    bool mLossTold = false;
    const ZEventLoop::SourceId mSource;
};

/// A stretch of requests to the display, made on any thread; stretches nest. At its end what was
/// asked for is on its way, and events that came in meanwhile are left to the interface thread: the
/// descriptor does not tell of what has been read already.
class ZDisplayUse
{
public:
    explicit ZDisplayUse(std::shared_ptr<ZDisplayConnection> connection);
    ZDisplayUse(const ZDisplayUse&) = delete;
    ZDisplayUse& operator=(const ZDisplayUse&) = delete;
    ~ZDisplayUse();

private:
    const ZPipeSignalBlock mPipeSignal;
    const std::shared_ptr<ZDisplayConnection> mConnection;
};

}  // namespace orvane
