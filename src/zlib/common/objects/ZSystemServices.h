// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>

namespace orvane
{

/// Tells the user something in a message box. kind: 0 and 2 information, 1 warning, any other an
/// error. Without text the box has no title either. With exitAfter the process ends with code -1
/// after the box: for programs of our own, never in a host.
/// True when the answer was OK. That is the box's one button, which closing the box answers too,
/// and where nobody can be asked the answer is OK. [any thread but the audio thread]
bool ShowMessageBox(std::int32_t kind, bool exitAfter, const ZString& title, const ZString& text);

/// The version of a Windows system of the NT family. False, with the numbers as they were, on any
/// other system. [any thread]
bool GetWindowsVersion(std::int32_t& major, std::int32_t& minor);
/// For choices of drawing; false on any other system. [any thread]
[[nodiscard]] bool IsWindowsMajor6();
[[nodiscard]] bool IsWindowsMajor5();

}  // namespace orvane
