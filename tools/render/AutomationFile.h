// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/RenderSettings.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// A setting and the time at which it takes a value.
struct AutomationPoint
{
    double seconds;  // from the start of the input, at least 0
    SettingValue value;
};

/// Parses a time in seconds, finite and at least 0. Throws ZException for any other text.
[[nodiscard]] double parseSeconds(std::string_view text);
/// Parses automation text into points sorted by time; points at the same time keep their order.
/// Each line is "SECONDS,NAME,VALUE". Empty lines, lines that start with "#", and a first line that
/// starts with "time" or "seconds" are skipped. Throws ZException with name and the line number.
[[nodiscard]] std::vector<AutomationPoint> parseAutomation(std::string_view text,
                                                           const std::string& name);
/// Reads a file and parses it as parseAutomation does. Throws ZException also when the file cannot
/// be read.
[[nodiscard]] std::vector<AutomationPoint> readAutomationFile(const std::filesystem::path& path);

}  // namespace orvane
