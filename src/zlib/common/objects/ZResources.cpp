// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZResources.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

/// The C library's function would depend on the host's locale.
constexpr char toLowerAscii(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalsWithoutCase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, {}, toLowerAscii, toLowerAscii);
}

}  // namespace

std::optional<std::span<const std::byte>> ZResources::Find(std::string_view type,
                                                           std::string_view name) const noexcept
{
    const auto text = FindText(type, name);
    if (!text)
        return std::nullopt;
    return std::as_bytes(std::span(*text));
}

std::optional<std::string_view> ZResources::FindText(std::string_view type,
                                                     std::string_view name) const noexcept
{
    const auto found = std::ranges::find_if(mEntries, [&](const Entry& entry) {
        return equalsWithoutCase(entry.type, type) && equalsWithoutCase(entry.name, name);
    });
    if (found == mEntries.end())
        return std::nullopt;
    assert(found->begin <= found->end);
    return std::string_view(found->begin, found->end);
}

}  // namespace orvane
