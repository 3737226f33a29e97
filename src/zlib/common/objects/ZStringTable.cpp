// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZStringTable.h"

#include "zlib/common/objects/ZString.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace orvane
{

namespace
{

constexpr std::string_view kBlanks = " \t";

/// Takes the next line off a text, without its end.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// The text of a line with the number; empty when the line is another one.
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

void cut(ZString& text, std::int32_t length)
{
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

}  // namespace orvane
