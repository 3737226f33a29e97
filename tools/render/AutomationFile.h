// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/RenderSettings.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// A setting that takes a value at a moment of the stream.
struct AutomationPoint
{
    double seconds;  // from the start of the input, at least 0
    SettingValue value;
};

/// The time that a text stands for, finite and at least 0. Throws ZException for any other text.
[[nodiscard]] double secondsIn(std::string_view text);
/// The points of a text, in order of time, those of one moment as they stand. A line is
/// "SECONDS,NAME,VALUE"; empty lines, lines after a # and a first line that begins with "time" or
/// "seconds" say nothing. Throws ZException that gives name and the line's number.
[[nodiscard]] std::vector<AutomationPoint> automationIn(std::string_view text,
                                                        const std::string& name);
/// The same of a file on disk. Throws ZException also where it cannot be read.
[[nodiscard]] std::vector<AutomationPoint> readAutomationFile(const std::filesystem::path& path);

}  // namespace orvane
