// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowTimers.h"

#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZNeverDestroyed.h"
#include "zlib/common/views/ZViewMessage.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <map>
#include <memory>

namespace orvane
{

namespace
{

struct Timer
{
    ZHandler* handler;
    std::weak_ptr<const void> life;  // of the handler
    std::unique_ptr<ZInterfaceThread> thread;
    ZEventLoop::SourceId source;
};

// Guarded by the interface lock. Never destroyed, because the interface thread may fire timers
// until the process has ended.
std::map<std::int64_t, Timer>& timers()
{
    static const ZNeverDestroyed<std::map<std::int64_t, Timer>> all;
    return *all;
}

void fire(std::int64_t id)
{
    const auto found = timers().find(id);
    if (found == timers().end())
        return;
    if (found->second.life.expired())
        return ZWindowTimers::Stop(id);
    found->second.handler->HandleZMessage(makeMessage(ZTIMER, "TimerID", id));
}

}  // namespace

std::int64_t ZWindowTimers::Start(std::int64_t microseconds, ZHandler& handler)
{
    assert(microseconds > 0);
    static std::int64_t lastId = 0;  // guarded by the interface lock
    const std::int64_t id = ++lastId;
    const std::chrono::milliseconds period(std::max<std::int64_t>(microseconds / 1000, 1));
    auto thread = std::make_unique<ZInterfaceThread>();
    const auto source = thread->GetLoop().AddTimer(period, [id] { fire(id); });
    timers().emplace(id, Timer{&handler, handler.GetLife(), std::move(thread), source});
    return id;
}

void ZWindowTimers::Stop(std::int64_t id)
{
    // Out of the map first: releasing the thread may give up the interface lock.
    const auto timer = timers().extract(id);
    if (timer)
        timer.mapped().thread->GetLoop().Remove(timer.mapped().source);
}

std::int32_t ZWindowTimers::Count()
{
    return static_cast<std::int32_t>(timers().size());
}

}  // namespace orvane
