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

/// The platform's events for a looper, see ZLooper::LooperWindowProc.
enum class ZLooperEvent
{
    kTimer,
    kDestroy,
    kActivate,
    kQuit,
    kOther,
};

/// A queue of posted messages and the loop that delivers them. A looper is also a handler, and
/// serves itself.
///
/// In served mode the looper has no thread of its own: after InitLooper the interface thread
/// empties the queue at every tick, and the owner may empty it too. In thread mode Run starts a
/// thread that only runs the loop. Posting does not wake a looper: a message waits for the next
/// tick, at most 41.666 ms.
///
/// Any thread may post, ask for pending changes and use timers. A handler is removed by the thread
/// that delivers to it, or in served mode under the interface lock. When another thread removes it,
/// the delivery of a message to it may go on after the removal returns.
///
/// Lock order: handlers before queue (only in a broadcast), queue before element changes. No lock
/// is held while a message is delivered or dropped.
class ZLooper : public ZHandler
{
public:
    static constexpr std::int32_t kTickMicroseconds = 41666;

    /// The application may be null. The looper does not own it. [setup]
    explicit ZLooper(std::string_view name, ZApplication* app = nullptr);
    /// Ends the looper's thread, stops the timers, removes all handlers and drops the queue. A
    /// derived class that overrides a function which a tick calls stops the timers in its own
    /// destructor. [any thread but the looper's]
    ~ZLooper() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] ZApplication* GetApp() override;
    /// ZLOOPERSTART: calls Started, then lets Run return. ZQUEUECHANGED: calls ProcessQueue.
    /// ZQUIT: stops the timers and ends the message loop.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Waits until the looper's loop has ended, without the interface lock. The owner of a looper
    /// without a thread calls ReleaseAlive first. [any thread but the looper's]
    virtual void WaitForExit();
    /// Starts the ticks: on the looper's own thread if there is one, else on the interface thread.
    /// A second call does nothing. [setup]
    virtual void InitLooper();
    /// Called when a handler has been added to the list. Does nothing here.
    virtual void HandlerAdded(ZHandler* handler);
    /// Called when a handler has been removed from the list, perhaps by its own destructor. Does
    /// nothing here.
    virtual void HandlerRemoved(ZHandler* handler);
    /// Starts the looper on a thread of its own and waits, without the interface lock, until it has
    /// started. [setup]
    virtual void Run();
    /// Drops the queue, ends the thread if there is one, and waits for the loop's end. [any thread
    /// but the looper's]
    virtual void Quit();
    /// Posts ZLOOPERSTART to itself and serves events until ZQUIT. [looper's thread]
    virtual void MessageLoop();
    /// True when the message is a ZELEMENTCHANGED and the queue holds another one for the same
    /// element and target. [any thread]
    [[nodiscard]] virtual bool IsElementChangePending(const ZMessage& message, ZHandler* target);
    /// Appends the message to the queue. The caller keeps the target alive during the call.
    /// [any thread]
    virtual void PostZMessage(boost::shared_ptr<const ZMessage> message, ZHandler* target);
    /// Posts the message to every handler in the list. [any thread]
    virtual void BroadcastZMessage(boost::shared_ptr<const ZMessage> message);
    /// Delivers until the queue is empty, also the messages that are posted meanwhile. [looper's
    /// thread]
    virtual void ProcessQueue();
    /// Handles an event of the platform. The looper's own timer is a tick, unless the filter skips
    /// it; any other timer gives this looper a ZTIMER with "TimerID" (unsigned 32-bit). Returns 0
    /// when the event has been handled, -1 when the platform should handle it. [looper's thread]
    virtual std::int32_t LooperWindowProc(ZLooperEvent event, std::int32_t timerId);
    /// Called when the looper has started. Does nothing here. [looper's thread]
    virtual void Started();
    /// Delivers the first message, if there is one, without a lock. [looper's thread]
    virtual void ProcessNextMessage();

    using ZHandler::PostZMessage;

    /// Adds the handler to the list unless it is there, and makes this looper its own. [looper's
    /// thread]
    void AddHandler(ZHandler* handler);
    /// Removes the handler from the list and its messages from the queue. [looper's thread; in
    /// served mode any thread that holds the interface lock]
    void RemoveHandler(ZHandler* handler);
    /// True when the handler is in the list. [any thread]
    [[nodiscard]] bool HasHandler(const ZHandler* handler);

    /// Starts a timer and returns its id. Before InitLooper it starts none and only returns the
    /// next id. microseconds >= 0, 1000 at least are in effect; flags is 0. [any thread]
    std::int32_t AddTimer(std::int32_t microseconds, std::int32_t flags);
    /// Stops a timer and waits for its callback as ZEventLoop::Remove does. Does nothing for an
    /// unknown id. [any thread]
    void RemoveTimer(std::int32_t id);
    /// Stops all timers, also the ticks. [any thread]
    void StopTimers();
    /// Does the work of a tick: sends the notifications of marked elements and runs the queue dry.
    /// The looper's own timer calls it every kTickMicroseconds. [looper's thread; in served mode
    /// any thread that holds the interface lock]
    void Tick();
    /// Sets a function that the looper's timer calls at each tick, on its thread, before it calls
    /// Tick: false skips that call, while another thread calls Tick instead. [before InitLooper]
    void SetTickFilter(std::function<bool()> filter) { mTickFilter = std::move(filter); }

    /// True when the queue holds a message. Reads one atomic, so that callers can avoid the queue's
    /// lock. [any thread, audio thread included]
    [[nodiscard]] bool HasMessages() const noexcept { return CountMessages() != 0; }
    /// The number of messages in the queue. [any thread, audio thread included]
    [[nodiscard]] std::size_t CountMessages() const noexcept;
    /// Lets WaitForExit and Quit of a looper without a thread return. [any thread]
    void ReleaseAlive() { mAlive.Release(); }

protected:
    /// Sends the notifications of elements that other threads have marked. Tick calls it before it
    /// empties the queue. Does nothing here. [looper's thread]
    virtual void FlushElementChanges();
    /// Empties the queue without delivery. [any thread]
    void DropMessages();

private:
    struct Record
    {
        boost::shared_ptr<const ZMessage> message;
        ZHandler* target;
    };
    using Queue = std::deque<Record>;
    /// An element, by its identity, and the handler that is notified.
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
