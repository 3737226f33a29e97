// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZBay;

/// A numbered connection of a bay. It belongs to the bay that made it; bays that publish it hold it
/// too, so it is shared, and a published port never dangles: when its bay goes it loses its routes
/// and its owner. Changed on one thread at a time and never during a pass. [setup]
class ZPort
{
public:
    enum Direction : std::int32_t
    {
        kImport = 1,
        kExport = 2,
    };

    enum Type : std::int32_t
    {
        kAudio = 1,
        kControl = 2,
        kDiscrete = 3,  // a control that holds the value of a discrete element
        kSpectrum = 5,
    };

    /// The far end of a route: the bay through which it was made, and the port there.
    struct RouteRecord
    {
        ZBay* bay = nullptr;
        ZPort* port = nullptr;
    };

    static constexpr std::int32_t kMaxRoutes = 512;

    /// Room for all routes is taken here: a pass reads the table without a lock, so it must not
    /// move.
    ZPort(std::string_view name, Type type);
    ZPort(const ZPort&) = delete;
    ZPort& operator=(const ZPort&) = delete;
    virtual ~ZPort() = default;

    /// A new port of the same name, direction and type, with no owner and no routes.
    [[nodiscard]] virtual boost::shared_ptr<ZPort> Clone() const;
    /// A route stands in the table at that index. Nothing here.
    virtual void RouteAdded(ZBay& farBay, ZPort& farPort, std::int32_t index);
    /// A route has left the table, where it stood at that index. Nothing here.
    virtual void RouteRemoved(ZBay& farBay, ZPort& farPort, std::int32_t index);

    [[nodiscard]] const std::string& GetName() const { return mName; }
    [[nodiscard]] Direction GetDirection() const { return mDirection; }
    [[nodiscard]] Type GetType() const { return mType; }
    /// Place among the owner's imports or exports; -1 without an owner.
    [[nodiscard]] std::int32_t GetIndex() const { return mIndex; }
    /// The bay that made the port; publishing does not change it. Null before and after.
    [[nodiscard]] ZBay* GetOwner() const noexcept { return mOwner; }

    /// Routes in the order in which they were made; a pass reads entry 0 only.
    [[nodiscard]] const std::vector<RouteRecord>& GetRoutes() const noexcept { return mRoutes; }
    [[nodiscard]] bool IsFull() const { return std::ssize(mRoutes) >= kMaxRoutes; }
    /// The record of the route to that port, which there is at most once; all null without one.
    [[nodiscard]] RouteRecord FindRoute(const ZPort& farPort) const;

    [[nodiscard]] float RangeMin() const { return mRangeMin; }
    [[nodiscard]] float RangeMax() const { return mRangeMax; }
    void SetRange(float min, float max);

protected:
    /// What a clone takes over.
    void CopyHeadFrom(const ZPort& other) { mDirection = other.mDirection; }

private:
    friend class ZBay;  // owns, numbers and joins ports

    /// Throws ZException -1 when the table is full.
    void AddRoute(ZBay& farBay, ZPort& farPort);
    /// Does nothing when there is no such route.
    void RemoveRoute(const ZPort& farPort);

    const std::string mName;
    Direction mDirection = kImport;
    const Type mType;
    std::int32_t mIndex = -1;
    ZBay* mOwner = nullptr;
    std::vector<RouteRecord> mRoutes;  // changed under mRouteLock
    ZLock mRouteLock{"route to"};
    float mRangeMin = -1.0f;
    float mRangeMax = 1.0f;
};

}  // namespace orvane
