// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

/// Shows an error in a dialog program of the desktop and does not wait for it: for failures that
/// end before this process has a thread that could show a message box. Does nothing without a
/// display, or when neither zenity, kdialog nor xmessage is installed.
/// [any thread but the audio thread]
void showDesktopNotice(const std::string& title, const std::string& text);

}  // namespace orvane
