// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZDisplayConnection.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZTrace.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <iterator>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

// The connection for new windows; null if none is open. Guarded by the interface lock.
ZDisplayConnection* current = nullptr;
// Whether the line about a missing display was written since the last display was found. Guarded by
// the interface lock.
bool lackReported = false;

/// The screen of a number; a display name may ask for another one than the first.
const xcb_screen_t* screenOf(const xcb_setup_t* setup, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

bool hasFourBytes(const xcb_setup_t* setup, std::uint8_t depth)
{
    const std::span formats(xcb_setup_pixmap_formats(setup),
                            static_cast<std::size_t>(xcb_setup_pixmap_formats_length(setup)));
    return std::any_of(formats.begin(), formats.end(), [=](const xcb_format_t& format) {
        return format.depth == depth && format.bits_per_pixel == 32;
    });
}

bool hasPixelsOfImages(const xcb_visualtype_t& visual)
{
    return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xFF0000 &&
           visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
}

/// The format of the root's visual if that suits, else of the first visual that does.
std::optional<ZDisplayConnection::Format> findFormat(const xcb_setup_t* setup,
                                                     const xcb_screen_t& screen)
{
    std::optional<ZDisplayConnection::Format> found;
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths))
    {
        if (!hasFourBytes(setup, depths.data->depth))
            continue;
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals))
        {
            if (!hasPixelsOfImages(*visuals.data))
                continue;
            if (!found || visuals.data->visual_id == screen.root_visual)
                found = {depths.data->depth, visuals.data->visual_id, XCB_NONE};
        }
    }
    return found;
}

xcb_colormap_t colormapFor(xcb_connection_t* connection, const xcb_screen_t& screen,
                           xcb_visualid_t visual)
{
    if (visual == screen.root_visual)
        return screen.default_colormap;
    const xcb_colormap_t colormap = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, screen.root, visual);
    return colormap;
}

std::shared_ptr<ZDisplayConnection> open()
{
    int screenNumber = 0;
    XcbConnection connection(xcb_connect(nullptr, &screenNumber));
    if (xcb_connection_has_error(connection.get()) != 0)
        return nullptr;
    const xcb_setup_t* const setup = xcb_get_setup(connection.get());
    const xcb_screen_t* const screen = screenOf(setup, screenNumber);
    std::optional<ZDisplayConnection::Format> format = findFormat(setup, *screen);
    if (!format)
        return nullptr;
    format->colormap = colormapFor(connection.get(), *screen, format->visual);
    return std::make_shared<ZDisplayConnection>(std::move(connection), *screen, *format);
}

std::uint8_t kindOf(const xcb_generic_event_t& event)
{
    return event.response_type & 0x7F;
}

/// The window that receives the event; its field has one of three offsets.
xcb_window_t windowOf(const xcb_generic_event_t& event)
{
    switch (kindOf(event)) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return reinterpret_cast<const xcb_key_press_event_t&>(event).event;
    case XCB_SELECTION_CLEAR:
    case XCB_SELECTION_REQUEST:
    case XCB_SELECTION_NOTIFY:
        return reinterpret_cast<const xcb_selection_clear_event_t&>(event).owner;
    default:
        return reinterpret_cast<const xcb_expose_event_t&>(event).window;
    }
}

/// Whether the next event makes this one needless: of several moves in a row only the last counts.
bool isSuperseded(const xcb_generic_event_t& event, const xcb_generic_event_t& next)
{
    const std::uint8_t kind = kindOf(event);
    return (kind == XCB_MOTION_NOTIFY || kind == XCB_CONFIGURE_NOTIFY) &&
           event.response_type == next.response_type && windowOf(event) == windowOf(next);
}

void traceError(const xcb_generic_event_t& event)
{
    const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
    char line[80];
    std::snprintf(line, sizeof(line), "Display error %u of request %u for %#x", error.error_code,
                  error.major_code, error.resource_id);
    ZTrace::Write(line);
}

}  // namespace

std::shared_ptr<ZDisplayConnection> ZDisplayConnection::Get()
{
    assert(ZInterfaceLock::IsHeld());
    if (current && !current->IsBroken())
        return current->shared_from_this();
    const ZPipeSignalBlock pipeSignal;
    auto connection = open();
    if (!connection && !lackReported)
        std::fputs("No display was found, so there is no window\n", stderr);
    lackReported = !connection;
    current = connection.get();
    return connection;
}

ZDisplayConnection::ZDisplayConnection(XcbConnection connection, const xcb_screen_t& screen,
                                       const Format& format)
    : mConnection(std::move(connection))
    , mScreen(screen)
    , mFormat(format)
    , mBlitter(mConnection.get(), screen.root, format.depth, ZBlitter::Route::kBest)
    , mKeyboard(mConnection.get())
    , mSource(mThread.GetLoop().AddDescriptor(xcb_get_file_descriptor(mConnection.get()),
                                              [this] { Drain(); }))
{
}

ZDisplayConnection::~ZDisplayConnection()
{
    if (current == this)
        current = nullptr;
    mThread.GetLoop().Remove(mSource);
}

bool ZDisplayConnection::IsBroken() const
{
    return xcb_connection_has_error(mConnection.get()) != 0;
}

ZRect ZDisplayConnection::GetScreenRect() const
{
    const auto size =
        xcbReply(xcb_get_geometry_reply, GetNative(), xcb_get_geometry(GetNative(), GetRoot()));
    if (!size)
        return {0, 0, mScreen.width_in_pixels, mScreen.height_in_pixels};
    return {0, 0, size->width, size->height};
}

xcb_atom_t ZDisplayConnection::GetAtom(const std::string& name)
{
    const auto known = mAtoms.find(name);
    if (known != mAtoms.end())
        return known->second;
    const auto reply = xcbReply(
        xcb_intern_atom_reply, GetNative(),
        xcb_intern_atom(GetNative(), 0, static_cast<std::uint16_t>(name.size()), name.data()));
    return mAtoms[name] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void ZDisplayConnection::AddClient(xcb_window_t window, ZDisplayClient& client)
{
    assert(window != XCB_NONE && !HasClient(window));
    mClients[window] = &client;
}

void ZDisplayConnection::RemoveClient(xcb_window_t window)
{
    mClients.erase(window);
}

ZDisplayClient* ZDisplayConnection::FindClient(xcb_window_t window) const
{
    const auto found = mClients.find(window);
    return found == mClients.end() ? nullptr : found->second;
}

void ZDisplayConnection::PostTo(xcb_window_t window)
{
    mThread.GetLoop().Post([weak = weak_from_this(), window] {
        const auto connection = weak.lock();
        if (ZDisplayClient* const client = connection ? connection->FindClient(window) : nullptr)
            client->HandlePosted();
    });
}

void ZDisplayConnection::EndUse()
{
    xcb_flush(GetNative());
    while (XcbPointer<xcb_generic_event_t> event{xcb_poll_for_queued_event(GetNative())})
        mEvents.push_back(std::move(event));
    if (!mEvents.empty() || (IsBroken() && !mLossTold))
        PostDrain();
}

void ZDisplayConnection::PostDrain()
{
    if (std::exchange(mDrainPosted, true))
        return;
    mThread.GetLoop().Post([weak = weak_from_this()] {
        if (const auto connection = weak.lock()) {
            connection->mDrainPosted = false;
            connection->Drain();
        }
    });
}

// A client may destroy the last window, so this holds a reference to the connection. A client may
// also run the event loop modally; the nested run must get the events that are left.
void ZDisplayConnection::Drain()
{
    const ZDisplayUse use(shared_from_this());
    for (ReadEvents(); !mEvents.empty(); ReadEvents()) {
        const auto event = TakeEvent();
        if (!mEvents.empty())
            PostDrain();
        Dispatch(*event);
    }
    if (IsBroken())
        TellLoss();
}

void ZDisplayConnection::ReadEvents()
{
    while (XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(GetNative())})
        mEvents.push_back(std::move(event));
}

XcbPointer<xcb_generic_event_t> ZDisplayConnection::TakeEvent()
{
    XcbPointer<xcb_generic_event_t> event;
    do {
        event = std::move(mEvents.front());
        mEvents.pop_front();
    } while (!mEvents.empty() && isSuperseded(*event, *mEvents.front()));
    return event;
}

void ZDisplayConnection::Dispatch(const xcb_generic_event_t& event)
{
    if (kindOf(event) == 0)
        return traceError(event);
    if (mKeyboard.HandleEvent(event))
        return;
    if (ZDisplayClient* const client = FindClient(windowOf(event)))
        client->HandleEvent(event);
}

void ZDisplayConnection::TellLoss()
{
    if (std::exchange(mLossTold, true))
        return;
    mThread.GetLoop().Remove(mSource);
    std::vector<xcb_window_t> windows;
    std::transform(mClients.begin(), mClients.end(), std::back_inserter(windows),
                   [](const auto& entry) { return entry.first; });
    for (const xcb_window_t window : windows) {
        if (ZDisplayClient* const client = FindClient(window))
            client->HandleDisplayLost();
    }
}

ZDisplayUse::ZDisplayUse(std::shared_ptr<ZDisplayConnection> connection)
    : mConnection(std::move(connection))
{
    assert(mConnection);
}

ZDisplayUse::~ZDisplayUse()
{
    mConnection->EndUse();
}

}  // namespace orvane
