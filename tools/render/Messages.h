// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace orvane
{

/// The text with control characters, which may come from a file that it quotes, replaced by spaces.
[[nodiscard]] std::string oneLine(std::string text);

/// Prints a failure as one line on standard error.
void printFailure(std::string_view message);
/// Prints a note about something that had no effect as one line on standard error.
void printNote(std::string_view message);
/// Prints a text on standard output. Throws ZException when it cannot be written.
void printText(const std::string& text);

}  // namespace orvane
