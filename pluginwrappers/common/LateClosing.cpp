#include "pluginwrappers/common/LateClosing.h"

#include "pluginwrappers/common/AudioEffect.h"
#include "zlib/common/ZThread.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace orvane
{

namespace
{

// A call of the host that never comes back must not keep the process from ending.
constexpr std::int32_t kExitLimitMicroseconds = 250'000;

void deleteEffect(void* effect)
{
    delete static_cast<AudioEffect*>(effect);
}

class ClosingThreads
{
public:
    ~ClosingThreads()
    {
        for (std::unique_ptr<ZThread>& thread : mThreads) {
            if (thread->Join(kExitLimitMicroseconds) != 0)
                static_cast<void>(thread.release());  // deleting it would wait without limit
        }
    }

    void Start(AudioEffect* effect)
    {
        const std::lock_guard lock(mMutex);
        std::erase_if(mThreads, [](const auto& thread) { return !thread->IsRunning(); });
        mThreads.push_back(std::make_unique<ZThread>("closing", &deleteEffect, effect));
        mThreads.back()->Resume();
    }

private:
    std::mutex mMutex;  // guards the next
    std::vector<std::unique_ptr<ZThread>> mThreads;
};

}  // namespace

void closeLater(AudioEffect* effect)
{
    // Younger than what ends the interface thread at exit, so that it goes before that.
    static ClosingThreads threads;
    threads.Start(effect);
}

}  // namespace orvane
