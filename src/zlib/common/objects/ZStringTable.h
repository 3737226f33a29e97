// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZString;

/// Texts by number, from lines of the form `id text`: a decimal number, blanks, and the text in
/// UTF-8 up to the end of the line. Lines of another form are passed over, so `#` starts a remark.
///
/// A view of the lines, which has to outlive it. They are read anew for each look-up: tables are
/// short and texts are asked for while things are built, so there is nothing to prepare.
/// [any thread]
class ZStringTable
{
public:
    /// Units of the longest text given out; what is longer is cut.
    static constexpr std::int32_t kMaxLength = 1023;

    constexpr explicit ZStringTable(std::string_view lines) noexcept
        : mLines(lines)
    {
    }

    /// The text of the first line with the number and a text, cut at a whole character. False,
    /// with out as it was, when there is no such line.
    [[nodiscard]] bool Find(std::int32_t id, ZString& out) const;

private:
    std::string_view mLines;
};

}  // namespace orvane
