// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace orvane
{

/// Frees what XCB returns, which comes from malloc.
struct XcbFreer
{
    void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
using XcbPointer = std::unique_ptr<T, XcbFreer>;

/// Closes a connection to the display.
struct XcbDisconnecter
{
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

using XcbConnection = std::unique_ptr<xcb_connection_t, XcbDisconnecter>;

/// Waits for the reply to a request; null if the server answers with an error or is gone. reply is
/// the function xcb_..._reply that belongs to the cookie.
template <typename Reply, typename Cookie>
[[nodiscard]] auto xcbReply(Reply* reply, xcb_connection_t* connection, Cookie cookie)
{
    xcb_generic_error_t* error = nullptr;
    auto* const answer = reply(connection, cookie, &error);
    const XcbPointer<xcb_generic_error_t> dropped(error);
    return XcbPointer<std::remove_pointer_t<decltype(answer)>>(answer);
}

}  // namespace orvane
