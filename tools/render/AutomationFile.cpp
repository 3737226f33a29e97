// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/AutomationFile.h"

#include "tools/render/InputFile.h"
#include "zlib/common/objects/ZException.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace orvane
{

namespace
{

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Without the blanks, and the quotes of a spreadsheet, around it.
std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

AutomationPoint pointIn(std::string_view line)
{
    constexpr std::size_t kLongest = 200;  // far above every point, for an error quotes the line
    if (line.size() > kLongest)
        throw ZException("it is too long: write SECONDS,NAME,VALUE, such as 1.5,key,C");
    const std::size_t first = line.find(',');
    const std::size_t second = line.find(',', first + 1);
    if (first == std::string_view::npos || second == std::string_view::npos)
        throw ZException(
            fmt::format("'{}' is no point: write SECONDS,NAME,VALUE, such as 1.5,key,C", line));
    const double seconds = secondsIn(trimmed(line.substr(0, first)));
    const std::string_view name = trimmed(line.substr(first + 1, second - first - 1));
    return {seconds, settingValueIn(name, trimmed(line.substr(second + 1)))};
}

bool isHeading(std::string_view line)
{
    return line.starts_with("time") || line.starts_with("Time") || line.starts_with("seconds");
}

bool saysNothing(std::string_view line, int number)
{
    return line.empty() || line.front() == '#' || (number == 1 && isHeading(line));
}

/// Takes the next line off the front of the text.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

}  // namespace

double secondsIn(std::string_view text)
{
    double seconds = -1.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    if (!isWhole || !std::isfinite(seconds) || seconds < 0.0)
        throw ZException(
            fmt::format("'{}' is no time: write seconds from the start, such as 1.5", text));
    return seconds;
}

std::vector<AutomationPoint> automationIn(std::string_view text, const std::string& name)
{
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    std::vector<AutomationPoint> points;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = trimmed(takeLine(text));
        if (saysNothing(line, number))
            continue;
        try {
            points.push_back(pointIn(line));
        } catch (const ZException& exception) {
            throw ZException(
                fmt::format("{}, line {}: {}", name, number, exception.GetMessage().ToNarrow()));
        }
    }
    std::stable_sort(
        points.begin(), points.end(),
        [](const AutomationPoint& a, const AutomationPoint& b) { return a.seconds < b.seconds; });
    return points;
}

std::vector<AutomationPoint> readAutomationFile(const std::filesystem::path& path)
{
    return automationIn(readInputFile(path), path.string());
}

}  // namespace orvane
