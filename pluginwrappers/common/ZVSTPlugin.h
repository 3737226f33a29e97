// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AudioEffectX.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "zlib/common/documents/ZPlugin.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

class ZVSTEditor;

/// The effect object: everything the host sees of the plug-in. It translates the interface; the
/// plug-in itself is a ZPluginCore. Lives from the entry call to effClose.
///
/// Each dispatcher call holds the interface lock, except the
/// opcodes that hosts also send on the audio thread; exceptions in those are passed to the
/// interface thread, which reports them.
///
/// The plug-in has an editor when the description has a window. Without an application it passes
/// its two channels through without latency.
class ZVSTPlugin : public AudioEffectX, private ZPluginShell
{
public:
    /// app, which may be null, has been started. Routes the looper's input to the network of its
    /// document and sets the latency.
    /// Throws ZException when a part of the plug-in cannot be built. [host thread]
    explicit ZVSTPlugin(audioMasterCallback host, std::unique_ptr<ZPlugin> app = nullptr);
    ~ZVSTPlugin() override;

    /// Sets whether resume asks the host for MIDI events. [setup]
    void SetWantsMidi(bool wantsMidi) { mWantsMidi = wantsMidi; }

    std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* ptr, float opt) override;

    /// Empties FIFOs and network. Some hosts call it on the audio thread, so it does not take the
    /// interface lock; it only touches what the passes use, and none runs.
    void suspend() override;
    /// On the thread that called the entry function, delivers all pending changes, so that the
    /// stream begins with them, and frees the chunk. On any other thread, perhaps the audio thread,
    /// leaves the delivery to the ticks.
    void resume() override;
    /// Ignores a rate that is not a positive number or is already set.
    void setSampleRate(float rate) override;
    /// Ignores frames below 1 and above ZHostStream::kMaxBlockSize.
    void setBlockSize(std::int32_t frames) override;
    void processReplacing(float** inputs, float** outputs,
                          std::int32_t sampleFrames) noexcept override;
    void process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept override;
    /// Passes each MIDI event to the document before it returns, on the calling thread.
    std::int32_t processEvents(VstEvents* events) override;

    /// Stores the value; the engine uses it from the next tick on. Ignored while the plug-in itself
    /// notifies the host of a change. [any thread, audio thread included]
    void setParameter(std::int32_t index, float value) override;
    /// Returns the value, also one set a moment ago. [any thread, audio thread included]
    [[nodiscard]] float getParameter(std::int32_t index) override;
    void setParameterAutomated(std::int32_t index, float value) override;
    /// Notifies the host of a parameter's value: at once, or from the interface thread when a tick
    /// of the stream calls it, since such a call from the rendering thread can deadlock a host.
    /// [thread of the tick, under the interface lock]
    void NotifyHost(std::int32_t index);
    void getParameterDisplay(std::int32_t index, std::span<char> text) override;
    void getParameterName(std::int32_t index, std::span<char> text) override;
    /// Succeeds for switches only: discrete elements with two values.
    bool getParameterProperties(std::int32_t index, VstParameterProperties* properties) override;
    using AudioEffectX::beginEdit;
    using AudioEffectX::endEdit;
    using AudioEffectX::updateDisplay;

    [[nodiscard]] std::int32_t getProgram() override { return mCore.GetPrograms().GetCurrent(); }
    void setProgram(std::int32_t index) override;
    /// Has no visible effect when the programs are factory presets, which keep their names.
    void setProgramName(const char* text) override;
    void getProgramName(std::span<char> text) override;
    bool getProgramNameIndexed(std::int32_t category, std::int32_t index,
                               std::span<char> text) override;
    /// The bytes stay valid until the next call, until resume on the thread that called the entry
    /// function, or until effClose. Returns 0 after a failure, which is reported.
    std::int32_t getChunk(void** data, bool isPreset) override;
    /// Returns 0 and changes nothing after a failure, which is reported.
    std::int32_t setChunk(void* data, std::int32_t size, bool isPreset) override;
    bool getVendorString(std::span<char> text) override;
    /// Handles the request of WindowPicture.h.
    std::intptr_t vendorSpecific(std::int32_t index, std::intptr_t value, void* ptr,
                                 float opt) override;

private:
    static constexpr std::int32_t kNotAutomating = -1;

    [[nodiscard]] bool IsEntryThread() const;
    [[nodiscard]] bool IsAudioCall(std::int32_t opcode) const;
    void MakeEditor();
    [[nodiscard]] ZVSTEditor& GetEditor();
    void ReleaseChunk();
    void RefreshLatency();
    [[nodiscard]] bool HostIsOffline() override;
    void TimerTicks() override;

    const std::thread::id mEntryThread = std::this_thread::get_id();
    ZPluginCore mCore;
    std::string mChunk;  // the host reads it after getChunk
    // The parameter that the host is being notified of, else -1. Written by the interface thread.
    std::atomic<std::int32_t> mAutomatingParam{kNotAutomating};
    // Parameters to notify the host of; guarded by the interface lock.
    std::vector<std::int32_t> mPendingAutomation;
    bool mWantsMidi = false;
};

}  // namespace orvane
