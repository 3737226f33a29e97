// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZResources;
class ZString;

/// Texts by number, in lines of the form `id text`: a decimal number, blanks, and the text in UTF-8
/// up to the end of the line. Lines of any other form are skipped, so `#` can start a comment.
///
/// The object is a view of the lines, which must outlive it. Each look-up reads the lines again:
/// tables are short, and texts are looked up only while windows are built. [any thread]
class ZStringTable
{
public:
    /// The largest length of a text in 16-bit units; longer texts are cut.
    static constexpr std::int32_t kMaxLength = 1023;

    constexpr explicit ZStringTable(std::string_view lines) noexcept
        : mLines(lines)
    {
    }

    /// Gives the text of the first line that has the number and a text, cut at a whole character.
    /// Returns false, with out unchanged, when there is no such line.
    [[nodiscard]] bool Find(std::int32_t id, ZString& out) const;

private:
    std::string_view mLines;
};

/// Gives the text that a string resource has for a number, in the user's language if there is one:
/// from "strings.<language>.txt", such as "strings.de_AT.txt", then from that of the primary
/// language, "strings.de.txt", then from "strings.txt". Returns false, with out unchanged, when
/// none of them has the number. [any thread but the audio thread]
[[nodiscard]] bool findResourceString(const ZResources& resources, std::int32_t id, ZString& out);

}  // namespace orvane
