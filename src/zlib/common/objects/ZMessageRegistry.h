// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace orvane
{

/// The table of message names and ids. There is one for the process. It is built while the library
/// loads and does not change until the library is unloaded, so reading needs no lock.
class ZMessageRegistry
{
public:
    struct Row
    {
        std::string_view name;
        std::int32_t id;
    };

    /// A table with the framework's rows.
    ZMessageRegistry();
    ZMessageRegistry(const ZMessageRegistry&) = delete;
    ZMessageRegistry& operator=(const ZMessageRegistry&) = delete;

    /// The table of the library. [any thread]
    [[nodiscard]] static ZMessageRegistry& Get();

    /// Adds a row. Two names may have the same id. Throws ZException when the name exists. [library
    /// load]
    void Add(std::string_view name, std::int32_t id);
    /// The id of a name, compared with case. Throws ZException when there is none. [any thread]
    [[nodiscard]] std::int32_t Find(std::string_view name) const;

private:
    std::map<std::string, std::int32_t, std::less<>> mIds;
};

/// Adds a product's rows to the library's table. A constant at namespace scope, so that the rows
/// are added while the library loads. [setup]
class ZMessageRows
{
public:
    ZMessageRows(std::initializer_list<ZMessageRegistry::Row> rows);
};

}  // namespace orvane
