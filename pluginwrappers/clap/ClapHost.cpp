// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ClapHost.h"

#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <chrono>
#include <cstdio>
#include <thread>
#include <type_traits>

namespace orvane
{

class ClapHost::Call
{
public:
    explicit Call(int& calls)
        : mCount(calls)
    {
    }

private:
    struct Count
    {
        explicit Count(int& counted)
            : calls(counted)
        {
            assert(ZInterfaceLock::IsHeld());
            ++calls;
        }
        Count(const Count&) = delete;
        Count& operator=(const Count&) = delete;
        ~Count() { --calls; }

        int& calls;
    };
    // In this order the call counts until the lock is held again.
    const Count mCount;
    const ZInterfaceUnlock mUnlocked;
};

ClapHost::ClapHost(const clap_host& host)
    : mHost(host)
{
}

void ClapHost::WaitForCalls() const
{
    assert(ZInterfaceLock::IsHeld());
    while (mCalls > 0) {
        const ZInterfaceUnlock unlocked;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void ClapHost::FindExtensions()
{
    const auto find = [this](auto*& extension, const char* name) {
        using Pointer = std::remove_reference_t<decltype(extension)>;
        extension = static_cast<Pointer>(mHost.get_extension(&mHost, name));
    };
    find(mLog, kClapLog);
    find(mThreads, kClapThreadCheck);
    find(mParams, kClapParams);
    find(mState, kClapState);
    find(mLatency, kClapLatency);
    find(mTail, kClapTail);
    find(mGui, kClapGui);
    find(mPresetLoad, kClapPresetLoad);
    if (mPresetLoad == nullptr)
        find(mPresetLoad, kClapPresetLoadDraft);
}

void ClapHost::ExpectMainThread(const char* function) const
{
    if (mThreads != nullptr && mThreads->is_main_thread != nullptr)
        Expect(mThreads->is_main_thread(&mHost), function, "belongs to the main thread");
}

void ClapHost::ExpectAudioThread(const char* function) const
{
    if (mThreads != nullptr && mThreads->is_audio_thread != nullptr)
        Expect(mThreads->is_audio_thread(&mHost), function, "belongs to the audio thread");
}

bool ClapHost::Expect(bool isRight, const char* function, const char* rule) const
{
    if (!isRight)
        Log(CLAP_LOG_HOST_MISBEHAVING, std::string(function) + " " + rule);
    return isRight;
}

void ClapHost::Log(std::int32_t severity, const std::string& text) const
{
    if (mLog != nullptr && mLog->log != nullptr)
        mLog->log(&mHost, severity, text.c_str());
    else
        std::fprintf(stderr, "%s\n", text.c_str());
}

void ClapHost::RequestCallback()
{
    const Call call(mCalls);
    mHost.request_callback(&mHost);
}

void ClapHost::RequestFlush()
{
    if (mParams == nullptr)
        return;
    const Call call(mCalls);
    mParams->request_flush(&mHost);
}

bool ClapHost::RequestResize(std::uint32_t width, std::uint32_t height)
{
    if (mGui == nullptr)
        return false;
    const Call call(mCalls);
    return mGui->request_resize(&mHost, width, height);
}

void ClapHost::MarkDirty() const
{
    assert(!ZInterfaceLock::IsHeld());
    if (mState != nullptr)
        mState->mark_dirty(&mHost);
}

void ClapHost::RescanValues() const
{
    assert(!ZInterfaceLock::IsHeld());
    if (mParams != nullptr)
        mParams->rescan(&mHost, CLAP_PARAM_RESCAN_VALUES);
}

void ClapHost::LatencyChanged() const
{
    assert(!ZInterfaceLock::IsHeld());
    if (mLatency != nullptr)
        mLatency->changed(&mHost);
}

void ClapHost::PresetLoaded(std::uint32_t kind, const char* location, const char* key) const
{
    if (mPresetLoad != nullptr)
        mPresetLoad->loaded(&mHost, kind, location, key);
}

void ClapHost::PresetFailed(std::uint32_t kind, const char* location, const char* key,
                            const char* message) const
{
    if (mPresetLoad != nullptr)
        mPresetLoad->on_error(&mHost, kind, location, key, 0, message);
    else
        Log(CLAP_LOG_ERROR, message);
}

void ClapHost::TailChanged() const noexcept
{
    if (mTail != nullptr)
        mTail->changed(&mHost);
}

}  // namespace orvane
