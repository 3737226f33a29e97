// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapExtensions.h"

#include <cstdint>
#include <string>

namespace orvane
{

/// The host of one instance, with the extensions that it offers. What a host lacks is left out.
///
/// The standard names the thread of each call. The Expect functions ask a host that can tell, and
/// write a line to its log, or to standard error, about a call on the wrong thread or in the wrong
/// state: the call is the host's, so nothing of ours may end by it. [any thread] unless stated
/// otherwise.
class ClapHost
{
public:
    /// host outlives the object.
    explicit ClapHost(const clap_host& host);
    ClapHost(const ClapHost&) = delete;
    ClapHost& operator=(const ClapHost&) = delete;

    /// Looks the extensions up, which hosts answer from the plug-in's init on. [main thread]
    void FindExtensions();

    void ExpectMainThread(const char* function) const;
    void ExpectAudioThread(const char* function) const;
    /// Says that the host has called function while isRight is false; returns isRight.
    bool Expect(bool isRight, const char* function, const char* rule) const;
    void Log(std::int32_t severity, const std::string& text) const;

    // Requests. The caller holds the interface lock, which is given up meanwhile, since the host
    // may wait for a thread that waits for it. [any thread but the audio thread]
    void RequestCallback();
    void RequestFlush();
    /// Returns false when the host refuses.
    bool RequestResize(std::uint32_t width, std::uint32_t height);

    /// Waits until no request is with the host: objects that a request returns to must not go
    /// before. The caller holds the interface lock. [main thread]
    void WaitForCalls() const;

    // Notices. [main thread, without the interface lock]
    void MarkDirty() const;
    void RescanValues() const;
    void LatencyChanged() const;
    void PresetLoaded(std::uint32_t kind, const char* location, const char* key) const;
    void PresetFailed(std::uint32_t kind, const char* location, const char* key,
                      const char* message) const;
    /// [audio thread]
    void TailChanged() const noexcept;

private:
    /// Gives the interface lock up for a request of the host, and counts it.
    class Call;

    const clap_host& mHost;
    int mCalls = 0;  // requests that have not returned; guarded by the interface lock
    const clap_host_log* mLog = nullptr;
    const clap_host_thread_check* mThreads = nullptr;
    const clap_host_params* mParams = nullptr;
    const clap_host_state* mState = nullptr;
    const clap_host_latency* mLatency = nullptr;
    const clap_host_tail* mTail = nullptr;
    const clap_host_gui* mGui = nullptr;
    const clap_host_preset_load* mPresetLoad = nullptr;
};

}  // namespace orvane
