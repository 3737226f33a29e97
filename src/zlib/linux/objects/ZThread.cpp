// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZThread.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cassert>
#include <mutex>
#include <string>
#include <utility>

namespace orvane
{

struct ZThread::State
{
    State(std::string_view name, Function threadFunction, void* threadArgument)
        : mName(name)
        , mFunction(threadFunction)
        , mArgument(threadArgument)
    {
    }

    static void* Body(void* shared);
    void RunFunction();
    void ApplyPriority(Priority priority);
    void JoinHandle();

    const std::string mName;
    const Function mFunction;
    void* const mArgument;
    pthread_t mHandle{};
    ZSemaphore mBorn{"thread born", 0};
    ZSemaphore mStart{"thread start", 0};
    ZSemaphore mEnded{"thread ended", 0};
    std::atomic<bool> mResumed{false};
    std::atomic<bool> mCancelled{false};
    std::atomic<bool> mRunning{false};
    std::mutex mMutex;  // guards all below; held while the id is used, so that it stays valid
    Priority mPriority = kNormal;
    pid_t mThreadId = 0;  // 0 once the thread has ended
    bool mJoined = false;
};

namespace
{

/// Blocks all signals but those of faults for the life of the object; new threads inherit that.
class BlockedSignals
{
public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS})
            sigdelset(&all, fault);
        pthread_sigmask(SIG_SETMASK, &all, &mBefore);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }

private:
    sigset_t mBefore{};
};

constexpr int kLeastFavourable = 19;
// Nice values of the priorities, from idle to time critical.
constexpr std::array<int, 6> kNice{kLeastFavourable, 5, 0, -5, -10, -15};

/// Sets the nice value, or the nearest less favourable one that the system grants.
void setNice(pid_t thread, int nice)
{
    while (setpriority(PRIO_PROCESS, static_cast<id_t>(thread), nice) != 0 &&
           nice < kLeastFavourable)
        ++nice;
}

}  // namespace

void* ZThread::State::Body(void* shared)
{
    const std::unique_ptr<std::shared_ptr<State>> own(static_cast<std::shared_ptr<State>*>(shared));
    State& state = **own;
    pthread_setname_np(pthread_self(), state.mName.substr(0, 15).c_str());
    {
        const std::lock_guard lock(state.mMutex);
        state.mThreadId = gettid();
    }
    state.mBorn.Release();
    state.mStart.Wait();
    if (!state.mCancelled)
        state.RunFunction();
    {
        const std::lock_guard lock(state.mMutex);
        state.mThreadId = 0;
    }
    state.mRunning = false;
    state.mEnded.Release();
    return nullptr;
}

void ZThread::State::RunFunction()
{
    try {
        mFunction(mArgument);
    } catch (...) {
        reportCurrentException();
    }
}

void ZThread::State::ApplyPriority(Priority priority)
{
    const std::lock_guard lock(mMutex);
    const Priority before = std::exchange(mPriority, priority);
    if (mThreadId == 0)
        return;
    // The lowest real-time priority: the host's audio threads come first.
    sched_param realtime{};
    realtime.sched_priority = sched_get_priority_min(SCHED_RR);
    if (priority == kTimeCritical && pthread_setschedparam(mHandle, SCHED_RR, &realtime) == 0)
        return;
    const sched_param ordinary{};
    if (before == kTimeCritical)
        pthread_setschedparam(mHandle, SCHED_OTHER, &ordinary);
    setNice(mThreadId, kNice[static_cast<std::size_t>(priority)]);
}

// Called when the body no longer uses the mutex.
void ZThread::State::JoinHandle()
{
    const std::lock_guard lock(mMutex);
    if (!mJoined)
        pthread_join(mHandle, nullptr);
    mJoined = true;
}

ZThread::ZThread(std::string_view name, Function function, void* argument)
    : mState(std::make_shared<State>(name, function, argument))
{
    assert(function);
    auto shared = std::make_unique<std::shared_ptr<State>>(mState);
    const BlockedSignals blocked;
    if (pthread_create(&mState->mHandle, nullptr, &State::Body, shared.get()) != 0)
        throw ZException("CreateThread failed");
    static_cast<void>(shared.release());  // the thread deletes it
    mState->mBorn.Wait();
}

ZThread::~ZThread()
{
    if (!mState->mResumed) {
        mState->mCancelled = true;
        Resume();
    }
    if (pthread_equal(pthread_self(), mState->mHandle))
        pthread_detach(mState->mHandle);
    else
        static_cast<void>(Join(-1));
}

void ZThread::Resume()
{
    if (mState->mResumed.exchange(true))
        return;
    mState->mRunning = true;
    mState->mStart.Release();
}

void ZThread::SetPriority(Priority priority)
{
    assert(priority >= kIdle && priority <= kTimeCritical);
    mState->ApplyPriority(priority);
}

bool ZThread::IsRunning() const
{
    return mState->mRunning;
}

std::int32_t ZThread::Join(std::int32_t microseconds)
{
    assert(microseconds >= -1);
    if (!mState->mResumed || pthread_equal(pthread_self(), mState->mHandle))
        return -1;
    const std::int32_t timedOut =
        microseconds == -1 ? mState->mEnded.Wait() : mState->mEnded.Wait(microseconds);
    if (timedOut != 0)
        return 1;
    mState->mEnded.Release();  // for a later Join
    mState->JoinHandle();
    return 0;
}

}  // namespace orvane
