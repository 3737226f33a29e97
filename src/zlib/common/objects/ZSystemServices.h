// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

/// Shows a message box. kind: 0 and 2 are information, 1 is a warning, any other number is an
/// error. Without text the box has no title either. With exitAfter the process ends with status -1
/// after the box, which is only for our own programs, never for a host. Returns true when the
/// answer is OK. OK is the only button, closing the box means OK too, and so does a box that cannot
/// be shown. [any thread but the audio thread]
bool ShowMessageBox(std::int32_t kind, bool exitAfter, const ZString& title, const ZString& text);

/// Gives the version of a Windows system of the NT family. Returns false, with both unchanged, on
/// any other system. [any thread]
bool GetWindowsVersion(std::int32_t& major, std::int32_t& minor);
/// True on a Windows system of that major version, which draws some views in another way.
/// [any thread]
[[nodiscard]] bool IsWindowsMajor6();
[[nodiscard]] bool IsWindowsMajor5();

/// The user's language for messages, as file names spell it, then its primary language: "de_AT" and
/// "de". One name when there is no country, none when the user has set no language. [any thread but
/// the audio thread]
[[nodiscard]] std::vector<std::string> GetUserLanguages();

}  // namespace orvane
