// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZPort.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <mutex>

namespace orvane
{

namespace
{

auto find(const std::vector<ZPort::RouteRecord>& routes, const ZPort& farPort)
{
    return std::find_if(routes.begin(), routes.end(),
                        [&](const ZPort::RouteRecord& route) { return route.port == &farPort; });
}

}  // namespace

ZPort::ZPort(std::string_view name, Type type)
    : mName(name)
    , mType(type)
{
    mRoutes.reserve(kMaxRoutes);
}

boost::shared_ptr<ZPort> ZPort::Clone() const
{
    auto copy = boost::make_shared<ZPort>(mName, mType);
    copy->CopyHeadFrom(*this);
    return copy;
}

void ZPort::RouteAdded(ZBay& /*farBay*/, ZPort& /*farPort*/, std::int32_t /*index*/)
{
}

void ZPort::RouteRemoved(ZBay& /*farBay*/, ZPort& /*farPort*/, std::int32_t /*index*/)
{
}

ZPort::RouteRecord ZPort::FindRoute(const ZPort& farPort) const
{
    const auto found = find(mRoutes, farPort);
    return found == mRoutes.end() ? RouteRecord{} : *found;
}

void ZPort::SetRange(float min, float max)
{
    mRangeMin = min;
    mRangeMax = max;
}

void ZPort::AddRoute(ZBay& farBay, ZPort& farPort)
{
    assert(ZInterfaceLock::IsHeld());
    std::int32_t index = 0;
    {
        const std::lock_guard guard(mRouteLock);
        if (IsFull())
            throw ZException("Port '" + mName + "' has as many routes as a port can hold, " +
                             std::to_string(kMaxRoutes) + ".");
        index = static_cast<std::int32_t>(mRoutes.size());
        mRoutes.push_back({&farBay, &farPort});
    }
    RouteAdded(farBay, farPort, index);
}

void ZPort::RemoveRoute(const ZPort& farPort)
{
    assert(ZInterfaceLock::IsHeld());
    RouteRecord removed;
    std::int32_t index = 0;
    {
        const std::lock_guard guard(mRouteLock);
        const auto found = find(mRoutes, farPort);
        if (found == mRoutes.end())
            return;
        removed = *found;
        index = static_cast<std::int32_t>(found - mRoutes.begin());
        mRoutes.erase(found);
    }
    RouteRemoved(*removed.bay, *removed.port, index);
}

}  // namespace orvane
