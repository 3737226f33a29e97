// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZKeyboard.h"

#include "zlib/common/native/ZKeyCode.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <span>

// Declared here because XCB's header xkb.h does not compile as C++: it has a field named explicit.
extern "C" xcb_void_cookie_t xcb_xkb_select_events(xcb_connection_t* connection,
                                                   std::uint16_t device, std::uint16_t affected,
                                                   std::uint16_t cleared, std::uint16_t selected,
                                                   std::uint16_t affectedMap, std::uint16_t map,
                                                   const void* details);

namespace orvane
{

namespace
{

constexpr std::uint16_t kCoreKeyboard = 0x100;
constexpr std::uint16_t kMapEvents = 1 | 2;  // NewKeyboardNotify, MapNotify
constexpr std::uint16_t kAllOfMap = 0xFF;

struct Code
{
    xkb_keysym_t symbol;
    std::uint8_t code;
};

constexpr std::array kCodes{
    Code{XKB_KEY_BackSpace, kKeyBackspace},
    Code{XKB_KEY_Tab, kKeyTab},
    Code{XKB_KEY_ISO_Left_Tab, kKeyTab},
    Code{XKB_KEY_Return, kKeyReturn},
    Code{XKB_KEY_KP_Enter, kKeyReturn},
    Code{XKB_KEY_Shift_L, kKeyShift},
    Code{XKB_KEY_Shift_R, kKeyShift},
    Code{XKB_KEY_Control_L, kKeyControl},
    Code{XKB_KEY_Control_R, kKeyControl},
    Code{XKB_KEY_Escape, kKeyEscape},
    Code{XKB_KEY_space, kKeySpace},
    Code{XKB_KEY_Page_Up, kKeyPageUp},
    Code{XKB_KEY_KP_Page_Up, kKeyPageUp},
    Code{XKB_KEY_Page_Down, kKeyPageDown},
    Code{XKB_KEY_KP_Page_Down, kKeyPageDown},
    Code{XKB_KEY_End, kKeyEnd},
    Code{XKB_KEY_KP_End, kKeyEnd},
    Code{XKB_KEY_Home, kKeyHome},
    Code{XKB_KEY_KP_Home, kKeyHome},
    Code{XKB_KEY_Left, kKeyLeft},
    Code{XKB_KEY_KP_Left, kKeyLeft},
    Code{XKB_KEY_Up, kKeyUp},
    Code{XKB_KEY_KP_Up, kKeyUp},
    Code{XKB_KEY_Right, kKeyRight},
    Code{XKB_KEY_KP_Right, kKeyRight},
    Code{XKB_KEY_Down, kKeyDown},
    Code{XKB_KEY_KP_Down, kKeyDown},
    Code{XKB_KEY_Insert, kKeyInsert},
    Code{XKB_KEY_KP_Insert, kKeyInsert},
    Code{XKB_KEY_Delete, kKeyDelete},
    Code{XKB_KEY_KP_Delete, kKeyDelete},
    Code{XKB_KEY_Menu, kKeyMenu},
    Code{XKB_KEY_F10, kKeyF10},
};

std::uint8_t codeOf(xkb_keysym_t symbol)
{
    if (symbol >= XKB_KEY_a && symbol <= XKB_KEY_z)
        return static_cast<std::uint8_t>(symbol - XKB_KEY_a + 'A');
    if ((symbol >= XKB_KEY_A && symbol <= XKB_KEY_Z) ||
        (symbol >= XKB_KEY_0 && symbol <= XKB_KEY_9))
        return static_cast<std::uint8_t>(symbol);
    if (symbol >= XKB_KEY_KP_0 && symbol <= XKB_KEY_KP_9)
        return static_cast<std::uint8_t>(symbol - XKB_KEY_KP_0 + '0');
    const auto* const found = std::find_if(kCodes.begin(), kCodes.end(),
                                           [=](const Code& each) { return each.symbol == symbol; });
    return found == kCodes.end() ? std::uint8_t{kKeyNone} : found->code;
}

/// The text that a symbol types; empty for control characters.
ZString textOf(xkb_keysym_t symbol)
{
    std::array<char, 8> text{};
    const bool isText = xkb_keysym_to_utf8(symbol, text.data(), text.size()) > 1 &&
                        static_cast<unsigned char>(text[0]) >= 0x20 && text[0] != 0x7F;
    return isText ? ZString(text.data()) : ZString();
}

/// Whether the key begins a sequence of keys that type one text.
bool isDead(xkb_keysym_t symbol)
{
    return symbol == XKB_KEY_Multi_key ||
           (symbol >= XKB_KEY_dead_grave && symbol <= XKB_KEY_dead_greek);
}

}  // namespace

ZKeyboard::ZKeyboard(xcb_connection_t* connection)
    : mConnection(connection)
{
}

ZNativeKeyEvent ZKeyboard::Translate(const xcb_key_press_event_t& event)
{
    if (!mLoaded)
        Load();
    ZNativeKeyEvent key;
    key.shift = event.state & XCB_MOD_MASK_SHIFT;
    key.control = event.state & XCB_MOD_MASK_CONTROL;
    key.alt = event.state & XCB_MOD_MASK_1;
    const xkb_keysym_t symbol = GetSymbol(event);
    key.code = codeOf(GetCodedSymbol(event.detail, symbol));
    if (!key.control && !key.alt)
        key.text = Compose(symbol);
    return key;
}

bool ZKeyboard::HandleEvent(const xcb_generic_event_t& event)
{
    const bool isAboutMap = event.response_type == XCB_MAPPING_NOTIFY ||
                            (mXkbEvent != 0 && event.response_type == mXkbEvent);
    mLoaded = mLoaded && !isAboutMap;
    return isAboutMap;
}

void ZKeyboard::Load()
{
    mState.reset();
    mPlain.reset();
    if (!LoadXkb())
        LoadPlain();
    mLoaded = true;
}

bool ZKeyboard::LoadXkb()
{
    if (!mContext) {
        mContext.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
        xkb_x11_setup_xkb_extension(
            mConnection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &mXkbEvent, nullptr);
    }
    if (!mContext || mXkbEvent == 0)
        return false;
    xcb_xkb_select_events(mConnection, kCoreKeyboard, kMapEvents, 0, kMapEvents, kAllOfMap,
                          kAllOfMap, nullptr);
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(mConnection);
    if (device < 0)
        return false;
    const XkbPointer<xkb_keymap> keymap(xkb_x11_keymap_new_from_device(
        mContext.get(), mConnection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    mState.reset(keymap ? xkb_state_new(keymap.get()) : nullptr);
    return mState != nullptr;
}

void ZKeyboard::LoadPlain()
{
    const xcb_setup_t* const setup = xcb_get_setup(mConnection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    mPlain = xcbReply(xcb_get_keyboard_mapping_reply, mConnection,
                      xcb_get_keyboard_mapping(mConnection, setup->min_keycode, count));
}

// The event holds the modifiers and the layout in force, so no state is kept between events.
xkb_keysym_t ZKeyboard::GetSymbol(const xcb_key_press_event_t& event) const
{
    if (!mState)
        return GetPlainSymbol(event);
    const xkb_layout_index_t layout = event.state >> 13 & 3U;
    xkb_state_update_mask(mState.get(), event.state & 0xFFU, 0, 0, 0, 0, layout);
    return xkb_state_key_get_one_sym(mState.get(), event.detail);
}

xkb_keysym_t ZKeyboard::GetPlainSymbol(const xcb_key_press_event_t& event) const
{
    const std::uint8_t first = xcb_get_setup(mConnection)->min_keycode;
    if (!mPlain || mPlain->keysyms_per_keycode == 0 || event.detail < first)
        return XKB_KEY_NoSymbol;
    const std::span symbols(
        xcb_get_keyboard_mapping_keysyms(mPlain.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(mPlain.get())));
    const std::size_t perKey = mPlain->keysyms_per_keycode;
    const std::size_t index = perKey * static_cast<std::size_t>(event.detail - first);
    if (index >= symbols.size())
        return XKB_KEY_NoSymbol;
    if ((event.state & XCB_MOD_MASK_SHIFT) == 0)
        return symbols[index];
    const xkb_keysym_t shifted = perKey > 1 ? symbols[index + 1] : XKB_KEY_NoSymbol;
    return shifted == XKB_KEY_NoSymbol ? xkb_keysym_to_upper(symbols[index]) : shifted;
}

ZString ZKeyboard::Compose(xkb_keysym_t symbol)
{
    if (!mComposer && isDead(symbol))
        LoadComposer();
    xkb_compose_state* const composer = mComposer.get();
    if (!composer || xkb_compose_state_feed(composer, symbol) == XKB_COMPOSE_FEED_IGNORED)
        return textOf(symbol);
    std::array<char, 64> text{};
    switch (xkb_compose_state_get_status(composer)) {
    case XKB_COMPOSE_NOTHING:
        return textOf(symbol);
    case XKB_COMPOSE_COMPOSED:
        xkb_compose_state_get_utf8(composer, text.data(), text.size());
        return text.data();
    default:
        return {};
    }
}

// Loads the compose rules of the user's language when they are first needed: the file has thousands
// of lines, and most users press no dead key.
void ZKeyboard::LoadComposer()
{
    const char* const locale = std::setlocale(LC_CTYPE, nullptr);
    const XkbPointer<xkb_compose_table> table(
        mContext ? xkb_compose_table_new_from_locale(mContext.get(), locale ? locale : "C",
                                                     XKB_COMPOSE_COMPILE_NO_FLAGS)
                 : nullptr);
    if (table)
        mComposer.reset(xkb_compose_state_new(table.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

// Shortcuts use Latin letters: if the layout in force has no symbol with a key code on the key,
// another layout of the user may have one.
xkb_keysym_t ZKeyboard::GetCodedSymbol(xcb_keycode_t key, xkb_keysym_t symbol) const
{
    if (codeOf(symbol) != kKeyNone || !mState)
        return symbol;
    xkb_keymap* const keymap = xkb_state_get_keymap(mState.get());
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const xkb_keysym_t* found = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &found) == 1 &&
            codeOf(*found) != kKeyNone)
            return *found;
    }
    return symbol;
}

}  // namespace orvane
