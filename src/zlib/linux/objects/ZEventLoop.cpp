// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZEventLoop.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

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

namespace
{

/// Waits until a descriptor is ready or the time is reached.
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
    , mMainRun(std::make_unique<ZModalRun>(*this, nullptr))
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
    SourceId id = 0;
    {
        const std::lock_guard lock(mMutex);
        id = mNextId++;
        source->id = id;
        mSources.emplace(id, std::move(source));
    }
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

void ZEventLoop::Run()
{
    {
        const std::lock_guard lock(mMutex);
        assert(mThread == std::thread::id());
        mThread = std::this_thread::get_id();
    }
    Serve(*mMainRun);
}

void ZEventLoop::End()
{
    EndRun(*mMainRun);
}

bool ZEventLoop::IsLoopThread() const
{
    const std::lock_guard lock(mMutex);
    return mThread == std::this_thread::get_id();
}

void ZEventLoop::Serve(ZModalRun& run)
{
    {
        const std::lock_guard lock(mMutex);
        run.mWithin = mDeliveries.empty() ? 0 : mDeliveries.back();
        mRuns.push_back(&run);
    }
    {
        std::optional<ZInterfaceUnlock> unlocked;
        if (mLocking == Locking::kUnderInterfaceLock)
            unlocked.emplace();
        while (!HasEnded(run))
            ServeNext();
    }
    // With the interface lock held again: its holders see every run whose callback has not ended.
    const std::lock_guard lock(mMutex);
    assert(mRuns.back() == &run);
    mRuns.pop_back();
}

bool ZEventLoop::HasEnded(const ZModalRun& run) const
{
    const std::lock_guard lock(mMutex);
    const auto last = std::find(mRuns.begin(), mRuns.end(), &run);
    return std::any_of(mRuns.begin(), last + 1,
                       [](const ZModalRun* outer) { return outer->mEnded; });
}

void ZEventLoop::EndRun(ZModalRun& run)
{
    {
        const std::lock_guard lock(mMutex);
        run.mEnded = true;
    }
    Wake();
}

void ZEventLoop::EndModalRuns(const void* owner)
{
    while (const std::optional<std::uint64_t> delivery = EndOuterRun(owner)) {
        Wake();
        if (IsLoopThread())
            return;
        const ZInterfaceUnlock unlocked;
        WaitForDelivery(*delivery);
    }
}

std::optional<std::uint64_t> ZEventLoop::EndOuterRun(const void* owner)
{
    const std::lock_guard lock(mMutex);
    const auto run = std::find_if(mRuns.begin(), mRuns.end(), [&](const ZModalRun* each) {
        return each->mOwner == owner && each != mMainRun.get();
    });
    if (run == mRuns.end())
        return std::nullopt;
    (*run)->mEnded = true;  // ends the runs inside it too
    return (*run)->mWithin;
}

void ZEventLoop::WaitForDelivery(std::uint64_t delivery)
{
    std::unique_lock lock(mMutex);
    mDeliveryEnded.wait(lock, [&] {
        return std::find(mDeliveries.begin(), mDeliveries.end(), delivery) == mDeliveries.end();
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
    if (!BeginDelivery(source))
        return;
    try {
        source.callback();
    } catch (...) {
        reportCurrentException();
    }
    EndDelivery(source);
}

bool ZEventLoop::BeginDelivery(Source& source)
{
    const std::lock_guard lock(mMutex);
    if (source.removed)
        return false;
    ++source.running;
    mDeliveries.push_back(mNextDelivery++);
    return true;
}

void ZEventLoop::EndDelivery(Source& source)
{
    const std::lock_guard lock(mMutex);
    assert(source.running > 0 && !mDeliveries.empty());
    --source.running;
    mDeliveries.pop_back();
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
    , mOwner(owner)
{
}

void ZModalRun::Run()
{
    assert(mLoop.IsLoopThread());
    mLoop.Serve(*this);
}

void ZModalRun::End()
{
    mLoop.EndRun(*this);
}

}  // namespace orvane
