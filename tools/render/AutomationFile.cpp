// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/AutomationFile.h"

#include "tools/render/Failure.h"
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

/// Strips surrounding blanks, then the quotes that a spreadsheet puts around a field.
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

AutomationPoint parsePoint(std::string_view line)
{
    constexpr std::size_t kLongest =
        200;  // characters; longer than any valid line, as errors quote it
    if (line.size() > kLongest)
        fail("it is too long: write SECONDS,NAME,VALUE, such as 1.5,key,C");
    const std::size_t first = line.find(',');
    const std::size_t second = line.find(',', first + 1);
    if (first == std::string_view::npos || second == std::string_view::npos)
        fail("'{}' is no point: write SECONDS,NAME,VALUE, such as 1.5,key,C", line);
    const double seconds = parseSeconds(trimmed(line.substr(0, first)));
    const std::string_view name = trimmed(line.substr(first + 1, second - first - 1));
    return {seconds, parseSetting(name, trimmed(line.substr(second + 1)))};
}

bool isHeading(std::string_view line)
{
    return line.starts_with("time") || line.starts_with("Time") || line.starts_with("seconds");
}

bool isSkipped(std::string_view line, int number)
{
    return line.empty() || line.front() == '#' || (number == 1 && isHeading(line));
}

/// Removes the first line from text and returns it without its line feed.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

}  // namespace

double parseSeconds(std::string_view text)
{
    double seconds = -1.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    if (!isWhole || !std::isfinite(seconds) || seconds < 0.0)
        fail("'{}' is no time: write seconds from the start, such as 1.5", text);
    return seconds;
}

std::vector<AutomationPoint> parseAutomation(std::string_view text, const std::string& name)
{
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    std::vector<AutomationPoint> points;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = trimmed(takeLine(text));
        if (isSkipped(line, number))
            continue;
        try {
            points.push_back(parsePoint(line));
        } catch (const ZException& exception) {
            fail("{}, line {}: {}", name, number, exception.GetMessage().ToNarrow());
        }
    }
    std::stable_sort(
        points.begin(), points.end(),
        [](const AutomationPoint& a, const AutomationPoint& b) { return a.seconds < b.seconds; });
    return points;
}

std::vector<AutomationPoint> readAutomationFile(const std::filesystem::path& path)
{
    return parseAutomation(readInputFile(path), path.string());
}

}  // namespace orvane
