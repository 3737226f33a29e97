// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowFilters.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/views/ZWindowFilter.h"

#include <algorithm>
#include <cassert>
#include <vector>

namespace orvane
{

void ZWindowFilters::Add(std::int32_t messageId, ZWindowFilter* filter)
{
    assert(ZInterfaceLock::IsHeld());
    assert(filter);
    mFilters.emplace(messageId, filter);
}

void ZWindowFilters::Remove(std::int32_t messageId, const ZWindowFilter* filter)
{
    assert(ZInterfaceLock::IsHeld());
    const auto [first, last] = mFilters.equal_range(messageId);
    const auto found =
        std::find_if(first, last, [filter](const auto& entry) { return entry.second == filter; });
    if (found != last)
        mFilters.erase(found);
}

void ZWindowFilters::Call(const ZMessage& message) const
{
    assert(ZInterfaceLock::IsHeld());
    const auto [first, last] = mFilters.equal_range(message.GetId());
    std::vector<ZWindowFilter*> filters;
    for (auto entry = first; entry != last; ++entry)
        filters.push_back(entry->second);
    for (ZWindowFilter* const filter : filters)
        filter->FilterMessage(message);
}

}  // namespace orvane
