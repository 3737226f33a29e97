// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>

namespace orvane
{

class ZMessage;
class ZWindowFilter;

/// The filters of a window by the id of the messages that they get. Filters are not owned.
/// [interface thread, with the interface lock]
class ZWindowFilters
{
public:
    /// The filter is not null.
    void Add(std::int32_t messageId, ZWindowFilter* filter);
    /// Ignores a filter that is not there for that id.
    void Remove(std::int32_t messageId, const ZWindowFilter* filter);
    /// Passes the message to the filters for its id in the order of their addition. A filter may
    /// add or remove filters meanwhile; that takes effect at the next message.
    void Call(const ZMessage& message) const;

private:
    std::multimap<std::int32_t, ZWindowFilter*> mFilters;
};

}  // namespace orvane
