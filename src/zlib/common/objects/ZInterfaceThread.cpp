// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceThread.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZNeverDestroyed.h"
#include "zlib/common/objects/ZThread.h"

#include <cstdint>
#include <mutex>
#include <utility>

namespace orvane
{

struct ZInterfaceThread::Engine
{
    ZEventLoop loop{ZEventLoop::Locking::kUnderInterfaceLock};
    std::unique_ptr<ZThread> thread;

    static void Run(void* shared);
    static std::shared_ptr<Engine> Start();
    /// Ends the loop and waits for the thread, -1 without limit.
    void Stop(std::int32_t limitMicroseconds);
};

namespace
{

thread_local bool onInterfaceThread = false;

// What an orderly end of the thread may take while the process exits. A thread that is caught in a
// call of the host for longer is left to the end of the process.
constexpr std::int32_t kExitLimitMicroseconds = 250'000;

}  // namespace

struct ZInterfaceThread::Shared
{
    std::mutex mutex;  // guards all below
    std::shared_ptr<Engine> engine;
    int holds = 0;

    // Never destroyed: boxes may be raised, and holds let go, until the very end of the process.
    static Shared& Get()
    {
        static const ZNeverDestroyed<Shared> shared;
        return *shared;
    }
};

void ZInterfaceThread::Engine::Run(void* shared)
{
    // The thread's own share, so that the last hold may be let go on the thread itself.
    const std::unique_ptr<std::shared_ptr<Engine>> own(
        static_cast<std::shared_ptr<Engine>*>(shared));
    onInterfaceThread = true;
    (*own)->loop.Run();
}

std::shared_ptr<ZInterfaceThread::Engine> ZInterfaceThread::Engine::Start()
{
    auto engine = std::make_shared<Engine>();
    auto share = std::make_unique<std::shared_ptr<Engine>>(engine);
    engine->thread = std::make_unique<ZThread>("interface", &Engine::Run, share.get());
    static_cast<void>(share.release());  // the thread deletes it
    engine->thread->Resume();
    return engine;
}

void ZInterfaceThread::Engine::Stop(std::int32_t limitMicroseconds)
{
    loop.End();
    const ZInterfaceUnlock unlocked;
    static_cast<void>(thread->Join(limitMicroseconds));
}

ZInterfaceThread::AtExit::~AtExit()
{
    std::shared_ptr<Engine> engine;
    {
        Shared& shared = Shared::Get();
        const std::lock_guard lock(shared.mutex);
        engine = std::move(shared.engine);
    }
    if (engine)
        engine->Stop(kExitLimitMicroseconds);
}

ZInterfaceThread::ZInterfaceThread()
{
    Shared& shared = Shared::Get();
    const std::lock_guard lock(shared.mutex);
    if (!shared.engine)
        shared.engine = Engine::Start();
    // Made late, so that it goes before anything the thread uses is destroyed.
    static const AtExit atExit;
    ++shared.holds;
    mEngine = shared.engine;
}

ZInterfaceThread::~ZInterfaceThread()
{
    std::shared_ptr<Engine> last;
    {
        Shared& shared = Shared::Get();
        const std::lock_guard lock(shared.mutex);
        if (--shared.holds == 0)
            last = std::move(shared.engine);
    }
    if (last)
        last->Stop(-1);
}

ZEventLoop& ZInterfaceThread::GetLoop() const
{
    return mEngine->loop;
}

bool ZInterfaceThread::Post(ZEventLoop::Callback callback)
{
    Shared& shared = Shared::Get();
    const std::lock_guard lock(shared.mutex);
    if (!shared.engine)
        return false;
    shared.engine->loop.Post(std::move(callback));
    return true;
}

void ZInterfaceThread::EndModalRuns(const void* owner)
{
    std::shared_ptr<Engine> engine;
    {
        Shared& shared = Shared::Get();
        const std::lock_guard lock(shared.mutex);
        engine = shared.engine;
    }
    if (engine)
        engine->loop.EndModalRuns(owner);
}

bool ZInterfaceThread::IsCurrent()
{
    return onInterfaceThread;
}

}  // namespace orvane
