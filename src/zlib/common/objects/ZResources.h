// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace orvane
{

/// The resources of the library: bytes by type and name. Types are for example "XML", "IMAGE" and
/// "STRING"; names are file names with an extension. Both are compared without regard to case
/// (ASCII), because descriptions spell names in either case.
///
/// The object is a view: the table and the bytes are read-only data of the library. [any thread]
class ZResources
{
public:
    /// A row of the table.
    struct Entry
    {
        std::string_view type;
        std::string_view name;
        const char* begin;
        const char* end;  // behind the last byte
    };

    constexpr explicit ZResources(std::span<const Entry> entries) noexcept
        : mEntries(entries)
    {
    }

    /// The bytes of a resource, which may be empty; no value when there is no such resource.
    [[nodiscard]] std::optional<std::span<const std::byte>>
    Find(std::string_view type, std::string_view name) const noexcept;
    /// The same as text, which has no terminator.
    [[nodiscard]] std::optional<std::string_view> FindText(std::string_view type,
                                                           std::string_view name) const noexcept;

private:
    std::span<const Entry> mEntries;
};

}  // namespace orvane
