// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Eventually.h"

#include <xcb/xcb.h>

namespace orvane
{

/// As eventually, for what is seen on the display.
[[nodiscard]] inline bool waitFor(const std::function<bool()>& condition)
{
    return eventually(condition);
}

/// All else that is on the display DISPLAY names: the windows of a host, on a connection of its
/// own, and the user, with real keys and buttons, who sees the screen.
struct DisplayProbe
{
    /// Throws std::runtime_error when there is no display.
    DisplayProbe();
    DisplayProbe(DisplayProbe&&) = delete;
    ~DisplayProbe();

    [[nodiscard]] xcb_window_t GetRoot() const { return mScreen->root; }
    /// A grey window, shown or not, which gets the keys that are typed in it.
    xcb_window_t MakeWindow(const xcb_rectangle_t& rect, bool shown = true);
    /// A window of 32 bits a pixel, as some hosts have; XCB_NONE where the display has none.
    xcb_window_t MakeDeepWindow(const xcb_rectangle_t& rect);
    void Show(xcb_window_t window) { Do(xcb_map_window, window); }
    void Hide(xcb_window_t window) { Do(xcb_unmap_window, window); }
    void Reparent(xcb_window_t window, xcb_window_t parent, int x, int y);
    void Destroy(xcb_window_t window) { Do(xcb_destroy_window, window); }
    /// Sends a message of 32 bit items to a window, as a window manager does.
    void SendMessage(xcb_window_t window, const char* type, std::uint32_t first);
    /// Sets the resources of the display, lines of "Name:\tvalue".
    void SetResources(const std::string& text);
    [[nodiscard]] xcb_atom_t GetAtom(std::string_view name);

    /// Moves the pointer to a place on the screen.
    void MovePointer(int x, int y) { Fake(XCB_MOTION_NOTIFY, 0, x, y); }
    void Press(std::uint8_t button) { Fake(XCB_BUTTON_PRESS, button); }
    void Release(std::uint8_t button) { Fake(XCB_BUTTON_RELEASE, button); }
    /// Several times, without a pause.
    void Click(std::uint8_t button, int times = 1);
    /// Holds the mouse as another program does; whether it could.
    [[nodiscard]] bool Grab();
    void Ungrab() { Do(xcb_ungrab_pointer, kNow); }
    /// The key that bears the symbol unshifted goes down or up.
    void PressKey(std::uint32_t symbol) { Fake(XCB_KEY_PRESS, FindKey(symbol)); }
    void ReleaseKey(std::uint32_t symbol) { Fake(XCB_KEY_RELEASE, FindKey(symbol)); }
    void TypeKey(std::uint32_t symbol);
    /// With another key held meanwhile.
    void TypeWith(std::uint32_t held, std::uint32_t symbol);
    /// Types letters, and Tab, Return, Escape and Backspace as \t, \r, \x1b and \b. The signs
    /// [<^>_{}] are Home, the arrows, Page Up, Page Down and End.
    void Type(std::string_view keys);
    /// Sends a window the key that bears the symbol, as programs do that pass keys on.
    void SendKey(xcb_window_t window, std::uint32_t symbol);
    /// Gives the key that bears a symbol another one.
    void ChangeKey(std::uint32_t symbol, std::uint32_t other);
    /// Has the keys go to a window.
    void Focus(xcb_window_t window);
    [[nodiscard]] xcb_window_t GetFocus();
    /// Symbols of the keys that went down in the host's own windows since the last call.
    [[nodiscard]] std::vector<std::uint32_t> TakeKeys(std::uint8_t type = XCB_KEY_PRESS);

    /// The pixel of the screen at a place, as 0xRRGGBB.
    [[nodiscard]] std::uint32_t PixelAt(int x, int y);
    [[nodiscard]] std::vector<xcb_window_t> GetChildren(xcb_window_t window);
    [[nodiscard]] xcb_rectangle_t GetPlace(xcb_window_t window);
    /// The property's bytes; empty where there is none.
    [[nodiscard]] std::vector<std::uint8_t> GetProperty(xcb_window_t window, const char* name);
    /// Windows, pictures and whatever else the server keeps for programs other than this probe.
    [[nodiscard]] std::uint32_t CountResources();
    /// Programs on the display, this probe not counted.
    [[nodiscard]] std::uint32_t CountClients();
    /// Waits until the server has done what was asked for.
    void Sync() { static_cast<void>(GetFocus()); }
    static constexpr xcb_timestamp_t kNow = XCB_CURRENT_TIME;

    struct Freer
    {
        void operator()(void* memory) const { std::free(memory); }
    };
    template <typename T>
    using Pointer = std::unique_ptr<T, Freer>;

    /// Makes a request and waits until it is done.
    template <typename Request, typename... Arguments>
    void Do(Request request, Arguments... arguments)
    {
        request(mConnection, arguments...);
        Sync();
    }
    /// Makes a request and takes its reply; null where the server refuses.
    template <typename Request, typename Cookie, typename Reply, typename... Arguments>
    Pointer<Reply> Ask(Request request,
                       Reply* (*take)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                       Arguments... arguments)
    {
        return Pointer<Reply>(take(mConnection, request(mConnection, arguments...), nullptr));
    }

    xcb_connection_t* const mConnection;

private:
    void Fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);
    [[nodiscard]] xcb_keycode_t FindKey(std::uint32_t symbol) const;
    [[nodiscard]] std::uint32_t FindSymbol(xcb_keycode_t key) const;
    [[nodiscard]] std::vector<std::uint32_t> GetOtherClients();

    const xcb_screen_t* mScreen = nullptr;
    Pointer<xcb_get_keyboard_mapping_reply_t> mKeys;
};

}  // namespace orvane
