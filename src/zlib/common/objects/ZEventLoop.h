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

/// Calls back for timers, file descriptors and posted functions, all on the thread that calls Run.
/// An exception that a callback throws is reported, and the loop goes on.
///
/// A loop made with kUnderInterfaceLock holds the interface lock around each callback, but not
/// while it waits. A callback may run a modal loop (ZModalRun), in which all sources are served as
/// before, also the one whose callback it is.
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

    /// Throws ZException when the system has no descriptor left. [setup]
    explicit ZEventLoop(Locking locking);
    ZEventLoop(const ZEventLoop&) = delete;
    ZEventLoop& operator=(const ZEventLoop&) = delete;
    /// Drops all sources, also posted functions that have not run. Run has returned by then.
    ~ZEventLoop();

    /// Calls back once every period, first after one period. period > 0. When a call is late by
    /// more than a period, the missed calls are left out. [any thread]
    SourceId AddTimer(std::chrono::microseconds period, Callback callback);
    /// Calls back while the descriptor can be read or has hung up, sometimes with nothing to read.
    /// The callback itself removes a descriptor at its end of file. A descriptor that is closed
    /// without having been removed is dropped. [any thread]
    SourceId AddDescriptor(int descriptor, Callback callback);
    /// Calls back once, in the order of posting, and does not wait for it. [any thread]
    SourceId Post(Callback callback);

    /// Removes a source and waits until its callback has returned. Two callers do not wait, because
    /// the callback could be waiting for them: a caller on the loop's thread, and a caller that
    /// holds the interface lock if the loop uses it. For the second one the callback goes on only
    /// if it has released the lock. Does nothing for an unknown id. [any thread]
    void Remove(SourceId id);

    /// Serves the sources until End has been called; returns at once if it was called before. The
    /// calling thread becomes the loop's thread.
    void Run();
    /// Ends Run and all modal runs inside it. The loop cannot run again. [any thread]
    void End();
    /// Ends the modal runs of an owner (null: those without one) and waits until the callbacks that
    /// started them have returned; on the loop's thread it does not wait. It waits without the
    /// interface lock. After the return a caller that holds the lock knows that no such run is
    /// left. [any thread]
    void EndModalRuns(const void* owner);

    /// True on the thread that called Run. [any thread]
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
    const int mWakeDescriptor;  // an eventfd: a write to it ends the wait

    mutable std::mutex mMutex;               // guards all below
    std::condition_variable mDeliveryEnded;  // Remove and EndModalRuns wait for it
    std::map<SourceId, SourcePtr> mSources;
    std::deque<SourcePtr> mReady;  // shared by nested runs: none keeps an event from another
    SourceId mNextId = 1;
    std::vector<ZModalRun*> mRuns;           // from the outermost to the innermost
    std::vector<std::uint64_t> mDeliveries;  // in progress, in the same order
    std::uint64_t mNextDelivery = 1;
    std::thread::id mThread;
    std::unique_ptr<ZModalRun> mMainRun;
};

/// A nested run of an event loop, in which a modal menu or dialog waits.
class ZModalRun
{
public:
    /// The owner is the object that must outlive the run, see ZEventLoop::EndModalRuns; null for
    /// none.
    ZModalRun(ZEventLoop& loop, const void* owner);
    ZModalRun(const ZModalRun&) = delete;
    ZModalRun& operator=(const ZModalRun&) = delete;

    /// Serves the loop's sources until End is called or a run around this one has ended. Releases
    /// the interface lock meanwhile, so everything that it guards may have changed afterwards.
    /// [loop's thread]
    void Run();
    /// Lets Run return. [any thread]
    void End();

private:
    friend class ZEventLoop;

    ZEventLoop& mLoop;
    const void* const mOwner;
    bool mEnded = false;        // guarded by the loop's mutex
    std::uint64_t mWithin = 0;  // the delivery that started the run; guarded by the loop's mutex
};

}  // namespace orvane
