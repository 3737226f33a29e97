// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZLooper.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZThread.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <chrono>
#include <iterator>
#include <mutex>
#include <optional>
#include <utility>

namespace orvane
{

namespace
{

// The shortest period of a timer: a shorter one would leave the loop no time for other events.
constexpr std::int32_t kShortestTimerMicroseconds = 1000;

/// The identity of the changed element, for a ZELEMENTCHANGED only.
std::optional<std::uint64_t> changedElement(const ZMessage& message)
{
    std::uint64_t element = 0;
    if (message.GetId() != ZELEMENTCHANGED || !message.Find("elementid", element))
        return std::nullopt;
    return element;
}

}  // namespace

ZLooper::ZLooper(std::string_view name, ZApplication* app)
    : ZHandler(name)
    , mApp(app)
{
    ZHandler::SetLooper(this);
}

ZLooper::~ZLooper()
{
    if (mThread) {
        PostZMessage(boost::make_shared<ZMessage>(ZQUIT), this);
        ZLooper::WaitForExit();
        const ZInterfaceUnlock unlocked;
        mThread.reset();
    }
    StopTimers();  // first: a tick must not use the list while it is emptied
    DropHandlers();
    const Queue dropped = TakeAll();
}

bool ZLooper::IsKindOf(std::string_view className) const
{
    return className == "ZLooperClass" || ZHandler::IsKindOf(className);
}

const char* ZLooper::GetClassName() const
{
    return "ZLooperClass";
}

ZApplication* ZLooper::GetApp()
{
    return mApp;
}

void ZLooper::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZLOOPERSTART:
        Start();
        break;
    case ZQUEUECHANGED:
        ProcessQueue();
        break;
    case ZQUIT:
        StopTimers();
        if (mOwnLoop)
            mOwnLoop->End();
        break;
    default:
        ZHandler::HandleZMessage(std::move(message));
    }
}

void ZLooper::Start()
{
    // Run must return even if Started throws.
    const struct Release
    {
        ZSemaphore& active;
        ~Release() { active.Release(); }
    } release{mActive};
    Started();
}

void ZLooper::WaitForExit()
{
    const ZInterfaceUnlock unlocked;
    mAlive.Wait();
    mAlive.Release();
}

void ZLooper::InitLooper()
{
    if (mQueueTimer >= 0)
        return;
    // The lock keeps the first tick from running before mQueueTimer is set.
    const ZInterfaceLock lock;
    const auto created = boost::make_shared<ZMessage>(ZCREATE);
    created->Add<bool>("Create", true);
    HandleZMessage(created);
    if (!mOwnLoop && !mInterfaceThread)
        mInterfaceThread = std::make_unique<ZInterfaceThread>();
    {
        const std::lock_guard timerLock(mTimerLock);
        mLoop = mOwnLoop ? mOwnLoop.get() : &mInterfaceThread->GetLoop();
    }
    mQueueTimer = AddTimer(kTickMicroseconds, 0);
}

void ZLooper::HandlerAdded(ZHandler* /*handler*/)
{
}

void ZLooper::HandlerRemoved(ZHandler* /*handler*/)
{
}

void ZLooper::Run()
{
    if (mThread)
        return;
    mOwnLoop = std::make_unique<ZEventLoop>(ZEventLoop::Locking::kNone);
    mThread = std::make_unique<ZThread>("looper message thread", &ZLooper::RunThread, this);
    mThread->Resume();
    const ZInterfaceUnlock unlocked;
    mActive.Wait();
}

void ZLooper::RunThread(void* looper)
{
    auto& self = *static_cast<ZLooper*>(looper);
    // However the loop ends, the threads that wait in Run and WaitForExit must go on.
    const struct Release
    {
        ZLooper& looper;
        ~Release()
        {
            looper.mActive.Release();
            looper.mAlive.Release();
        }
    } release{self};
    self.InitLooper();
    self.MessageLoop();
}

void ZLooper::Quit()
{
    DropMessages();
    if (mThread)
        PostZMessage(boost::make_shared<ZMessage>(ZQUIT), this);
    WaitForExit();
}

void ZLooper::MessageLoop()
{
    PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART), this);
    if (mOwnLoop)
        mOwnLoop->Run();
}

bool ZLooper::IsElementChangePending(const ZMessage& message, ZHandler* target)
{
    const std::optional<std::uint64_t> element = changedElement(message);
    if (!element)
        return false;
    const std::lock_guard queueLock(mQueueLock);
    const std::lock_guard changesLock(mElementChangesLock);
    return mElementChanges.contains({*element, target});
}

void ZLooper::PostZMessage(boost::shared_ptr<const ZMessage> message, ZHandler* target)
{
    assert(message && target);
    const std::optional<std::uint64_t> element = changedElement(*message);
    // The queue's lock covers both, so that each queued change has its entry in mElementChanges.
    const std::lock_guard queueLock(mQueueLock);
    if (element) {
        const std::lock_guard changesLock(mElementChangesLock);
        mElementChanges.emplace(*element, target);
    }
    mQueue.push_back({std::move(message), target});
    mQueueLength = mQueue.size();
}

void ZLooper::BroadcastZMessage(boost::shared_ptr<const ZMessage> message)
{
    // Held while posting: RemoveHandler then finds every message for its handler in the queue.
    const std::lock_guard lock(mHandlersLock);
    for (ZHandler* handler : mHandlers)
        PostZMessage(message, handler);
}

void ZLooper::ProcessQueue()
{
    while (HasMessages())
        ProcessNextMessage();
}

std::int32_t ZLooper::LooperWindowProc(ZLooperEvent event, std::int32_t timerId)
{
    switch (event) {
    case ZLooperEvent::kTimer:
        HandleTimer(timerId);
        return 0;
    case ZLooperEvent::kOther:
        return -1;
    default:
        return 0;
    }
}

void ZLooper::HandleTimer(std::int32_t timerId)
{
    if (timerId == mQueueTimer) {
        if (!mTickFilter || mTickFilter())
            Tick();
        return;
    }
    const auto message = boost::make_shared<ZMessage>(ZTIMER);
    message->Add<std::uint32_t>("TimerID", static_cast<std::uint32_t>(timerId));
    HandleZMessage(message);
}

void ZLooper::Tick()
{
    FlushElementChanges();
    HandleZMessage(boost::make_shared<ZMessage>(ZQUEUECHANGED));
}

void ZLooper::Started()
{
}

void ZLooper::ProcessNextMessage()
{
    Record record;
    if (TakeNext(record))
        record.target->HandleZMessage(record.message);
}

void ZLooper::FlushElementChanges()
{
}

void ZLooper::DropMessages()
{
    const Queue dropped = TakeAll();  // destroyed without the locks
}

void ZLooper::AddHandler(ZHandler* handler)
{
    assert(handler);
    if (EnterList(handler))
        HandlerAdded(handler);
    if (handler->mLooper != this)
        handler->SetLooper(this);
}

void ZLooper::RemoveHandler(ZHandler* handler)
{
    assert(handler);
    Queue dropped;  // destroyed last: the messages may own handlers of this looper
    if (LeaveList(handler)) {
        HandlerRemoved(handler);
        dropped = TakeRecordsFor(handler);
    }
    if (handler->mLooper == this)
        handler->mLooper = nullptr;
}

bool ZLooper::HasHandler(const ZHandler* handler)
{
    const std::lock_guard lock(mHandlersLock);
    return std::find(mHandlers.begin(), mHandlers.end(), handler) != mHandlers.end();
}

bool ZLooper::EnterList(ZHandler* handler)
{
    const std::lock_guard lock(mHandlersLock);
    if (std::find(mHandlers.begin(), mHandlers.end(), handler) != mHandlers.end())
        return false;
    mHandlers.push_back(handler);
    return true;
}

bool ZLooper::LeaveList(ZHandler* handler)
{
    const std::lock_guard lock(mHandlersLock);
    return std::erase(mHandlers, handler) > 0;
}

void ZLooper::DropHandlers()
{
    while (ZHandler* handler = FirstHandler()) {
        handler->SetLooper(nullptr);
        RemoveHandler(handler);
    }
}

ZHandler* ZLooper::FirstHandler()
{
    const std::lock_guard lock(mHandlersLock);
    return mHandlers.empty() ? nullptr : mHandlers.front();
}

std::int32_t ZLooper::AddTimer(std::int32_t microseconds, [[maybe_unused]] std::int32_t flags)
{
    assert(microseconds >= 0 && flags == 0);
    const std::chrono::microseconds period(std::max(microseconds, kShortestTimerMicroseconds));
    const std::lock_guard lock(mTimerLock);
    if (!mLoop)
        return mNextTimerId;
    const std::int32_t id = mNextTimerId++;
    mTimers[id] =
        mLoop->AddTimer(period, [this, id] { LooperWindowProc(ZLooperEvent::kTimer, id); });
    return id;
}

void ZLooper::RemoveTimer(std::int32_t id)
{
    ZEventLoop* loop = nullptr;
    ZEventLoop::SourceId source = 0;
    {
        const std::lock_guard lock(mTimerLock);
        const auto found = mTimers.find(id);
        if (found == mTimers.end())
            return;
        loop = mLoop;
        source = found->second;
        mTimers.erase(found);
    }
    // Without the lock: Remove waits for a callback, which may itself use timers.
    loop->Remove(source);
}

void ZLooper::StopTimers()
{
    ZEventLoop* loop = nullptr;
    std::map<std::int32_t, ZEventLoop::SourceId> stopped;
    {
        const std::lock_guard lock(mTimerLock);
        loop = std::exchange(mLoop, nullptr);
        stopped.swap(mTimers);
        mQueueTimer = -1;
    }
    for (const auto& [id, source] : stopped)
        loop->Remove(source);
}

std::size_t ZLooper::CountMessages() const noexcept
{
    return mQueueLength.load(std::memory_order_acquire);
}

bool ZLooper::TakeNext(Record& record)
{
    const std::lock_guard queueLock(mQueueLock);
    if (mQueue.empty())
        return false;
    record = std::move(mQueue.front());
    mQueue.pop_front();
    mQueueLength = mQueue.size();
    assert(record.message && record.target);
    // Before the delivery, so that a change during the delivery is posted again.
    ForgetElementChange(record);
    return true;
}

void ZLooper::ForgetElementChange(const Record& record)
{
    const std::optional<std::uint64_t> element = changedElement(*record.message);
    if (!element)
        return;
    const std::lock_guard changesLock(mElementChangesLock);
    mElementChanges.erase({*element, record.target});
}

ZLooper::Queue ZLooper::TakeRecordsFor(const ZHandler* target)
{
    const std::lock_guard queueLock(mQueueLock);
    const auto first =
        std::stable_partition(mQueue.begin(), mQueue.end(),
                              [=](const Record& record) { return record.target != target; });
    Queue taken(std::make_move_iterator(first), std::make_move_iterator(mQueue.end()));
    mQueue.erase(first, mQueue.end());
    mQueueLength = mQueue.size();
    for (const Record& record : taken)
        ForgetElementChange(record);
    return taken;
}

ZLooper::Queue ZLooper::TakeAll()
{
    const std::lock_guard queueLock(mQueueLock);
    const std::lock_guard changesLock(mElementChangesLock);
    mElementChanges.clear();
    mQueueLength = 0;
    return std::exchange(mQueue, {});
}

}  // namespace orvane
