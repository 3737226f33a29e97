// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/DeferredDelete.h"

#include "pluginwrappers/common/AudioEffect.h"
#include "zlib/common/objects/ZThread.h"

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

// A call of the host that never comes back must not keep the process from ending.
constexpr std::int32_t kExitLimitMicroseconds = 250'000;

/// The end of one effect, on a thread of its own.
class Closing
{
public:
    explicit Closing(AudioEffect* effect)
        : mEffect(effect)
        , mThread("closing", &Closing::Run, this)
    {
        mThread.Resume();
    }

    [[nodiscard]] bool IsRunning() const { return mThread.IsRunning(); }
    /// Whether the thread has ended, but for one that waits for a call of the host longer than
    /// that.
    [[nodiscard]] bool Ends(std::int32_t limitMicroseconds)
    {
        while (mThread.Join(limitMicroseconds) != 0) {
            if (WaitsForHost())
                return false;
        }
        return true;
    }

private:
    static void Run(void* self) { static_cast<Closing*>(self)->DeleteEffect(); }
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

    std::mutex mMutex;     // guards the next
    AudioEffect* mEffect;  // null once it is being deleted
    ZThread mThread;       // the last, so that it ends first
};

class Closings
{
public:
    ~Closings()
    {
        for (std::unique_ptr<Closing>& closing : mClosings) {
            if (!closing->Ends(kExitLimitMicroseconds))
                static_cast<void>(closing.release());  // deleting it would wait without limit
        }
    }

    void Start(AudioEffect* effect)
    {
        const std::lock_guard lock(mMutex);
        std::erase_if(mClosings, [](const auto& closing) { return !closing->IsRunning(); });
        mClosings.push_back(std::make_unique<Closing>(effect));
    }

private:
    std::mutex mMutex;  // guards the next
    std::vector<std::unique_ptr<Closing>> mClosings;
};

}  // namespace

void deleteDeferred(AudioEffect* effect)
{
    // Younger than what ends the interface thread at exit, so that it goes before that.
    static Closings closings;
    closings.Start(effect);
}

}  // namespace orvane
