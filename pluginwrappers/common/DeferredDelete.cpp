// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/DeferredDelete.h"

#include "pluginwrappers/common/AudioEffect.h"
#include "zlib/common/objects/ZThread.h"

#include <cassert>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

// At exit, the longest wait for a call of the host, which may never return.
constexpr std::int32_t kExitLimitMicroseconds = 250'000;

/// Deletes one effect on a thread of its own.
class DeferredDeletion
{
public:
    explicit DeferredDeletion(AudioEffect* effect)
        : mEffect(effect)
        , mThread("closing", &DeferredDeletion::Run, this)
    {
        mThread.Resume();
    }

    [[nodiscard]] bool IsRunning() const { return mThread.IsRunning(); }
    /// Waits for the deletion. Returns false when it still waits for the host after the limit.
    [[nodiscard]] bool EndsWithin(std::int32_t limitMicroseconds)
    {
        while (mThread.Join(limitMicroseconds) != 0) {
            if (WaitsForHost())
                return false;
        }
        return true;
    }

private:
    static void Run(void* self) { static_cast<DeferredDeletion*>(self)->DeleteEffect(); }
    void DeleteEffect()
    {
        while (WaitsForHost())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        delete TakeEffect();
    }
    AudioEffect* TakeEffect()
    {
        const std::lock_guard lock(mMutex);
        return std::exchange(mEffect, nullptr);
    }
    [[nodiscard]] bool WaitsForHost()
    {
        const std::lock_guard lock(mMutex);
        return mEffect != nullptr && mEffect->isInHostCall();
    }

    std::mutex mMutex;
    AudioEffect* mEffect;  // guarded by mMutex; null once it is being deleted
    ZThread mThread;       // declared last, so that it is joined before the others go
};

/// The deletions in progress, of the whole process.
class DeferredDeletions
{
public:
    ~DeferredDeletions()
    {
        for (std::unique_ptr<DeferredDeletion>& deletion : mDeletions) {
            if (!deletion->EndsWithin(kExitLimitMicroseconds))
                static_cast<void>(deletion.release());  // its destructor would wait without limit
        }
    }

    void Start(AudioEffect* effect)
    {
        const std::lock_guard lock(mMutex);
        std::erase_if(mDeletions, [](const auto& deletion) { return !deletion->IsRunning(); });
        mDeletions.push_back(std::make_unique<DeferredDeletion>(effect));
    }

private:
    std::mutex mMutex;
    std::vector<std::unique_ptr<DeferredDeletion>> mDeletions;  // guarded by mMutex
};

}  // namespace

void deleteDeferred(AudioEffect* effect)
{
    assert(effect != nullptr);
    // Constructed after the object that ends the interface thread at exit, so destroyed before it.
    static DeferredDeletions deletions;
    deletions.Start(effect);
}

}  // namespace orvane
