// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZStringTable.h"

#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/objects/ZSystemServices.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <string>
#include <system_error>

namespace orvane
{

namespace
{

constexpr std::string_view kBlanks = " \t";

/// Removes the first line from a text and returns it without its line end.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// The text of a line that has the number; empty for any other line.
std::string_view textOf(std::string_view line, std::int32_t id)
{
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc() || number != id)
        return {};
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    const std::size_t start = line.find_first_not_of(kBlanks);
    return start == 0 || start == std::string_view::npos ? std::string_view() : line.substr(start);
}

/// Cuts a text to a length in 16-bit units, at a whole character.
void cut(ZString& text, std::int32_t length)
{
    assert(length > 0);
    if (text.Length() <= length)
        return;
    const char16_t last = text.Chars()[length - 1];
    const bool halfCharacter = last >= 0xD800 && last < 0xDC00;
    const std::u16string whole(text.Chars(), static_cast<std::size_t>(length - halfCharacter));
    text.SetChars(whole.data(), static_cast<std::int32_t>(whole.size()));
}

}  // namespace

bool ZStringTable::Find(std::int32_t id, ZString& out) const
{
    for (std::string_view rest = mLines; !rest.empty();) {
        const std::string_view text = textOf(takeLine(rest), id);
        if (text.empty())
            continue;
        out = ZString(text);
        cut(out, kMaxLength);
        return true;
    }
    return false;
}

bool findResourceString(const ZResources& resources, std::int32_t id, ZString& out)
{
    const auto findIn = [&](const std::string& name) {
        const auto lines = resources.FindText("STRING", name);
        return lines && ZStringTable(*lines).Find(id, out);
    };
    return std::ranges::any_of(GetUserLanguages(),
                               [&](const std::string& language) {
                                   return findIn("strings." + language + ".txt");
                               }) ||
           findIn("strings.txt");
}

}  // namespace orvane
