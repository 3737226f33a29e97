// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Virtual keys of the interface that this plug-in's editor uses.
enum VstVirtualKey : std::uint8_t
{
    VKEY_BACK = 1,
    VKEY_TAB = 2,
    VKEY_RETURN = 4,
    VKEY_ESCAPE = 6,
    VKEY_SPACE = 7,
    VKEY_END = 9,
    VKEY_HOME = 10,
    VKEY_LEFT = 11,
    VKEY_UP = 12,
    VKEY_RIGHT = 13,
    VKEY_DOWN = 14,
    VKEY_PAGEUP = 15,
    VKEY_PAGEDOWN = 16,
    VKEY_ENTER = 19,
    VKEY_INSERT = 21,
    VKEY_DELETE = 22,
    VKEY_NUMPAD0 = 24,
    VKEY_NUMPAD9 = 33,
    VKEY_DECIMAL = 38,
    VKEY_F10 = 49,
    VKEY_SHIFT = 54,
    VKEY_CONTROL = 55,
};

/// Bits of VstKeyCode::modifier.
enum VstModifierKey : std::uint8_t
{
    MODIFIER_SHIFT = 1,
    MODIFIER_ALTERNATE = 2,
    MODIFIER_COMMAND = 4,
    MODIFIER_CONTROL = 8,
};

/// A key event as the host passes it to the editor.
struct VstKeyCode
{
    std::int32_t character;  // 0 for a key without a character
    std::uint8_t virt;       // a virtual key, 0 for none; VstVirtualKey lists some
    std::uint8_t modifier;   // VstModifierKey
};

}  // namespace orvane
