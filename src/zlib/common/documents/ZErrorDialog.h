// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

/// Shows an error in a dialog program of the desktop (zenity, kdialog or xmessage), which is
/// started and not waited for; texts are UTF-8. False when there is no display or none of them is
/// installed. Needs neither the interface thread nor an application. [any thread but the audio
/// thread]
bool startErrorDialog(const std::string& title, const std::string& text);

}  // namespace orvane
