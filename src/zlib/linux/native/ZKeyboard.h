// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZXcb.h"

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

/// Releases a reference to an object of xkbcommon.
struct XkbFreer
{
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
    void operator()(xkb_compose_table* table) const { xkb_compose_table_unref(table); }
    void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
};

template <typename T>
using XkbPointer = std::unique_ptr<T, XkbFreer>;

/// Translates key events by the user's keyboard map, which is read at the first key and again after
/// it changed. A server without the XKB extension gives the core protocol's map, without third
/// level and second layout. [interface thread]
class ZKeyboard
{
public:
    explicit ZKeyboard(xcb_connection_t* connection);
    ZKeyboard(const ZKeyboard&) = delete;
    ZKeyboard& operator=(const ZKeyboard&) = delete;

    /// Translates a key press. Text that several keys make together, such as an accent and a
    /// letter, comes with the last of them.
    [[nodiscard]] ZNativeKeyEvent Translate(const xcb_key_press_event_t& event);
    /// Handles events about the keyboard map; returns false for all others.
    bool HandleEvent(const xcb_generic_event_t& event);

    /// Records whether a window used the press of a key. The keyboard keeps this for all windows,
    /// since the press may close its window, and then another one gets the release.
    void SetUsed(xcb_keycode_t key, bool used) { mUsed[key] = used; }
    /// Ends the record of a key at its release; returns whether its press was used.
    [[nodiscard]] bool EndUse(xcb_keycode_t key)
    {
        const bool used = mUsed[key];
        mUsed[key] = false;
        return used;
    }

private:
    void Load();
    [[nodiscard]] bool LoadXkb();
    void LoadPlain();
    [[nodiscard]] xkb_keysym_t GetSymbol(const xcb_key_press_event_t& event) const;
    [[nodiscard]] xkb_keysym_t GetPlainSymbol(const xcb_key_press_event_t& event) const;
    [[nodiscard]] ZString Compose(xkb_keysym_t symbol);
    void LoadComposer();
    [[nodiscard]] xkb_keysym_t GetCodedSymbol(xcb_keycode_t key, xkb_keysym_t symbol) const;

    xcb_connection_t* const mConnection;
    std::bitset<256> mUsed;  // by key code: down, and a window used the press
    bool mLoaded = false;
    std::uint8_t mXkbEvent = 0;  // event number of the XKB extension; 0 until it is in use
    XkbPointer<xkb_context> mContext;
    XkbPointer<xkb_state> mState;  // null without XKB
    XcbPointer<xcb_get_keyboard_mapping_reply_t> mPlain;
    XkbPointer<xkb_compose_state> mComposer;  // null until a dead key was pressed
};

}  // namespace orvane
