// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace orvane
{

/// The table that gives message names their numbers. One for the process: built while the library
/// loads, destroyed as it unloads, and written at no other time, so reading it needs no lock.
class ZMessageRegistry
{
public:
    struct Row
    {
        std::string_view name;
        std::int32_t id;
    };

    /// Holds the framework's rows from the start.
    ZMessageRegistry();
    ZMessageRegistry(const ZMessageRegistry&) = delete;
    ZMessageRegistry& operator=(const ZMessageRegistry&) = delete;

    /// The library's table.
    [[nodiscard]] static ZMessageRegistry& Get();

    /// Two names may share a number. Throws ZException -1 when the name is there. [library load]
    void Add(std::string_view name, std::int32_t id);
    /// The number of a name, capitals told apart. Throws ZException -1 when there is none.
    /// [any thread]
    [[nodiscard]] std::int32_t Find(std::string_view name) const;
    [[nodiscard]] std::size_t GetCount() const { return mIds.size(); }

private:
    std::map<std::string, std::int32_t, std::less<>> mIds;
};

/// Adds a product's rows to the library's table. Made as a constant at namespace scope, which is
/// what puts the adding into the library's load.
class ZMessageRows
{
public:
    ZMessageRows(std::initializer_list<ZMessageRegistry::Row> rows);
};

}  // namespace orvane
