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

/// A numbered connection point of a bay. The bay that made the port owns it. Bays that publish the
/// port share it: when the owner is destroyed, the port loses its owner and its routes but stays
/// valid. Changed under the interface lock and never during a pass. [setup]
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

    /// The far end of a route: the port, and the bay that the route was made through, which owns or
    /// publishes the port.
    struct RouteRecord
    {
        ZBay* bay = nullptr;
        ZPort* port = nullptr;
    };

    static constexpr std::int32_t kMaxRoutes = 512;

    /// Allocates the whole route table, because a pass reads it without a lock.
    ZPort(std::string_view name, Type type);
    ZPort(const ZPort&) = delete;
    ZPort& operator=(const ZPort&) = delete;
    virtual ~ZPort() = default;

    /// Makes a port of the same name, direction and type, without owner and routes.
    [[nodiscard]] virtual boost::shared_ptr<ZPort> Clone() const;
    /// Hook: a route has been added to the table, at that index. Does nothing in ZPort.
    virtual void RouteAdded(ZBay& farBay, ZPort& farPort, std::int32_t index);
    /// Hook: the route at that index has been removed from the table. Does nothing in ZPort.
    virtual void RouteRemoved(ZBay& farBay, ZPort& farPort, std::int32_t index);

    [[nodiscard]] const std::string& GetName() const { return mName; }
    [[nodiscard]] Direction GetDirection() const { return mDirection; }
    [[nodiscard]] Type GetType() const { return mType; }
    /// Index among the owner's imports or exports; -1 without an owner.
    [[nodiscard]] std::int32_t GetIndex() const { return mIndex; }
    /// The bay that made the port; publishing does not change it. Null before the port is added to
    /// a bay and after it is removed. [audio thread]
    [[nodiscard]] ZBay* GetOwner() const noexcept { return mOwner; }

    /// Routes in the order in which they were made. A pass reads entry 0 only. [audio thread]
    [[nodiscard]] const std::vector<RouteRecord>& GetRoutes() const noexcept { return mRoutes; }
    [[nodiscard]] bool IsFull() const { return std::ssize(mRoutes) >= kMaxRoutes; }
    /// The route to that port, of which there is at most one; both pointers are null without one.
    [[nodiscard]] RouteRecord FindRoute(const ZPort& farPort) const;

    [[nodiscard]] float RangeMin() const { return mRangeMin; }
    [[nodiscard]] float RangeMax() const { return mRangeMax; }
    void SetRange(float min, float max);

protected:
    /// Copies the direction, for a clone.
    void CopyHeadFrom(const ZPort& other) { mDirection = other.mDirection; }

private:
    friend class ZBay;  // sets owner and index, adds and removes routes

    /// Throws ZException kGeneral when the table is full.
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
