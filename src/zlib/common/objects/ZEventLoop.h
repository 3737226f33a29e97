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

/// Calls back for timers, file descriptors and posted functions, one at a time, on the thread that
/// calls Run. An exception that a callback throws is reported, and the loop goes on.
///
/// A loop made with kUnderInterfaceLock holds the interface lock around each callback, and not
/// while it waits. A callback may wait in a modal run: meanwhile a helper thread serves every
/// source, the one that opened the run included, so that each run can end by itself while others go
/// on that have begun after it. The loop's threads are the one that calls Run and these helpers.
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
    /// the callback could be waiting for them: a caller on a thread of the loop, and a caller that
    /// holds the interface lock if the loop uses it. For the second one the callback goes on only
    /// if it has released the lock. Does nothing for an unknown id. [any thread]
    void Remove(SourceId id);

    /// Serves the sources until End has been called; returns at once if it was called before. The
    /// calling thread becomes the loop's first thread.
    void Run();
    /// Ends Run and all modal runs. The loop cannot run again. [any thread]
    void End();
    /// Ends the modal runs of an owner (null: those without one) and waits until the callbacks that
    /// started them have returned; on the loop's threads it does not wait. It waits without the
    /// interface lock. After the return a caller that holds the lock knows that no such run is
    /// left. [any thread]
    void EndModalRuns(const void* owner);

    /// True on the thread that called Run and on helpers. [any thread]
    [[nodiscard]] bool IsLoopThread() const;
    /// Returns whether the caller runs on a thread of a loop that uses the interface lock.
    /// [any thread]
    [[nodiscard]] static bool IsOnInterfaceThread();

private:
    friend class ZModalRun;
    using Clock = std::chrono::steady_clock;

    struct Source;
    using SourcePtr = std::shared_ptr<Source>;
    struct RunState;
    using RunPtr = std::shared_ptr<RunState>;
    struct Helper;
    using Deliveries = std::vector<std::uint64_t>;

    [[nodiscard]] static RunPtr MakeRun(const void* owner);
    SourceId Add(SourcePtr source);
    void RunModally(const RunPtr& run);
    void WaitForEnd(const RunPtr& run);
    void StartHelper(const RunPtr& run);
    static void RunHelper(void* helper);
    void JoinHelpers(bool all);
    void ServeUntilEnded(const RunState& run);
    void GiveUpService();
    void ServeNext();
    [[nodiscard]] bool HasEnded(const RunState& run) const;
    void EndRun(RunState& run);
    [[nodiscard]] Deliveries EndRunsOf(const void* owner);
    void WaitForDeliveries(Deliveries& deliveries, const void* owner);
    [[nodiscard]] bool HasReady() const;
    [[nodiscard]] SourcePtr TakeReady();
    void WaitForSources();
    void AppendReady(SourcePtr source);
    void AppendDue(Clock::time_point now);
    void Deliver(Source& source);
    [[nodiscard]] std::uint64_t BeginDelivery(Source& source);
    void EndDelivery(Source& source, std::uint64_t delivery);
    void Wake() const;

    const Locking mLocking;
    const int mWakeDescriptor;  // an eventfd: a write to it ends the wait

    mutable std::mutex mMutex;               // guards all below
    std::condition_variable mDeliveryEnded;  // Remove and EndModalRuns wait for it
    std::map<SourceId, SourcePtr> mSources;
    std::deque<SourcePtr> mReady;
    SourceId mNextId = 1;
    Deliveries mDeliveries;  // in progress
    std::uint64_t mNextDelivery = 1;
    const RunPtr mMainRun;
    std::vector<RunPtr> mRuns;                // modal runs, in the order of their beginning
    std::optional<std::thread::id> mServer;   // the thread that serves; none while none does
    std::condition_variable mServiceChanged;  // mServer has been released, or a run has ended
    std::vector<std::unique_ptr<Helper>> mHelpers;
};

/// One modal run of an event loop: what a menu or a dialog waits in.
class ZModalRun
{
public:
    /// The owner is the object that must outlive the run, see ZEventLoop::EndModalRuns; null for
    /// none.
    ZModalRun(ZEventLoop& loop, const void* owner);
    ZModalRun(const ZModalRun&) = delete;
    ZModalRun& operator=(const ZModalRun&) = delete;

    /// Waits, while the loop goes on serving, until End, until a run of the same owner that began
    /// before has ended, or until the loop ends. The interface lock is given up meanwhile, so
    /// whatever it guards may have changed. Throws ZException kGeneral when the system has no
    /// thread left. [a thread of the loop]
    void Run();
    /// Lets Run return. [any thread]
    void End();

private:
    ZEventLoop& mLoop;
    const std::shared_ptr<ZEventLoop::RunState> mState;
};

}  // namespace orvane
