// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace orvane
{

/// What the library carries besides code: bytes by type and name. Types are "XML", "IMAGE",
/// "STRING" and their like; names are file names with their ending. Both are compared without case
/// (ASCII), since descriptions spell names as they please.
///
/// A view: the table and the bytes belong to the library's read-only data. [any thread]
class ZResources
{
public:
    struct Entry
    {
        std::string_view type;
        std::string_view name;
        const char* begin;
        const char* end;  // past the last byte
    };

    constexpr explicit ZResources(std::span<const Entry> entries) noexcept
        : mEntries(entries)
    {
    }

    /// The bytes of a resource, which may be none at all; no value when there is no such resource.
    [[nodiscard]] std::optional<std::span<const std::byte>>
    Find(std::string_view type, std::string_view name) const noexcept;
    /// The same as text. No terminator stands behind it.
    [[nodiscard]] std::optional<std::string_view> FindText(std::string_view type,
                                                           std::string_view name) const noexcept;

private:
    std::span<const Entry> mEntries;
};

}  // namespace orvane
