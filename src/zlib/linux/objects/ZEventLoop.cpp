// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZEventLoop.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <optional>
#include <utility>

namespace orvane
{

/// A timer, a watched descriptor or a posted function, which is a timer without a period.
struct ZEventLoop::Source
{
    Callback callback;
    Clock::time_point due = Clock::time_point::max();
    std::chrono::microseconds period{0};
    int descriptor = -1;
    SourceId id = 0;
    bool removed = false;
    int running = 0;  // deliveries in progress: several where a callback runs a modal loop

    [[nodiscard]] bool IsPosted() const { return descriptor < 0 && period.count() == 0; }
};

/// A run as the loop and its helpers know it: a helper may outlive the ZModalRun. All but the owner
/// is guarded by the loop's mutex.
struct ZEventLoop::RunState
{
    const void* owner = nullptr;
    bool ended = false;
    bool hasHelper = false;
    std::uint64_t within = 0;  // the delivery that began the run
};

/// A thread that serves in place of one that waits in a run, until that run has ended.
struct ZEventLoop::Helper
{
    ZEventLoop& loop;
    const RunPtr run;
    bool done = false;  // guarded by the loop's mutex
    std::unique_ptr<ZThread> thread;
};

namespace
{

thread_local const ZEventLoop* loopOfThread = nullptr;
thread_local bool usesInterfaceLock = false;
thread_local std::uint64_t deliveryOfThread = 0;  // the innermost one; 0 for none

/// Waits until a descriptor is ready or the time has come.
void pollUntil(std::vector<pollfd>& polled, std::chrono::steady_clock::time_point due)
{
    using std::chrono::nanoseconds;
    if (due == std::chrono::steady_clock::time_point::max()) {
        ppoll(polled.data(), polled.size(), nullptr, nullptr);
        return;
    }
    const nanoseconds rest = due - std::chrono::steady_clock::now();
    const auto count = std::max(rest, nanoseconds(0)).count();
    const timespec limit{count / 1'000'000'000, count % 1'000'000'000};
    ppoll(polled.data(), polled.size(), &limit, nullptr);
}

int makeWakeDescriptor()
{
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0)
        throw ZException("Cannot make an event loop");
    return descriptor;
}

}  // namespace

ZEventLoop::ZEventLoop(Locking locking)
    : mLocking(locking)
    , mWakeDescriptor(makeWakeDescriptor())
    , mMainRun(MakeRun(nullptr))
{
}

ZEventLoop::~ZEventLoop()
{
    assert(mRuns.empty());
    close(mWakeDescriptor);
}

ZEventLoop::SourceId ZEventLoop::AddTimer(std::chrono::microseconds period, Callback callback)
{
    assert(period.count() > 0 && callback);
    auto source = std::make_shared<Source>();
    source->callback = std::move(callback);
    source->period = period;
    source->due = Clock::now() + period;
    return Add(std::move(source));
}

ZEventLoop::SourceId ZEventLoop::AddDescriptor(int descriptor, Callback callback)
{
    assert(descriptor >= 0 && callback);
    auto source = std::make_shared<Source>();
    source->callback = std::move(callback);
    source->descriptor = descriptor;
    return Add(std::move(source));
}

ZEventLoop::SourceId ZEventLoop::Post(Callback callback)
{
    assert(callback);
    auto source = std::make_shared<Source>();
    source->callback = std::move(callback);
    source->due = Clock::now();
    return Add(std::move(source));
}

ZEventLoop::SourceId ZEventLoop::Add(SourcePtr source)
{
    const std::lock_guard lock(mMutex);
    const SourceId id = mNextId++;
    source->id = id;
    mSources.emplace(id, std::move(source));
    // Under the lock, since a posted callback may be the one that ends and destroys this loop.
    if (!IsLoopThread())
        Wake();
    return id;
}

void ZEventLoop::Remove(SourceId id)
{
    const bool mayWait =
        !IsLoopThread() && !(mLocking == Locking::kUnderInterfaceLock && ZInterfaceLock::IsHeld());
    SourcePtr source;  // outlives the lock: the callback may own objects that use the loop
    std::unique_lock lock(mMutex);
    const auto found = mSources.find(id);
    if (found == mSources.end())
        return;
    source = found->second;
    source->removed = true;
    if (mayWait)
        mDeliveryEnded.wait(lock, [&] { return source->running == 0; });
    mSources.erase(id);
}

ZEventLoop::RunPtr ZEventLoop::MakeRun(const void* owner)
{
    auto run = std::make_shared<RunState>();
    run->owner = owner;
    return run;
}

void ZEventLoop::Run()
{
    loopOfThread = this;
    usesInterfaceLock = mLocking == Locking::kUnderInterfaceLock;
    ServeUntilEnded(*mMainRun);
    JoinHelpers(true);
}

void ZEventLoop::End()
{
    EndRun(*mMainRun);
}

bool ZEventLoop::IsLoopThread() const
{
    return loopOfThread == this;
}

bool ZEventLoop::IsOnInterfaceThread()
{
    return usesInterfaceLock;
}

void ZEventLoop::ServeUntilEnded(const RunState& run)
{
    const std::thread::id self = std::this_thread::get_id();
    for (;;) {
        {
            std::unique_lock lock(mMutex);
            mServiceChanged.wait(lock,
                                 [&] { return HasEnded(run) || !mServer || *mServer == self; });
            if (HasEnded(run))
                return GiveUpService();
            mServer = self;
        }
        ServeNext();
    }
}

/// Called with the mutex held.
void ZEventLoop::GiveUpService()
{
    if (mServer == std::this_thread::get_id()) {
        mServer.reset();
        mServiceChanged.notify_all();
    }
}

void ZEventLoop::RunModally(const RunPtr& run)
{
    {
        const std::lock_guard lock(mMutex);
        run->within = deliveryOfThread;
        mRuns.push_back(run);
        mDeliveryEnded.notify_all();
        GiveUpService();
    }
    {
        std::optional<ZInterfaceUnlock> unlocked;
        if (mLocking == Locking::kUnderInterfaceLock)
            unlocked.emplace();
        WaitForEnd(run);
    }
    {
        // Only after the interface lock is held again: whoever held it meanwhile found the run in
        // EndModalRuns(), since the callback that began it goes on from here.
        const std::lock_guard lock(mMutex);
        std::erase(mRuns, run);
    }
    JoinHelpers(false);
}

void ZEventLoop::WaitForEnd(const RunPtr& run)
{
    std::unique_lock lock(mMutex);
    for (;;) {
        mServiceChanged.wait(lock, [&] { return HasEnded(*run) || (!mServer && !run->hasHelper); });
        if (HasEnded(*run))
            return;
        StartHelper(run);
    }
}

/// Called with the mutex held.
void ZEventLoop::StartHelper(const RunPtr& run)
{
    auto helper = std::unique_ptr<Helper>(new Helper{*this, run, false, nullptr});
    try {
        helper->thread =
            std::make_unique<ZThread>("interface", &ZEventLoop::RunHelper, helper.get());
    } catch (...) {
        std::erase(mRuns, run);
        throw;
    }
    run->hasHelper = true;
    helper->thread->Resume();
    mHelpers.push_back(std::move(helper));
}

void ZEventLoop::RunHelper(void* argument)
{
    auto& helper = *static_cast<Helper*>(argument);
    ZEventLoop& loop = helper.loop;
    loopOfThread = &loop;
    usesInterfaceLock = loop.mLocking == Locking::kUnderInterfaceLock;
    loop.ServeUntilEnded(*helper.run);
    const std::lock_guard lock(loop.mMutex);
    helper.done = true;
}

/// Joins the helpers that have come to their end, or waits for all of them.
void ZEventLoop::JoinHelpers(bool all)
{
    std::vector<std::unique_ptr<Helper>> joined;  // outside the mutex
    const std::lock_guard lock(mMutex);
    for (auto& helper : mHelpers)
        if (all || helper->done)
            joined.push_back(std::move(helper));
    std::erase(mHelpers, nullptr);
}

/// Called with the mutex held.
bool ZEventLoop::HasEnded(const RunState& run) const
{
    return run.ended || mMainRun->ended;
}

void ZEventLoop::EndRun(RunState& run)
{
    {
        const std::lock_guard lock(mMutex);
        run.ended = true;
        const auto at = std::ranges::find(mRuns, &run, &RunPtr::get);
        for (auto each = at; each != mRuns.end(); ++each)
            if (run.owner && (*each)->owner == run.owner)
                (*each)->ended = true;
        mServiceChanged.notify_all();
    }
    Wake();
}

void ZEventLoop::EndModalRuns(const void* owner)
{
    Deliveries deliveries;
    for (;;) {
        const Deliveries more = EndRunsOf(owner);
        deliveries.insert(deliveries.end(), more.begin(), more.end());
        if (deliveries.empty())
            return;
        Wake();
        if (IsLoopThread())
            return;
        const ZInterfaceUnlock unlocked;
        WaitForDeliveries(deliveries, owner);
    }
}

ZEventLoop::Deliveries ZEventLoop::EndRunsOf(const void* owner)
{
    Deliveries deliveries;
    const std::lock_guard lock(mMutex);
    for (const RunPtr& run : mRuns) {
        if (run->owner != owner)
            continue;
        run->ended = true;
        deliveries.push_back(run->within);
    }
    mServiceChanged.notify_all();
    return deliveries;
}

/// Waits until all have ended, or until the owner has begun another run, which would keep them.
/// Leaves those that go on.
void ZEventLoop::WaitForDeliveries(Deliveries& deliveries, const void* owner)
{
    std::unique_lock lock(mMutex);
    mDeliveryEnded.wait(lock, [&] {
        std::erase_if(deliveries, [this](std::uint64_t delivery) {
            return std::ranges::count(mDeliveries, delivery) == 0;
        });
        return deliveries.empty() || std::ranges::any_of(mRuns, [owner](const RunPtr& run) {
                   return run->owner == owner && !run->ended;
               });
    });
}

void ZEventLoop::ServeNext()
{
    if (!HasReady()) {
        WaitForSources();
        return;
    }
    std::optional<ZInterfaceLock> interfaceLock;
    if (mLocking == Locking::kUnderInterfaceLock)
        interfaceLock.emplace();
    const SourcePtr source = TakeReady();
    Deliver(*source);
}

bool ZEventLoop::HasReady() const
{
    const std::lock_guard lock(mMutex);
    return !mReady.empty();
}

ZEventLoop::SourcePtr ZEventLoop::TakeReady()
{
    const std::lock_guard lock(mMutex);
    assert(!mReady.empty());
    SourcePtr source = std::move(mReady.front());
    mReady.pop_front();
    return source;
}

void ZEventLoop::WaitForSources()
{
    std::vector<pollfd> polled{{mWakeDescriptor, POLLIN, 0}};
    std::vector<SourcePtr> watched;
    auto due = Clock::time_point::max();
    {
        const std::lock_guard lock(mMutex);
        for (const auto& [id, source] : mSources) {
            due = std::min(due, source->due);
            if (source->descriptor < 0)
                continue;
            polled.push_back({source->descriptor, POLLIN, 0});
            watched.push_back(source);
        }
    }
    pollUntil(polled, due);
    eventfd_t wakes = 0;
    eventfd_read(mWakeDescriptor, &wakes);
    for (std::size_t i = 0; i < watched.size(); ++i) {
        if (polled[i + 1].revents & POLLNVAL)
            Remove(watched[i]->id);
        else if (polled[i + 1].revents != 0)
            AppendReady(watched[i]);
    }
    AppendDue(Clock::now());
}

void ZEventLoop::AppendReady(SourcePtr source)
{
    const std::lock_guard lock(mMutex);
    mReady.push_back(std::move(source));
}

void ZEventLoop::AppendDue(Clock::time_point now)
{
    const std::lock_guard lock(mMutex);
    std::vector<SourcePtr> due;
    for (const auto& [id, source] : mSources) {
        if (source->due <= now)
            due.push_back(source);
    }
    std::stable_sort(due.begin(), due.end(),
                     [](const SourcePtr& a, const SourcePtr& b) { return a->due < b->due; });
    for (SourcePtr& source : due) {
        if (source->IsPosted())
            source->due = Clock::time_point::max();
        else
            source->due += source->period;
        if (source->due <= now)
            source->due = now + source->period;
        mReady.push_back(std::move(source));
    }
}

void ZEventLoop::Deliver(Source& source)
{
    const std::uint64_t delivery = BeginDelivery(source);
    if (delivery == 0)
        return;
    const std::uint64_t outer = std::exchange(deliveryOfThread, delivery);
    try {
        source.callback();
    } catch (...) {
        reportCurrentException();
    }
    deliveryOfThread = outer;
    EndDelivery(source, delivery);
}

/// Returns the number of the delivery; 0 when the source has been removed.
std::uint64_t ZEventLoop::BeginDelivery(Source& source)
{
    const std::lock_guard lock(mMutex);
    if (source.removed)
        return 0;
    ++source.running;
    mDeliveries.push_back(mNextDelivery);
    return mNextDelivery++;
}

void ZEventLoop::EndDelivery(Source& source, std::uint64_t delivery)
{
    const std::lock_guard lock(mMutex);
    assert(source.running > 0 && !mDeliveries.empty());
    --source.running;
    std::erase(mDeliveries, delivery);
    if (source.IsPosted()) {
        source.removed = true;
        mSources.erase(source.id);
    }
    mDeliveryEnded.notify_all();
}

void ZEventLoop::Wake() const
{
    eventfd_write(mWakeDescriptor, 1);
}

ZModalRun::ZModalRun(ZEventLoop& loop, const void* owner)
    : mLoop(loop)
    , mState(ZEventLoop::MakeRun(owner))
{
}

void ZModalRun::Run()
{
    assert(mLoop.IsLoopThread());
    mLoop.RunModally(mState);
}

void ZModalRun::End()
{
    mLoop.EndRun(*mState);
}

}  // namespace orvane
