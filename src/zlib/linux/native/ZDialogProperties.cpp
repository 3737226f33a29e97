// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZDialogProperties.h"

#include "zlib/linux/native/ZDisplayConnection.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace orvane
{

namespace
{

/// Sets a property of 32-bit values.
void setProperty(ZDisplayConnection& display, xcb_window_t window, const char* name,
                 xcb_atom_t type, std::span<const std::uint32_t> values)
{
    xcb_change_property(display.GetNative(), XCB_PROP_MODE_REPLACE, window, display.GetAtom(name),
                        type, 32, static_cast<std::uint32_t>(values.size()), values.data());
}

void setText(ZDisplayConnection& display, xcb_window_t window, const char* name,
             const std::string& text)
{
    xcb_change_property(display.GetNative(), XCB_PROP_MODE_REPLACE, window, display.GetAtom(name),
                        display.GetAtom("UTF8_STRING"), 8, static_cast<std::uint32_t>(text.size()),
                        text.data());
}

/// Window managers set WM_STATE on the windows that they manage.
bool isManaged(ZDisplayConnection& display, xcb_window_t window)
{
    const auto reply =
        xcbReply(xcb_get_property_reply, display.GetNative(),
                 xcb_get_property(display.GetNative(), 0, window, display.GetAtom("WM_STATE"),
                                  XCB_GET_PROPERTY_TYPE_ANY, 0, 0));
    return reply && reply->type != XCB_ATOM_NONE;
}

}  // namespace

xcb_window_t topLevelAround(ZDisplayConnection& display, xcb_window_t window)
{
    while (!isManaged(display, window)) {
        const auto tree = xcbReply(xcb_query_tree_reply, display.GetNative(),
                                   xcb_query_tree(display.GetNative(), window));
        if (!tree || tree->parent == XCB_NONE || tree->parent == tree->root)
            break;
        window = tree->parent;
    }
    return window;
}

void setDialogProperties(ZDisplayConnection& display, xcb_window_t window, xcb_window_t parent,
                         bool modal)
{
    const std::array protocols{display.GetAtom("WM_DELETE_WINDOW")};
    setProperty(display, window, "WM_PROTOCOLS", XCB_ATOM_ATOM, protocols);
    const std::array type{display.GetAtom("_NET_WM_WINDOW_TYPE_DIALOG")};
    setProperty(display, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, type);
    if (modal) {
        const std::array state{display.GetAtom("_NET_WM_STATE_MODAL")};
        setProperty(display, window, "_NET_WM_STATE", XCB_ATOM_ATOM, state);
    }
    if (parent == XCB_NONE)
        return;
    const std::array owner{topLevelAround(display, parent)};
    setProperty(display, window, "WM_TRANSIENT_FOR", XCB_ATOM_WINDOW, owner);
}

void setDialogTitle(ZDisplayConnection& display, xcb_window_t window, const ZString& title)
{
    const std::string text = title.ToNarrow();
    setText(display, window, "_NET_WM_NAME", text);
    setText(display, window, "WM_NAME", text);
}

void setDialogPlace(ZDisplayConnection& display, xcb_window_t window, const ZRect& rect,
                    bool resizable)
{
    constexpr std::uint32_t kPosition = 1;
    constexpr std::uint32_t kSmallest = 16;
    constexpr std::uint32_t kLargest = 32;
    const auto width = static_cast<std::uint32_t>(rect.GetWidth());
    const auto height = static_cast<std::uint32_t>(rect.GetHeight());
    const std::array<std::uint32_t, 18> hints{resizable ? kPosition
                                                        : kPosition | kSmallest | kLargest,
                                              static_cast<std::uint32_t>(rect.left),
                                              static_cast<std::uint32_t>(rect.top),
                                              width,
                                              height,
                                              width,
                                              height,
                                              width,
                                              height};
    setProperty(display, window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, hints);
}

bool isCloseRequest(ZDisplayConnection& display, const xcb_client_message_event_t& event)
{
    return event.format == 32 && event.type == display.GetAtom("WM_PROTOCOLS") &&
           event.data.data32[0] == display.GetAtom("WM_DELETE_WINDOW");
}

}  // namespace orvane
