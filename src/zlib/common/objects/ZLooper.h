// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZEventLoop.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLock.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane
{

class ZInterfaceThread;
class ZMessage;
class ZThread;

/// What the platform tells a looper, see ZLooper::LooperWindowProc.
enum class ZLooperEvent
{
    kTimer,
    kDestroy,
    kActivate,
    kQuit,
    kOther,
};

/// A queue of posted messages with a place to run them. It is a handler itself, of itself.
///
/// Served mode: no thread of its own. After InitLooper the interface thread runs the queue dry at
/// every tick; the owner may do so too. Thread mode: Run makes a thread that does nothing else.
/// Posting never wakes a looper: a message waits for the next tick, at most 41.666 ms.
///
/// Posting, asking for pending changes and timers work from any thread. A handler is removed by the
/// thread that delivers to it, or under the interface lock in served mode; else a message that is
/// being delivered at that moment may still be running when the removal returns.
///
/// Lock order: handlers before queue (only in a broadcast), queue before element changes. No lock
/// is held while a message is delivered or dropped.
class ZLooper : public ZHandler
{
public:
    static constexpr std::int32_t kTickMicroseconds = 41666;

    /// The application may be null; the looper does not own it.
    explicit ZLooper(std::string_view name, ZApplication* app = nullptr);
    /// Ends the looper's thread, lets all handlers go, stops the timers and drops the queue. A
    /// derived class that overrides what a tick calls first calls StopTimers in its own destructor.
    ~ZLooper() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] ZApplication* GetApp() override;
    /// ZLOOPERSTART: Started, then whoever waits in Run goes on. ZQUEUECHANGED: ProcessQueue.
    /// ZQUIT: stops the timers and ends the message loop.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Waits until the looper's loop has ended. An owner of a looper without a thread calls
    /// ReleaseAlive first. Gives up the interface lock meanwhile.
    virtual void WaitForExit();
    /// Begins the tick: on the looper's own thread when there is one, else on the interface thread.
    virtual void InitLooper();
    /// A handler has entered the list. Nothing here.
    virtual void HandlerAdded(ZHandler* handler);
    /// A handler has left the list; it may be in its destructor. Nothing here.
    virtual void HandlerRemoved(ZHandler* handler);
    /// Starts the looper on a thread of its own and returns when it has started. Gives up the
    /// interface lock meanwhile.
    virtual void Run();
    /// Drops the queue, ends the thread if there is one, and waits for the end.
    virtual void Quit();
    /// Posts ZLOOPERSTART to itself and serves events until ZQUIT. [looper's thread]
    virtual void MessageLoop();
    /// True when the message is a ZELEMENTCHANGED and one for the same element and target waits.
    [[nodiscard]] virtual bool IsElementChangePending(const ZMessage& message, ZHandler* target);
    /// Appends the message to the queue; the target must not be destroyed meanwhile.
    virtual void PostZMessage(boost::shared_ptr<const ZMessage> message, ZHandler* target);
    /// Posts the message to every handler in the list.
    virtual void BroadcastZMessage(boost::shared_ptr<const ZMessage> message);
    /// Delivers until the queue is empty, what is posted meanwhile included.
    virtual void ProcessQueue();
    /// Takes what the platform tells. The looper's own timer flushes element changes and runs the
    /// queue dry; any other sends a ZTIMER with "TimerID" (unsigned 32-bit) to this looper.
    /// 0 when the event was taken, -1 to leave it to the platform.
    virtual std::int32_t LooperWindowProc(ZLooperEvent event, std::int32_t timerId);
    /// The looper has started. Nothing here.
    virtual void Started();
    /// Delivers the front message, without any lock held; returns at once from an empty queue.
    virtual void ProcessNextMessage();

    using ZHandler::PostZMessage;

    void AddHandler(ZHandler* handler);
    /// Takes the handler off the list and drops what waits for it.
    void RemoveHandler(ZHandler* handler);
    [[nodiscard]] bool HasHandler(const ZHandler* handler);

    /// Starts a timer and gives back its id. Before InitLooper it only gives back the next id, and
    /// nothing fires. No flags are in use. [any thread]
    std::int32_t AddTimer(std::int32_t microseconds, std::int32_t flags);
    /// Stops a timer, as ZEventLoop::Remove does; an unknown id does nothing. [any thread]
    void RemoveTimer(std::int32_t id);
    /// Stops all timers, the tick included. [any thread]
    void StopTimers();
    /// Does the work of a tick: sends the notifications of marked elements and runs the queue dry.
    /// The looper's own timer calls it every kTickMicroseconds. [looper's thread; in served mode
    /// any thread that holds the interface lock]
    void Tick();
    /// Sets a function that the looper's timer calls at each tick, on its thread, before it calls
    /// Tick: false skips that call, while another thread calls Tick instead. [before InitLooper]
    void SetTickFilter(std::function<bool()> filter) { mTickFilter = std::move(filter); }

    /// True when a message waits: one atomic look, before the queue's lock is worth taking.
    /// [any thread, audio thread included]
    [[nodiscard]] bool HasMessages() const noexcept { return CountMessages() != 0; }
    /// Messages that wait. [any thread, audio thread included]
    [[nodiscard]] std::size_t CountMessages() const noexcept;
    /// Lets WaitForExit and Quit of a looper without a thread return.
    void ReleaseAlive() { mAlive.Release(); }

protected:
    /// Sends the notifications of elements that were marked on other threads; the tick calls it
    /// before it runs the queue. Nothing here.
    virtual void FlushElementChanges();
    /// Forgets what waits in the queue, undelivered.
    void DropMessages();

private:
    struct Record
    {
        boost::shared_ptr<const ZMessage> message;
        ZHandler* target;
    };
    using Queue = std::deque<Record>;
    /// Element by its identity, and who is told.
    using ElementChange = std::pair<std::uint64_t, ZHandler*>;

    static void RunThread(void* looper);
    void Start();
    void HandleTimer(std::int32_t timerId);
    [[nodiscard]] bool EnterList(ZHandler* handler);
    [[nodiscard]] bool LeaveList(ZHandler* handler);
    [[nodiscard]] bool TakeNext(Record& record);
    [[nodiscard]] Queue TakeRecordsFor(const ZHandler* target);
    [[nodiscard]] Queue TakeAll();
    [[nodiscard]] ZHandler* FirstHandler();
    void ForgetElementChange(const Record& record);
    void DropHandlers();

    ZEventLoop* mLoop = nullptr;  // null before InitLooper and after ZQUIT; guarded by mTimerLock
    std::unique_ptr<ZEventLoop> mOwnLoop;                // thread mode
    std::unique_ptr<ZInterfaceThread> mInterfaceThread;  // served mode, from InitLooper on
    std::atomic<std::int32_t> mQueueTimer{-1};
    std::function<bool()> mTickFilter;  // empty: no tick is skipped
    ZLock mQueueLock{"looper locker"};
    ZApplication* mApp;
    std::unique_ptr<ZThread> mThread;
    ZLock mTimerLock{"looper timers"};
    std::map<std::int32_t, ZEventLoop::SourceId> mTimers;  // guarded by mTimerLock
    std::int32_t mNextTimerId = 0;                         // guarded by mTimerLock
    ZSemaphore mActive{"looper active", 0};
    ZSemaphore mAlive{"looper alive", 0};
    std::vector<ZHandler*> mHandlers;  // guarded by mHandlersLock
    ZLock mHandlersLock{"handlers list lock"};
    Queue mQueue;                              // guarded by mQueueLock
    std::atomic<std::size_t> mQueueLength{0};  // written under mQueueLock, read by any thread
    // An entry for each ZELEMENTCHANGED in the queue; guarded by mQueueLock and
    // mElementChangesLock.
    std::multiset<ElementChange> mElementChanges;
    ZLock mElementChangesLock{"element-changed multiset lock"};
};

}  // namespace orvane
