// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// The key codes in ZNativeKeyEvent and ZKEYDOWN, the same as hosts use. A letter or digit has the
/// ASCII code of its capital; keys that are not listed have code 0.
enum ZKeyCode : std::uint8_t
{
    kKeyNone = 0x00,
    kKeyBackspace = 0x08,
    kKeyTab = 0x09,
    kKeyReturn = 0x0d,
    kKeyShift = 0x10,
    kKeyControl = 0x11,
    kKeyEscape = 0x1b,
    kKeySpace = 0x20,
    kKeyPageUp = 0x21,
    kKeyPageDown = 0x22,
    kKeyEnd = 0x23,
    kKeyHome = 0x24,
    kKeyLeft = 0x25,
    kKeyUp = 0x26,
    kKeyRight = 0x27,
    kKeyDown = 0x28,
    kKeyInsert = 0x2d,
    kKeyDelete = 0x2e,
    kKeyMenu = 0x5d,
    kKeyF10 = 0x79,
};

}  // namespace orvane
