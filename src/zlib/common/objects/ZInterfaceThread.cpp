// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceThread.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZNeverDestroyed.h"
#include "zlib/common/objects/ZThread.h"

#include <cassert>
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
    /// Ends the loop and waits for the thread at most so long; -1 waits without limit.
    void Stop(std::int32_t limitMicroseconds);
};

namespace
{

// The longest wait for the thread's end while the process exits. A thread that is inside a call of
// the host for longer than that ends with the process.
constexpr std::int32_t kExitLimitMicroseconds = 250'000;

}  // namespace

struct ZInterfaceThread::Shared
{
    std::mutex mutex;  // guards all below
    std::shared_ptr<Engine> engine;
    int references = 0;

    // Never destroyed: message boxes and references are in use until the process ends.
    static Shared& Get()
    {
        static const ZNeverDestroyed<Shared> shared;
        return *shared;
    }
};

void ZInterfaceThread::Engine::Run(void* shared)
{
    // Keeps the engine alive when the last reference is destroyed on this thread.
    const std::unique_ptr<std::shared_ptr<Engine>> own(
        static_cast<std::shared_ptr<Engine>*>(shared));
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
    // The thread joins the loop's helpers, so none of these can wait for it.
    if (ZEventLoop::IsOnInterfaceThread())
        return;
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
    // Constructed late, so that it is destroyed before the static objects that the thread uses.
    static const AtExit atExit;
    ++shared.references;
    mEngine = shared.engine;
}

ZInterfaceThread::~ZInterfaceThread()
{
    std::shared_ptr<Engine> last;
    {
        Shared& shared = Shared::Get();
        const std::lock_guard lock(shared.mutex);
        assert(shared.references > 0);
        if (--shared.references == 0)
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
    return ZEventLoop::IsOnInterfaceThread();
}

}  // namespace orvane
