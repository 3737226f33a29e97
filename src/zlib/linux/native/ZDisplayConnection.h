// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/linux/native/ZBlitter.h"
#include "zlib/linux/native/ZDisplayClient.h"
#include "zlib/linux/native/ZKeyboard.h"
#include "zlib/linux/native/ZPipeSignalBlock.h"
#include "zlib/linux/native/ZSelection.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>

namespace orvane
{

/// The connection to the display that all windows share: opened for the first window and closed
/// after the last. The interface thread reads its events. When the server ends, the connection
/// stays broken until its windows release it; new windows open a new one.
///
/// Callers make requests while a ZDisplayUse lives. [any thread but the audio thread, under the
/// interface lock]
class ZDisplayConnection : public std::enable_shared_from_this<ZDisplayConnection>
{
public:
    /// Pixel format of the windows: 8 bits a colour and 4 bytes a pixel, the same as ZImage's.
    struct Format
    {
        std::uint8_t depth = 0;
        xcb_visualid_t visual = XCB_NONE;
        xcb_colormap_t colormap = XCB_NONE;
    };

    /// Returns the connection in use, or opens one. Null if there is no display or if it has no
    /// 24-bit colours; the first of such calls in a row writes a line to standard error.
    [[nodiscard]] static std::shared_ptr<ZDisplayConnection> Get();

    /// Called by Get(); public for std::make_shared.
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
    [[nodiscard]] ZBlitter& GetBlitter() { return mBlitter; }
    [[nodiscard]] ZKeyboard& GetKeyboard() { return mKeyboard; }
    [[nodiscard]] ZSelection& GetSelection() { return mSelection; }
    /// XCB_ATOM_NONE when the display is gone.
    [[nodiscard]] xcb_atom_t GetAtom(const std::string& name);

    void AddClient(xcb_window_t window, ZDisplayClient& client);
    void RemoveClient(xcb_window_t window);
    [[nodiscard]] bool HasClient(xcb_window_t window) const
    {
        return FindClient(window) != nullptr;
    }
    /// Has the interface thread call HandlePosted of the window's client, unless the client is
    /// removed before.
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
    ZBlitter mBlitter;
    ZKeyboard mKeyboard;
    std::map<std::string, xcb_atom_t> mAtoms;
    std::map<xcb_window_t, ZDisplayClient*> mClients;
    ZSelection mSelection{*this};                         // one of the clients
    std::deque<XcbPointer<xcb_generic_event_t>> mEvents;  // read and not yet dispatched
    bool mDrainPosted = false;
    bool mLossTold = false;
    const ZEventLoop::SourceId mSource;
};

/// Scope of requests to the display; scopes nest. Its end sends the requests. It also hands events
/// that XCB read meanwhile to the interface thread, which otherwise would not see them: the
/// descriptor is not readable for what was read already. [any thread but the audio thread, under
/// the interface lock]
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
