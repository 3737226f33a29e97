// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace orvane
{

class ZModalRun;

/// Serves timers, file descriptors and posted functions, all on the one thread that calls Run. An
/// exception that leaves a callback is reported, and the loop goes on.
///
/// A loop made with kUnderInterfaceLock holds the interface lock around each callback, and not
/// while it waits. Callbacks may run modal loops of their own, in which every source is served as
/// ever, the one that opened the modal loop included.
class ZEventLoop
{
public:
    using Callback = std::function<void()>;
    using SourceId = std::int64_t;

    enum class Locking
    {
        kNone,
        kUnderInterfaceLock,
    };

    /// Throws ZException -1 when the system has no descriptor left.
    explicit ZEventLoop(Locking locking);
    ZEventLoop(const ZEventLoop&) = delete;
    ZEventLoop& operator=(const ZEventLoop&) = delete;
    /// Drops what is left, posted functions included. Nobody serves the loop any more.
    ~ZEventLoop();

    /// Calls back once every period, which must be positive, first after one period. A tick that is
    /// late is not made up for: the next one comes a whole period after it. [any thread]
    SourceId AddTimer(std::chrono::microseconds period, Callback callback);
    /// Calls back whenever the descriptor can be read or has hung up, perhaps once with nothing to
    /// read. The callback removes a descriptor that is at its end. One that is closed without being
    /// removed is dropped. [any thread]
    SourceId AddDescriptor(int descriptor, Callback callback);
    /// Calls back once, in the order of posting, without the poster waiting. [any thread]
    SourceId Post(Callback callback);

    /// Removes a source; its callback is not running and will not run after the return. Two callers
    /// do not wait for a callback that is running, since it might wait for them: one on the loop's
    /// own thread, and, where the loop uses the interface lock, one that holds it. For the latter
    /// the callback runs only if it has given up the lock. An unknown id does nothing. [any thread]
    void Remove(SourceId id);

    /// Serves until End, which may have come before. [the thread that becomes the loop's]
    void Run();
    /// Ends Run and all modal runs inside it, for good. [any thread]
    void End();
    /// Ends the modal runs of an owner, or with null those that have none, and waits until the
    /// callbacks that began them have returned; on the loop's own thread it only ends them. Gives
    /// up the interface lock while it waits; a caller that holds the lock can then be sure there
    /// are none. [any thread]
    void EndModalRuns(const void* owner);

    [[nodiscard]] bool IsLoopThread() const;

private:
    friend class ZModalRun;
    using Clock = std::chrono::steady_clock;

    struct Source;
    using SourcePtr = std::shared_ptr<Source>;

    SourceId Add(SourcePtr source);
    void Serve(ZModalRun& run);
    void ServeNext();
    [[nodiscard]] bool HasEnded(const ZModalRun& run) const;
    void EndRun(ZModalRun& run);
    [[nodiscard]] std::optional<std::uint64_t> EndOuterRun(const void* owner);
    void WaitForDelivery(std::uint64_t delivery);
    [[nodiscard]] bool HasReady() const;
    [[nodiscard]] SourcePtr TakeReady();
    void WaitForSources();
    void AppendReady(SourcePtr source);
    void AppendDue(Clock::time_point now);
    void Deliver(Source& source);
    [[nodiscard]] bool BeginDelivery(Source& source);
    void EndDelivery(Source& source);
    void Wake() const;

    const Locking mLocking;
    const int mWakeDescriptor;  // an event counter of the system: written to break a wait

    mutable std::mutex mMutex;               // guards all below
    std::condition_variable mDeliveryEnded;  // for those who wait in Remove and EndModalRuns
    std::map<SourceId, SourcePtr> mSources;
    std::deque<SourcePtr>
        mReady;  // shared by nested runs, so that none keeps an event from another
    SourceId mNextId = 1;
    std::vector<ZModalRun*> mRuns;           // from the outermost to the innermost
    std::vector<std::uint64_t> mDeliveries;  // in progress, likewise
    std::uint64_t mNextDelivery = 1;
    std::thread::id mThread;
    std::unique_ptr<ZModalRun> mMainRun;
};

/// One nested run of an event loop: what a modal menu or dialog waits in.
class ZModalRun
{
public:
    /// The owner is whoever must not go while the run lasts, see ZEventLoop::EndModalRuns; null
    /// for none.
    ZModalRun(ZEventLoop& loop, const void* owner);
    ZModalRun(const ZModalRun&) = delete;
    ZModalRun& operator=(const ZModalRun&) = delete;

    /// Serves the loop's events until End, or until a run around this one has ended. The interface
    /// lock is given up meanwhile, so whatever it guards may have changed. [loop's thread]
    void Run();
    /// [any thread]
    void End();

private:
    friend class ZEventLoop;

    ZEventLoop& mLoop;
    const void* const mOwner;
    bool mEnded = false;        // guarded by the loop's mutex
    std::uint64_t mWithin = 0;  // the delivery that began the run; guarded likewise
};

}  // namespace orvane
